// SPDX-License-Identifier: MIT
// Parting a range around a pivot, a vector at a time and in place.
#pragma once

#include "sort/block.hpp"

namespace ovks::sort {

namespace detail {

// For each mask of n lanes, the lanes of its set bits in order, then the others; as one byte a lane, or two bytes of
// half lanes where the processor permutes halves only.
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
  unsigned low_;

 public:
  OVKS_INLINE Parting(V key, V pivot) {
    if constexpr (kAvx512 && wide) low_ = _mm512_cmple_epi64_mask(bits<__m512i>(key), bits<__m512i>(pivot));
    else if constexpr (kAvx512) low_ = _mm512_cmple_epi32_mask(bits<__m512i>(key), bits<__m512i>(pivot));
    else if constexpr (wide) low_ = ~static_cast<unsigned>(_mm256_movemask_pd(bits<__m256d>(key > pivot))) & 15;
    else low_ = ~static_cast<unsigned>(_mm256_movemask_ps(bits<__m256>(key > pivot))) & 255;
  }
  // Lanes from n on count as low, after the low ones before them.
  OVKS_INLINE void limit(std::ptrdiff_t n) { low_ |= ~detail::firstLanes<V>(n) & detail::firstLanes<V>(L); }

  OVKS_INLINE int low() const { return __builtin_popcount(low_); }

  OVKS_INLINE V operator()(V v) const {
    if constexpr (L == 16) {
      const __m512i x = bits<__m512i>(v);
      const __m512i high = _mm512_maskz_compress_epi32(static_cast<__mmask16>(~low_), x);
      const __m512i low = _mm512_maskz_compress_epi32(static_cast<__mmask16>(low_), x);
#ifdef VIAPERM
      const __m512i at = _mm512_sub_epi32(bits<__m512i>(detail::laneNumbers<Vec<int32_t, 16>>()),
                                          _mm512_set1_epi32(__builtin_popcount(low_)));
      return bits<V>(
          _mm512_mask_permutexvar_epi32(low, static_cast<__mmask16>(0xffffu << __builtin_popcount(low_)), at, high));
#else
      return bits<V>(_mm512_mask_expand_epi32(low, static_cast<__mmask16>(0xffffu << __builtin_popcount(low_)), high));
#endif
    } else if constexpr (kAvx512) {
      const __m512i at =
          _mm512_cvtepu8_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(detail::gathering<8, 1>.lane[low_])));
      return bits<V>(_mm512_permutexvar_epi64(at, bits<__m512i>(v)));
    } else {
      const __m256i at = _mm256_cvtepu8_epi32(
          _mm_loadl_epi64(reinterpret_cast<const __m128i*>(detail::gathering < L, wide ? 2 : 1 >.lane[low_])));
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

  S* key;

  OVKS_INLINE Row load(std::ptrdiff_t i) const { return __builtin_convertvector(ovks::load<Vec<S, L>>(key + i), V); }
  OVKS_INLINE Row loadPart(std::ptrdiff_t i, std::ptrdiff_t n) const {
    return __builtin_convertvector(loadSome<Vec<S, L>>(key + i, n), V);
  }
  OVKS_INLINE void store(std::ptrdiff_t i, Row row) const {
    ovks::store(key + i, __builtin_convertvector(row, Vec<S, L>));
  }
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
  using Tags = Vec<int32_t, L>;

  S* key;
  int32_t* tag;

  OVKS_INLINE Row load(std::ptrdiff_t i) const {
    return {__builtin_convertvector(ovks::load<Vec<S, L>>(key + i), V),
            __builtin_convertvector(ovks::load<Tags>(tag + i), V)};
  }
  OVKS_INLINE Row loadPart(std::ptrdiff_t i, std::ptrdiff_t n) const {
    return {__builtin_convertvector(loadSome<Vec<S, L>>(key + i, n), V),
            __builtin_convertvector(loadSome<Tags>(tag + i, n), V)};
  }
  OVKS_INLINE void store(std::ptrdiff_t i, Row row) const {
    ovks::store(key + i, __builtin_convertvector(row.key, Vec<S, L>));
    ovks::store(tag + i, __builtin_convertvector(row.tag, Tags));
  }
  OVKS_INLINE TaggedKeys from(std::ptrdiff_t i) const { return {key + i, tag + i}; }
  static OVKS_INLINE V keyOf(Row row) { return row.key; }
  static OVKS_INLINE Row part(const Parting<V>& parting, Row row) { return {parting(row.key), parting(row.tag)}; }
};

// The rows read ahead at each end of a range: they make the room that the others are written to.
inline constexpr int kAhead = kAvx512 ? 4 : 2;

// Moves the keys up to the pivot before the others, for n >= 2 * kAhead rows; the number of them.
//
// Rows are read from the end that has less room, which leaves room for a whole row at both: each row is written with
// its low part at the front and, once more, with its high part at the back, and what is left over of either lies in the
// gap.
template <class Rows>
std::ptrdiff_t partition(Rows rows, std::ptrdiff_t n, typename Rows::Key pivotKey) {
  using V = typename Rows::V;
  using Row = typename Rows::Row;
  constexpr std::ptrdiff_t L = Rows::L, batch = kAhead * L;
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
  // Where to read `count` elements from.
  const auto next = [&](std::ptrdiff_t count) __attribute__((always_inline)) {
    const bool atFront = front - low <= low + room + L - back;
    const std::ptrdiff_t from = atFront ? front : back - count;
    front += atFront ? count : 0;
    back -= atFront ? 0 : count;
    return from;
  };

  Row ahead[2 * kAhead];
  unroll<kAhead>([&](auto i) __attribute__((always_inline)) {
    ahead[i] = rows.load(i * L);
    ahead[kAhead + i] = rows.load(back + i * L);
  });
  while (back - front >= batch) {
    const std::ptrdiff_t from = next(batch);
    Row row[kAhead];
    unroll<kAhead>([&](auto i) __attribute__((always_inline)) { row[i] = rows.load(from + i * L); });
    unroll<kAhead>([&](auto i) __attribute__((always_inline)) { put(row[i]); });
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
  unroll<2 * kAhead>([&](auto i) __attribute__((always_inline)) { put(ahead[i]); });
  return low;
}

}  // namespace ovks::sort
