// SPDX-License-Identifier: MIT
// Parting a range around a pivot, a vector at a time and in place.
#pragma once

#include "sort/block.hpp"

namespace ovks::sort {

namespace detail {

// For each mask of n lanes, the lanes of its set bits in order, then the others; `halves` bytes a lane.
template <int n, int halves>
struct Gathering {
  unsigned char lane[1 << n][8];

  constexpr Gathering() : lane() {
    for (int mask = 0; mask < 1 << n; ++mask) {
      int at = 0;
      for (int set = 1; set >= 0; --set) {
        for (int i = 0; i < n; ++i) {
          if ((mask >> i & 1) != set) continue;
          for (int h = 0; h < halves; ++h) lane[mask][at++] = static_cast<unsigned char>(i * halves + h);
        }
      }
    }
  }
};
template <int n, int halves>
alignas(64) inline constexpr Gathering<n, halves> gathering{};

}  // namespace detail

// The lanes of a vector with a key up to the pivot, moved before the others.
template <class V>
class Parting {
  static constexpr int L = lanes<V>;
  static constexpr bool wide = sizeof(Lane<V>) == 8;
  // Two half lanes each where the processor permutes halves only.
  static constexpr const auto &kGathering = detail::gathering < L == 16 ? 8 : L, !kAvx512 && wide ? 2 : 1 > ;
  unsigned low_;

 public:
  OVKS_INLINE Parting(V key, V pivot) {
    if constexpr (kAvx512 && wide) low_ = _mm512_cmple_epi64_mask(bits<__m512i>(key), bits<__m512i>(pivot));
    else if constexpr (kAvx512) low_ = _mm512_cmple_epi32_mask(bits<__m512i>(key), bits<__m512i>(pivot));
    else if constexpr (wide) low_ = ~static_cast<unsigned>(_mm256_movemask_pd(bits<__m256d>(key > pivot))) & 15;
    else low_ = ~static_cast<unsigned>(_mm256_movemask_ps(bits<__m256>(key > pivot))) & 255;
  }
  // Lanes from n on count as low, after the low ones before them.
  OVKS_INLINE void limit(std::ptrdiff_t n) { low_ |= (1u << L) - (1u << n); }

  OVKS_INLINE int low() const { return static_cast<int>(_mm_popcnt_u64(low_)); }

  OVKS_INLINE V operator()(V v) const {
    if constexpr (L == 16) {
      const __m512i x = bits<__m512i>(v);
      // The lanes left over are x's: with zeros there, some processors wait for the register's last value.
      const __m512i after = _mm512_mask_compress_epi32(x, static_cast<__mmask16>(~low_), x);
      const __m512i before = _mm512_mask_compress_epi32(x, static_cast<__mmask16>(low_), x);
      return bits<V>(_mm512_mask_expand_epi32(before, static_cast<__mmask16>(0xffffu << low()), after));
    } else if constexpr (kAvx512) {
      const __m512i at = _mm512_cvtepu8_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(kGathering.lane[low_])));
      return bits<V>(_mm512_permutexvar_epi64(at, bits<__m512i>(v)));
    } else {
      const __m256i at = _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(kGathering.lane[low_])));
      return bits<V>(_mm256_permutevar8x32_epi32(bits<__m256i>(v), at));
    }
  }
};

// Keys in memory; S is how they are stored, C how they are compared.
template <class S, class C>
struct Keys {
  using Key = C;
  using V = Vec<C>;
  using Row = V;
  static constexpr int L = lanes<V>;
  static constexpr int ahead = 4;

  S* key;

  OVKS_INLINE Row load(std::ptrdiff_t i) const { return resize<V>(ovks::load<Vec<S, L>>(key + i)); }
  OVKS_INLINE Row loadPart(std::ptrdiff_t i, std::ptrdiff_t n) const {
    return resize<V>(ovks::loadPart<Vec<S, L>>(key + i, n));
  }
  OVKS_INLINE void store(std::ptrdiff_t i, Row row) const { ovks::store(key + i, resize<Vec<S, L>>(row)); }
  OVKS_INLINE Keys from(std::ptrdiff_t i) const { return {key + i}; }
  static OVKS_INLINE V keyOf(Row row) { return row; }
  static OVKS_INLINE Row part(const Parting<V>& parting, Row row) { return parting(row); }
};

// Keys that each carry a position.
template <class S, class C>
struct TaggedKeys {
  using Key = C;
  using V = Vec<C>;
  struct Row {
    V key, tag;
  };
  static constexpr int L = lanes<V>;
  static constexpr int ahead = kAvx512 ? 4 : 2;
  using Tags = Vec<int32_t, L>;

  S* key;
  int32_t* tag;

