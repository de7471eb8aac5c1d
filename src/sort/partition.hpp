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

// Moves the keys up to the pivot before the others, for n >= 2 * Rows::ahead rows; the number of them.
//
// Rows are read from the end that has less room, which leaves room for a whole row at both: each row is written with
// its low part at the front and, once more, with its high part at the back, and what is left over of either lies in the
// gap.
template <class Rows>
std::ptrdiff_t partition(Rows rows, std::ptrdiff_t n, typename Rows::Key pivotKey) {
  using V = typename Rows::V;
  using Row = typename Rows::Row;
  constexpr std::ptrdiff_t L = Rows::L, A = Rows::ahead, batch = A * L;
  const V pivot = broadcast<V>(pivotKey);
  std::ptrdiff_t front = batch, back = n - batch, low = 0, room = n - L;

  const auto put = [&](Row row) __attribute__((always_inline)) {
    const Parting<V> parting(Rows::keyOf(row), pivot);
    const Row parted = Rows::part(parting, row);
    rows.store(low, parted);
    rows.store(low + room, parted);
    low += parting.low();
    room -= L;
  };
  // Where to read `count` elements from, without a branch: nobody could predict it.
  const auto next = [&](std::ptrdiff_t count) __attribute__((always_inline)) {
    const std::ptrdiff_t more = (low + room + L - back) - (front - low);
    const std::ptrdiff_t atBack = count & (more >> 63), from = front + ((back - count - front) & (more >> 63));
    front += count - atBack;
    back -= atBack;
    return from;
  };

  struct Batch {
    Row row[A];
  };
  const auto read = [&](std::ptrdiff_t from) __attribute__((always_inline)) {
    Batch b;
    unroll<A>([&](auto i) __attribute__((always_inline)) { b.row[i] = rows.load(from + i * L); });
    return b;
  };

  Row ends[2 * A];
  unroll<A>([&](auto i) __attribute__((always_inline)) {
    ends[i] = rows.load(i * L);
    ends[A + i] = rows.load(back + i * L);
  });
  // A batch is read before the one before it is written, so that the choice of an end need not wait for that. The last
  // one waits until nothing unread is in the way.
  const bool held = back - front >= batch;
  Batch now;
  if (held) now = read(next(batch));
  while (back - front >= batch) {
    const Batch then = read(next(batch));
    unroll<A>([&](auto i) __attribute__((always_inline)) { put(now.row[i]); });
    now = then;
  }
  while (back - front >= L) put(rows.load(next(L)));
  if (const std::ptrdiff_t rest = back - front; rest > 0) {
    const Row row = rows.loadPart(front, rest);
    Parting<V> parting(Rows::keyOf(row), pivot);
    parting.limit(rest);
    const Row parted = Rows::part(parting, row);
    rows.store(low, parted);
    rows.store(low + room, parted);
    low += parting.low() - (L - rest);
    room -= rest;
  }
  if (held) unroll<A>([&](auto i) __attribute__((always_inline)) { put(now.row[i]); });
  unroll<2 * A>([&](auto i) __attribute__((always_inline)) { put(ends[i]); });
  return low;
}

}  // namespace ovks::sort
