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
#include "transform/panel_plan.hpp"

namespace ovks::fft {

// Where a panel lies in memory: vector v of its row g L + l is l * lane + v * tiles[g].vector on from tiles[g].first.
struct PanelTile {
  std::ptrdiff_t first, vector;
};
template <class In>
struct PanelSource {
  In in;
  const PanelTile* tiles;
  std::ptrdiff_t lane;

  OVKS_INLINE In at(std::ptrdiff_t g, std::ptrdiff_t l, std::ptrdiff_t v) const {
    return in.from(tiles[g].first + v * tiles[g].vector + l * lane);
  }
  OVKS_INLINE void prefetch(std::ptrdiff_t g, std::ptrdiff_t l, std::ptrdiff_t v) const { at(g, l, v).prefetch(0); }
};

// Rows asked for before they are read.
inline constexpr int kRowsAhead = 4;

// The columns' first pass, from memory into a panel.
template <Direction D, int R, class In, class V>
[[gnu::noinline]] void panelPass(PanelSource<In> source, std::ptrdiff_t rows, std::ptrdiff_t wide, Rows<V> panel) {
  constexpr std::ptrdiff_t L = lanes<V>;
  const std::ptrdiff_t n = rows / R;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    for (std::ptrdiff_t v = 0; v < wide; ++v, panel = panel.from(1)) {
      // The processor does not see which rows are to follow.
      unroll<R>([&](auto j)
                    __attribute__((always_inline)) { source.prefetch(i / L + j * (n / L), i % L + kRowsAhead, v); });
      butterfly<D, R>(
          [&](auto j) __attribute__((always_inline)) { return source.at(i / L + j * (n / L), i % L, v).get(0); },
          [&](auto k, Complex<V> x)
              __attribute__((always_inline)) { panel.put(bitReversed(k, log2OfPower(R)) * (n * wide), x); });
    }
  }
}
template <Direction D, class In, class V>
void panelPass(int bits, PanelSource<In> source, std::ptrdiff_t rows, std::ptrdiff_t wide, Rows<V> panel) {
  if (bits == 2) panelPass<D, 4>(source, rows, wide, panel);
  else if (bits == 3) panelPass<D, 8>(source, rows, wide, panel);
  else panelPass<D, 16>(source, rows, wide, panel);
}

// Twiddles exp(-2 pi i k1 n2 / N) for the L numbers k1 of vector t and number l of the n2 of vector g: a product of
// that for t's first k1 and that for k1's distance from it.
template <class V>
struct PanelTwiddles {
  using T = Lane<V>;
  const T *coarse, *fine;
  std::ptrdiff_t vectors1;

  template <Direction D>
  OVKS_INLINE Complex<V> turn(std::ptrdiff_t t, std::ptrdiff_t g, int l, Complex<V> x) const {
    const T* c = coarse + (g * vectors1 + t) * 2 * lanes<V> + l;
    const T* f = fine + (g * lanes<V> + l) * 2 * lanes<V>;
    const Complex<V> a = {load<V>(f), load<V>(f + lanes<V>)};
    const Complex<V> w = fft::turn<Direction::forward>(a, splat<V>(c[0]), splat<V>(c[lanes<V>]));
    return fft::turn<D>(x, w.re, w.im);
  }
};

// The `bits` low bits of i reversed, from the table of a transform of the given order.
OVKS_INLINE std::ptrdiff_t reversedBits(const int32_t* bitReversal, int order, std::ptrdiff_t i, int bits) {
  return bitReversal[i] >> (order - 1 - bits);
}

// Columns g L + 0 ... L - 1, a panel's vectors v, turned and transposed: vector t of row l goes to
// t * outVector + l * outRow. Meanwhile memory is asked for the next panel.
template <Direction D, class Order, class V, class In, class Out>
[[gnu::noinline]] void transposePanel(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Rows<V> panel,
                                      std::ptrdiff_t v, PanelSource<In> next, std::ptrdiff_t g, Out out,
                                      std::ptrdiff_t outVector, std::ptrdiff_t outRow) {
  constexpr int L = lanes<V>, kLaneBits = log2OfPower(L);
  const PanelTwiddles<V> twiddles = {job.twiddles, job.twiddles + plan.fine, plan.vectors1};
  const std::ptrdiff_t step = plan.vectors1 * plan.wide;
  for (std::ptrdiff_t t = 0; t < plan.vectors1; ++t) {
    const std::ptrdiff_t tile = reversedBits(job.bitReversal, job.order, t, plan.bits1 - kLaneBits);
    const Strided<L, Rows<V>> rows(panel.from(tile * plan.wide + v), step);
    const auto row = [&](auto r) __attribute__((always_inline)) {
      return rows(Index<bitReversed(Order::template lane<V>(r), kLaneBits)>{});
    };
    for (int l = 0; l < L; ++l) next.prefetch(t, l, v);
    // Stores to where no cache line is would wait for it.
    if constexpr (Out::kVia == Via::caches)
      for (int l = 0; l < L; ++l) out.prefetch((t + 1) * outVector + l * outRow);
    transposed<Order, V>(
        [&](auto r, auto s) __attribute__((always_inline)) { return row(r).halves(row(s)); },
        [&](auto point) __attribute__((always_inline)) {
          unroll<L>([&](auto l) __attribute__((always_inline)) {
            out.put(t * outVector + l * outRow, twiddles.template turn<D>(t, g, l, point(l)));
          });
        });
  }
}