  OVKS_INLINE Row load(std::ptrdiff_t i) const {
    return {resize<V>(ovks::load<Vec<S, L>>(key + i)), resize<V>(ovks::load<Tags>(tag + i))};
  }
  OVKS_INLINE Row loadPart(std::ptrdiff_t i, std::ptrdiff_t n) const {
    return {resize<V>(ovks::loadPart<Vec<S, L>>(key + i, n)), resize<V>(ovks::loadPart<Tags>(tag + i, n))};
  }
  OVKS_INLINE void store(std::ptrdiff_t i, Row row) const {
    ovks::store(key + i, resize<Vec<S, L>>(row.key));
    ovks::store(tag + i, resize<Tags>(row.tag));
  }
  OVKS_INLINE TaggedKeys from(std::ptrdiff_t i) const { return {key + i, tag + i}; }
  static OVKS_INLINE V keyOf(Row row) { return row.key; }
  static OVKS_INLINE Row part(const Parting<V>& parting, Row row) { return {parting(row.key), parting(row.tag)}; }
};

namespace detail {

// A range while it is parted. Rows are read from the end that has less room, which leaves room for a whole row at both:
// each row is written with its low part at the front and, once more, with its high part at the back, and what is left
// over of either lies in the gap.
template <class Rows>
class Gap {
  using V = typename Rows::V;
  using Row = typename Rows::Row;
  static constexpr std::ptrdiff_t L = Rows::L;

 public:
  template <int count>
  struct Batch {
    Row row[count];
  };

  // A batch of `taken` elements at either end counts as read.
  OVKS_INLINE Gap(Rows rows, std::ptrdiff_t n, typename Rows::Key pivot, std::ptrdiff_t taken)
      : rows_(rows), pivot_(broadcast<V>(pivot)), front_(taken), back_(n - taken), low_(0), room_(n - L) {}

  std::ptrdiff_t unread() const { return back_ - front_; }
  std::ptrdiff_t low() const { return low_; }

  template <int count>
  OVKS_INLINE Batch<count> at(std::ptrdiff_t from) const {
    Batch<count> batch;
    unroll<count>([&](auto i) __attribute__((always_inline)) { batch.row[i] = rows_.load(from + i * L); });
    return batch;
  }

  // The next rows, without a branch on the end that they come from: nobody could predict it.
  template <int count>
  OVKS_INLINE Batch<count> read() {
    constexpr std::ptrdiff_t size = count * L;
    const std::ptrdiff_t more = (low_ + room_ + L - back_) - (front_ - low_);
    const std::ptrdiff_t atBack = size & (more >> 63), from = front_ + ((back_ - size - front_) & (more >> 63));
    front_ += size - atBack;
    back_ -= atBack;
    return at<count>(from);
  }

  template <int count>
  OVKS_INLINE void put(const Batch<count>& batch) {
    unroll<count>([&](auto i) __attribute__((always_inline)) {
      put(batch.row[i], Parting<V>(Rows::keyOf(batch.row[i]), pivot_), L);
    });
  }

  // Reads and puts what is less than a row.
  OVKS_INLINE void putRest() {
    const std::ptrdiff_t rest = unread();
    const Row row = rows_.loadPart(front_, rest);
    Parting<V> parting(Rows::keyOf(row), pivot_);
    parting.limit(rest);
    put(row, parting, rest);
  }

 private:
  OVKS_INLINE void put(Row row, const Parting<V>& parting, std::ptrdiff_t size) {
    const Row parted = Rows::part(parting, row);
    rows_.store(low_, parted);
    rows_.store(low_ + room_, parted);
    low_ += parting.low() - (L - size);
    room_ -= size;
  }

  Rows rows_;
  V pivot_;
  std::ptrdiff_t front_, back_, low_, room_;
};

}  // namespace detail

// Moves the keys up to the pivot before the others, for n >= 2 * Rows::ahead rows; the number of them.
template <class Rows>
std::ptrdiff_t partition(Rows rows, std::ptrdiff_t n, typename Rows::Key pivot) {
  constexpr int A = Rows::ahead;
  constexpr std::ptrdiff_t batch = A * Rows::L;
  detail::Gap<Rows> gap(rows, n, pivot, batch);
  const auto first = gap.template at<A>(0), last = gap.template at<A>(n - batch);
  // A batch is read before the one before it is written, so that the choice of an end need not wait for that. The last
  // one waits until nothing unread is in the way.
  const bool held = gap.unread() >= batch;
  typename detail::Gap<Rows>::template Batch<A> now;
  if (held) now = gap.template read<A>();
  while (gap.unread() >= batch) {
    const auto then = gap.template read<A>();
    gap.put(now);
    now = then;
  }
  while (gap.unread() >= Rows::L) gap.put(gap.template read<1>());
  if (gap.unread() > 0) gap.putRest();
  if (held) gap.put(now);
  gap.put(first);
  gap.put(last);
  return gap.low();
}

}  // namespace ovks::sort
