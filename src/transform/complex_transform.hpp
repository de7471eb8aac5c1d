// SPDX-License-Identifier: MIT
// The complex transform of more points than a straight-line kernel has: all passes through the work buffer while
// everything fits the caches, above in panels or in the destination itself.
#pragma once

#include "transform/closing_in_place.hpp"
#include "transform/natural_order_pass.hpp"
#include "transform/opening_pass.hpp"
#include "transform/panels.hpp"
#include "transform/spec.hpp"

namespace ovks::fft {

// Where the parts of the twiddle area begin, in elements.
template <class T>
struct TwiddleLayout {
  std::ptrdiff_t tiles = 0, columns = 0;

  constexpr explicit TwiddleLayout(int order) {
    using V = Vec<T>;
    constexpr std::ptrdiff_t L = lanes<V>;
    const std::ptrdiff_t n = (std::ptrdiff_t{1} << order) / (L * L);
    if (order >= kMinProductsOrder<T>) {
      tiles = TileTwiddles<V>::kPerTile;
      columns = aligned(tiles + n * TileTwiddleProducts<V>::kPerTile);
    } else {
      columns = n * TileTwiddles<V>::kPerTile;
    }
  }
};
template <class T>
TileTwiddleProducts<Vec<T>> productsIn(const T* twiddles, int order) {
  return {twiddles + TwiddleLayout<T>(order).tiles, twiddles};
}

template <Direction D, bool scale, class V, class Twiddles, class Points>
void close(const Job<Lane<V>>& job, Rows<V> rows, Points dst, std::ptrdiff_t m, Twiddles twiddles) {
  // With AVX2 rows are not so far apart in any that close.
  if constexpr (kAvx512 && std::is_same_v<Points, Split<Lane<V>>>)
    if (crowdSets<V>(dst, m)) return closingPassHeld<D, scale>(rows, dst, m, twiddles, job.bitReversal, job.factor);
  closingPass<D, scale>(rows, dst, m, twiddles, job.bitReversal, job.factor);
}
template <Direction D, class V, class Twiddles, class Points>
void close(const Job<Lane<V>>& job, Rows<V> rows, Points dst, std::ptrdiff_t m, Twiddles twiddles) {
  if (job.scale) close<D, true>(job, rows, dst, m, twiddles);
  else close<D, false>(job, rows, dst, m, twiddles);
}

// All passes over the columns, from the caller's points into the work buffer's rows.
template <Direction D, class V, class Points>
Rows<V> transformColumns(int order, const Lane<V>* twiddles, Points src, Lane<V>* work) {
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << order) / lanes<V>;
  const Passes& passes = passesOf<Lane<V>>(order);
  const Rows<V> rows = rowsIn<V>(OneArray<Lane<V>>{work});
  const int bits = passes.bits[0];
  firstPass<D>(bits, PointRows<V, Points>{src}, rows, m);
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits;
  Columns<D, Rows<V>>(passes, twiddles).run(1, rows, m >> bits, 0, blocks, blocks);
  return rows;
}

// The twiddles are of columns, and of tiles.
template <Direction D, class V, class Twiddles, class Points, class Results>
void inCache(const Job<Lane<V>>& job, const Lane<V>* columns, Twiddles tiles, Points src, Results dst) {
  using T = Lane<V>;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  if constexpr (kMinLanesFirstOrder<T> <= kMaxInCacheOrder<T>)
    if (lanesFirst<T>(job.order)) {
      const Rows<V> rows = {job.work};
      openingPass<D>(src, rows, m, tiles);
      return transformRowsInOrder<D>(job, complexPassesOf<T>(job.order), columns, rows, dst);
    }
  close<D>(job, transformColumns<D, V>(job.order, columns, src, job.work), dst, m, tiles);
}

template <Direction D, class V, class Points>
void inCache(const Job<Lane<V>>& job, Points src, Points dst) {
  using T = Lane<V>;
  const T* const columns = job.twiddles + TwiddleLayout<T>(job.order).columns;
  if constexpr (kMinProductsOrder<T> <= kMaxInCacheOrder<T>)
    if (job.order >= kMinProductsOrder<T>)
      return inCache<D, V>(job, columns, productsIn(job.twiddles, job.order), src, dst);
  inCache<D, V>(job, columns, TileTwiddles<V>{job.twiddles}, src, dst);
}

// What each work buffer of large transforms has room for.
inline constexpr std::ptrdiff_t kOuterRoom = 1 << 18;
template <class T>
constexpr bool outerRunsFit() {
  for (int order = kMaxInCacheOrder<T> + 1; order <= maxOrder<T>(Kind::interleaved); ++order)
    if (complexSizes<T>(order).work < kOuterRoom) return false;
  return true;
}
static_assert(outerRunsFit<float>() && outerRunsFit<double>());

