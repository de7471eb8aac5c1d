// SPDX-License-Identifier: MIT
// Transforms that exceed the caches, in two sweeps over memory (Bailey, FFTs in external or hierarchical memory, 1990).
//
// N = N1 N2 points are N1 rows of N2. The first sweep transforms the columns, turns point (k1, n2) by
// exp(-2 pi i k1 n2 / N) and lays the results down transposed, a row for each n2; the second transforms the columns of
// that, and spectrum point k1 + N1 k2 stands in row k2, column k1, where it belongs. Each sweep takes a panel of
// neighbouring columns at a time through the work buffer.
//
// N2 is N1 or twice that. In the second case row n2 + N1 follows row n2 between the sweeps, so that the transposition
// is an exchange of pairs: in place, the first sweep puts a panel where it came from, and the second one exchanges.
#pragma once

#include "core/streaming.hpp"
#include "transform/panel_passes.hpp"

namespace ovks::fft {

// Into the rows of the other matrix. In place each panel goes where it came from, so that vectors t and g of rows
// n2 = g L + l and t L + l stand in each other's places.
template <Direction D, bool byRows, class V, class Points, class Out>
void firstSweep(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Points src, Out out, bool inPlace) {
  using In = PointRows<V, Points>;
  const Rows<V> panel = rowsIn<V>(OneArray<Lane<V>>{job.work});
  const Columns<D, Rows<V>> columns(plan.passes1, job.twiddles + plan.columns1);
  const int bits = plan.passes1.bits[0];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits, row = plan.vectors2, tile = lanes<V> * row;
  PanelTile tiles[PanelPlan<Lane<V>>::kMaxTiles];
  for (std::ptrdiff_t t = 0; t < plan.vectors1; ++t) tiles[t] = {t * tile, 1};
  for (std::ptrdiff_t first = 0; first < plan.vectors2; first += plan.wide) {
    const PanelSource<In, byRows> source = {In{src}.from(first), tiles, row},
                                  next = {In{src}.from(first + plan.wide), tiles, row};
    panelPass<D, 1>(bits, source, plan.n1, plan.wide, panel);
    furtherPasses(columns, panel, plan.n1 * plan.wide >> bits, 0, blocks, blocks);
    for (std::ptrdiff_t v = 0; v < plan.wide; ++v) {
      const std::ptrdiff_t g = first + v, to = g % plan.vectors1 * tile + g / plan.vectors1 * plan.vectors1;
      if (inPlace) transposePanel<D, typename Points::Order>(job, plan, panel, v, next, g, out.from(g), tile, row);
      else transposePanel<D, typename Points::Order>(job, plan, panel, v, next, g, out.from(to), 1, row);
    }
  }
}

// Where the second sweep finds a panel's tiles. In place those that come before it have been exchanged.
template <class T>
void findTiles(const PanelPlan<T>& plan, std::ptrdiff_t panel, bool inPlace, PanelTile* tiles) {
  const std::ptrdiff_t n = plan.vectors1, tile = kLanes<T> * plan.vectors2;
  for (std::ptrdiff_t fold = 0; fold < plan.folds; ++fold)
    for (std::ptrdiff_t g = 0; g < n; ++g, ++tiles)
      if (inPlace && g >= panel) *tiles = {panel * tile + fold * n + g, tile};
      else *tiles = {g * tile + fold * n + panel, 1};
}

// In place: what stands in a panel's columns in the tiles after it gives way to the panel's results, and takes the
// places that have just been read.
template <class T, class RowSet>
[[gnu::noinline]] void vacate(const PanelPlan<T>& plan, std::ptrdiff_t panel, RowSet rows) {
  const std::ptrdiff_t n = plan.vectors1, end = panel + plan.wide, tile = kLanes<T> * plan.vectors2;
  // Some tiles at a time, so that writes come as runs.
  constexpr std::ptrdiff_t kRun = 4;
  for (std::ptrdiff_t first = end; first < n; first += kRun)
    for (std::ptrdiff_t i = 0; i < tile; i += n)
      for (std::ptrdiff_t t = panel; t < end; ++t)
        for (std::ptrdiff_t g = first; g < first + kRun && g < n; ++g) {
          rows.prefetch((g + kRun) * tile + i + t);
          rows.put(t * tile + i + g, rows.get(g * tile + i + t));
        }
}

template <Direction D, bool byRows, class V, class RowSet, class Points>
void secondSweep(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, RowSet rows, Points dst, bool inPlace) {
  const Rows<V> panel = rowsIn<V>(OneArray<Lane<V>>{job.work});
  Passes passes = plan.passes2;
  --passes.count;
  const Columns<D, Rows<V>> columns(passes, job.twiddles + plan.columns2);
  const int bits = passes.bits[0];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits, m = plan.n2 * plan.wide >> bits, last = plan.n2 / 8 >> bits;
  PanelTile tiles[PanelPlan<Lane<V>>::kMaxTiles];
  const PanelSource<RowSet, byRows> source = {rows, tiles, plan.vectors2};
  findTiles(plan, 0, inPlace, tiles);
  for (std::ptrdiff_t first = 0; first < plan.vectors1; first += plan.wide) {
    panelPass<D, RowSet::kTurns>(bits, source, plan.n2, plan.wide, panel);
    if (inPlace) vacate(plan, first, rows);
    findTiles(plan, first + plan.wide, inPlace, tiles);
    for (std::ptrdiff_t b = 0; b < blocks; ++b) {
      furtherPasses(columns, panel.from(b * m), m, b, 1, blocks);
      if (job.scale) lastPanelPass<D, true>(job, plan, panel, source, b * last, last, dst, first);
      else lastPanelPass<D, false>(job, plan, panel, source, b * last, last, dst, first);
    }
  }
}

// By way of rows in dst's room.
template <Direction D, class V, class Points, class RowSet, class Results>
void inPanels(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Points src, RowSet rows, Results dst) {
  const bool inPlace = haveSameArray(src, dst);
  const auto sweep = [&]<bool byRows>(auto rowsOut, auto pointsOut) {
    firstSweep<D, byRows, V>(job, plan, src, rowsOut, inPlace);
    secondSweep<D, byRows, V>(job, plan, rows, pointsOut, inPlace);
  };
  if (exceedsCache(int64_t{sizeof(Lane<V>)} << job.order)) {
    // Half of the points at least half of the cache: it does not hold them from one sweep to the next.
    if (isAligned<V>(dst)) {
      sweep.template operator()<true>(pastCaches(rows), pastCaches(dst));
      return _mm_sfence();
    }
  } else if constexpr (std::is_same_v<Points, Split<Lane<V>>>) {
    // Lines of two arrays come from the third cache sooner a vector of many rows at a time.
    return sweep.template operator()<false>(rows, dst);
  }
  // Asked for row by row, as a row's page is then opened once.
  sweep.template operator()<true>(rows, dst);
}

// src and dst may be the same.
template <Direction D, class V, class Points>
void inPanels(const Job<Lane<V>>& job, Points src, Points dst) {
  using T = Lane<V>;
  constexpr bool twoArrays = std::is_same_v<Points, Split<T>>;
  const PanelPlan<T> plan(job.order, twoArrays);
  if constexpr (twoArrays) {
    // Rows between the sweeps then alternate.
    if (sharePageOffset(src) || sharePageOffset(dst)) {
      // A panel's room is the same in rows of either kind, as its rows are of even numbers of vectors.
      static_assert(kPanelRowBytes / (2 * kVectorBytes) % 2 == 0);
      return inPanels<D, V>(job, plan, src, AlternatingRows<V>{{dst.re, dst.im}},
                            Split<T, Via::caches, true>{{dst.re, dst.im}});
    }
  }
  inPanels<D, V>(job, plan, src, rowsIn<V>(dst), dst);
}

}  // namespace ovks::fft