// Into the rows of the other matrix. In place each panel goes where it came from, so that vectors t and g of rows
// n2 = g L + l and t L + l stand in each other's places.
template <Direction D, class V, class Points, class Out>
void firstSweep(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Points src, Out out, bool inPlace) {
  using In = PointRows<V, Points>;
  const Rows<V> panel = rowsIn<V>(OneArray<Lane<V>>{job.work});
  const Columns<D, Rows<V>> columns(plan.passes1, job.twiddles + plan.columns1);
  const int bits = plan.passes1.bits[0];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits, row = plan.vectors2, tile = lanes<V> * row;
  PanelTile tiles[PanelPlan<Lane<V>>::kMaxTiles];
  for (std::ptrdiff_t t = 0; t < plan.vectors1; ++t) tiles[t] = {t * tile, 1};
  for (std::ptrdiff_t first = 0; first < plan.vectors2; first += plan.wide) {
    const PanelSource<In> source = {In{src}.from(first), tiles, row},
                          next = {In{src}.from(first + plan.wide), tiles, row};
    panelPass<D>(bits, source, plan.n1, plan.wide, panel);
    columns.run(1, panel, plan.n1 * plan.wide >> bits, 0, blocks, blocks);
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

// The last pass, on n blocks of 8 rows of the panel from the given one on: spectrum point k of the columns is row k of
// the points, to which `first` and on are the panel's columns. Meanwhile memory is asked for the next panel.
template <Direction D, bool scale, class V, class In, class Points>
[[gnu::noinline]] void lastPanelPass(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Rows<V> panel,
                                     PanelSource<In> next, std::ptrdiff_t block, std::ptrdiff_t n, Points dst,
                                     std::ptrdiff_t first) {
  const std::ptrdiff_t blocks = plan.n2 / 8;
  const Lane<V>* w = job.twiddles + plan.columns2 + columnTwiddles(blocks, plan.passes2.bits[0]) + block * 2 * 7;
  const V f = splat<V>(job.factor);
  for (; n > 0; --n, ++block, w += 2 * 7) {
    const std::ptrdiff_t k = reversedBits(job.bitReversal, job.order, block, plan.bits2 - 3);
    for (std::ptrdiff_t v = 0; v < plan.wide; ++v) {
      const Rows<V> from = panel.from(block * 8 * plan.wide + v);
      for (int j = 0; j < 8; ++j) next.prefetch(block * 8 / lanes<V>, block * 8 % lanes<V> + j, v);
      // Rows of the next block.
      if constexpr (Points::kVia == Via::caches) {
        const std::ptrdiff_t then = reversedBits(job.bitReversal, job.order, block + 1, plan.bits2 - 3);
        for (int j = 0; j < 8; ++j)
          dst.template prefetch<V>(((then + j * blocks) * plan.vectors1 + first + v) * lanes<V>);
      }
      butterfly<D, 8>(
          [&](auto j) __attribute__((always_inline)) {
            const Complex<V> x = from.get(j * plan.wide);
            if constexpr (decltype(j)::value == 0) return x;
            else return turnBy<D>(x, w + 2 * (j - 1));
          },
          [&](auto j, Complex<V> x) __attribute__((always_inline)) {
            if constexpr (scale) x = {x.re * f, x.im * f};
            dst.put(((k + j * blocks) * plan.vectors1 + first + v) * lanes<V>, x);
          });
    }
  }
}

template <Direction D, class V, class RowSet, class Points>
void secondSweep(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, RowSet rows, Points dst, bool inPlace) {
  const Rows<V> panel = rowsIn<V>(OneArray<Lane<V>>{job.work});
  Passes passes = plan.passes2;
  --passes.count;
  const Columns<D, Rows<V>> columns(passes, job.twiddles + plan.columns2);
  const int bits = passes.bits[0];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits, m = plan.n2 * plan.wide >> bits, last = plan.n2 / 8 >> bits;
  PanelTile tiles[PanelPlan<Lane<V>>::kMaxTiles];
  const PanelSource<RowSet> source = {rows, tiles, plan.vectors2};
  findTiles(plan, 0, inPlace, tiles);
  for (std::ptrdiff_t first = 0; first < plan.vectors1; first += plan.wide) {
    panelPass<D>(bits, source, plan.n2, plan.wide, panel);
    if (inPlace) vacate(plan, first, rows);
    findTiles(plan, first + plan.wide, inPlace, tiles);
    for (std::ptrdiff_t b = 0; b < blocks; ++b) {
      columns.run(1, panel.from(b * m), m, b, 1, blocks);
      if (job.scale) lastPanelPass<D, true>(job, plan, panel, source, b * last, last, dst, first);
      else lastPanelPass<D, false>(job, plan, panel, source, b * last, last, dst, first);
    }
  }
}

// src and dst may be the same.
template <Direction D, class V, class Points>
void inPanels(const Job<Lane<V>>& job, Points src, Points dst) {
  const PanelPlan<Lane<V>> plan(job.order, sharePageOffset(src) || sharePageOffset(dst));
  const auto rows = rowsIn<V>(dst);
  const bool inPlace = haveSameArray(src, dst);
  const auto sweep = [&](auto rowsOut, auto pointsOut) {
    firstSweep<D, V>(job, plan, src, rowsOut, inPlace);
    secondSweep<D, V>(job, plan, rows, pointsOut, inPlace);
  };
  // Half of the points at least half of the cache: it does not hold them from one sweep to the next.
  if (isAligned<V>(dst) && exceedsCache(int64_t{sizeof(Lane<V>)} << job.order)) {
    sweep(pastCaches(rows), pastCaches(dst));
    _mm_sfence();
  } else {
    sweep(rows, dst);
  }
}

}  // namespace ovks::fft