// Bytes of a run of each part that outer passes take through the work buffer at a time: as many as it has room for
// where there are many parts, and with AVX2 also from one array to another that the caches do not hold beside it.
template <class T>
constexpr std::ptrdiff_t outerRunBytes(int order, bool inPlace) {
  const int outer = partBits<T>(order);
  if (outer > 4 || (!kAvx512 && !inPlace && !cachesHoldTwo<T>(order))) return kOuterRoom >> outer;
  return inPlace ? 1024 : 2048;
}

// The first pass is of radix 4, the others of radix R; memory is read and written once.
template <Direction D, int R, class V, class Points, class RowSet>
void outerPasses(std::ptrdiff_t parts, Points src, RowSet dst, std::ptrdiff_t m, const Lane<V>* twiddles, Lane<V>* work,
                 std::ptrdiff_t runBytes) {
  constexpr int kTurns = RowSet::kTurns;
  const std::ptrdiff_t wide = runBytes / std::ptrdiff_t{2 * sizeof(V)}, step = m / parts;
  const Rows<V> buffer = rowsIn<V>(OneArray<Lane<V>>{work});
  const PointRows<V, Points> rows = {src};
  for (std::ptrdiff_t i = 0; i < step; i += wide) {
    for (std::ptrdiff_t j = 0; j < parts / 4; ++j)
      butterflies<D, 4, false>(rows.from(i + j * step), m / 4, buffer.from(j * wide), parts / 4 * wide, wide, twiddles);
    std::ptrdiff_t blocks = 4;
    const Lane<V>* w = twiddles;
    for (; blocks * R < parts; blocks *= R) {
      blocksPass<D, R>(buffer, parts / blocks * wide, blocks, w);
      w += 2 * (R - 1) * blocks;
    }
    for (std::ptrdiff_t b = 0; b < blocks; ++b, w += 2 * (R - 1))
      for (int turn = 0; turn < kTurns; ++turn)
        butterflies<D, R, true>(Every<kTurns, Rows<V>>{buffer.from(b * R * wide + turn)}, wide / kTurns,
                                dst.ofTurn(turn).from((b * R * step + i) / kTurns), step / kTurns, wide / kTurns, w);
  }
}

template <Direction D, class V, class PlaceSet>
void closeInPlace(const Job<Lane<V>>& job, PlaceSet places) {
  using T = Lane<V>;
  static_assert(PlaceSet::kWork * int64_t{sizeof(T)} <= complexSizes<T>(kMaxInCacheOrder<T> + 1).work);
  const TileTwiddleProducts<V> twiddles = productsIn<T>(job.twiddles, job.order);
  if (job.scale) closingPassInPlace<D, true>(places, twiddles, job.factor, job.work);
  else closingPassInPlace<D, false>(places, twiddles, job.factor, job.work);
}

template <Direction D, class V, class Points>
void large(const Job<Lane<V>>& job, Points src, Points dst) {
  using T = Lane<V>;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  const Passes& passes = passesOf<T>(job.order);
  const T* columns = job.twiddles + TwiddleLayout<T>(job.order).columns;
  const int outer = partBits<T>(job.order);
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << outer;
  const auto rows = rowsBetween<V>(dst);
  bool inPlace = haveSameArray(src, dst);
  // Where the caches hold one array but not two, with AVX-512 a copy comes faster than points out of order.
  if (kAvx512 && !inPlace && cachesHoldOne<T>(job.order) && !cachesHoldTwo<T>(job.order)) {
    copyPoints(src, dst, std::ptrdiff_t{1} << job.order);
    src = dst;
    inPlace = true;
  }
  const std::ptrdiff_t runBytes = outerRunBytes<T>(job.order, inPlace);
  if (outer < 8) outerPasses<D, 4, V>(blocks, src, rows, m, columns, job.work, runBytes);
  else outerPasses<D, 8, V>(blocks, src, rows, m, columns, job.work, runBytes);
  Columns<D, decltype(rows)>(passes, columns)
      .run(outerPassesOf<T>(job.order).count, rows, m >> outer, 0, blocks, blocks);
  if constexpr (kAvx512 && sizeof(T) == 8)  // The only ones that take longer with the other.
    if (cachesHoldTwo<T>(job.order)) return closeInPlace<D, V>(job, Places<V, Points, 1>{dst, m, job.bitReversal});
  closeInPlace<D, V>(job, Places<V, Points, 2>{dst, m, job.bitReversal});
}

// src and dst may be the same.
template <Direction D, class Points, class T>
void transformLong(const Job<T>& job, Points src, Points dst) {
  if (job.order <= kMaxInCacheOrder<T>) return inCache<D, Vec<T>>(job, src, dst);
  if constexpr (kHasPanels<T>)
    if (takesPanels<T>(job.order)) return inPanels<D, Vec<T>>(job, src, dst);
  large<D, Vec<T>>(job, src, dst);
}

}  // namespace ovks::fft
