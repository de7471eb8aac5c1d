// SPDX-License-Identifier: MIT
// What happens to a panel: its columns' first pass from memory, its transposition on the way back, and their last pass.
#pragma once

#include "transform/panel_plan.hpp"

namespace ovks::fft {

// Where a panel lies in memory: vector v of its row g L + l is l * lane + v * tiles[g].vector on from tiles[g].first.
struct PanelTile {
  std::ptrdiff_t first, vector;
};
template <class In, bool byRows>
struct PanelSource {
  static constexpr bool kByRows = byRows;

  In in;
  const PanelTile* tiles;
  std::ptrdiff_t lane;

  OVKS_INLINE In at(std::ptrdiff_t g, std::ptrdiff_t l, std::ptrdiff_t v) const {
    return in.from(tiles[g].first + v * tiles[g].vector).from(Even{l * lane});
  }
  OVKS_INLINE void prefetch(std::ptrdiff_t g, std::ptrdiff_t l, std::ptrdiff_t v) const { at(g, l, v).prefetch(0); }
  // n vectors of a panel from the given one on, row by row.
  template <int L>
  OVKS_INLINE void prefetchRows(std::ptrdiff_t vector, int n, std::ptrdiff_t wide) const {
    std::ptrdiff_t row = vector / wide, v = vector % wide;
    for (int j = 0; j < n; ++j) {
      prefetch(row / L, row % L, v);
      if (++v == wide) v = 0, ++row;
    }
  }
};

// Rows asked for before they are read.
inline constexpr int kRowsAhead = 4;

// Every so many vectors of each row take the columns' first pass, from memory into a panel.
template <Direction D, int R, int every, class Source, class V>
[[gnu::noinline]] void panelPass(Source source, std::ptrdiff_t rows, std::ptrdiff_t wide, std::ptrdiff_t firstVector,
                                 Rows<V> panel) {
  constexpr std::ptrdiff_t L = lanes<V>;
  const std::ptrdiff_t n = rows / R;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    for (std::ptrdiff_t v = firstVector; v < wide; v += every) {
      const Rows<V> to = panel.from(i * wide + v);
      // The processor does not see which rows are to follow.
      unroll<R>([&](auto j)
                    __attribute__((always_inline)) { source.prefetch(i / L + j * (n / L), i % L + kRowsAhead, v); });
      butterfly<D, R>(
          [&](auto j) __attribute__((always_inline)) { return source.at(i / L + j * (n / L), i % L, v).get(0); },
          [&](auto k, Complex<V> x)
              __attribute__((always_inline)) { to.put(bitReversed(k, log2OfPower(R)) * (n * wide), x); });
    }
  }
}
template <Direction D, int turns, class Source, class V>
void panelPass(int bits, Source source, std::ptrdiff_t rows, std::ptrdiff_t wide, Rows<V> panel) {
  for (int turn = 0; turn < turns; ++turn)
    if (bits == 2) panelPass<D, 4, turns>(source, rows, wide, turn, panel);
    else panelPass<D, 8, turns>(source, rows, wide, turn, panel);
}

// The columns' passes after the first, on n blocks of m rows each: once for all kinds of sweeps.
template <Direction D, class V>
[[gnu::noinline]] void furtherPasses(const Columns<D, Rows<V>>& columns, Rows<V> panel, std::ptrdiff_t m,
                                     std::ptrdiff_t block, std::ptrdiff_t n, std::ptrdiff_t blocks) {
  columns.run(1, panel, m, block, n, blocks);
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
template <Direction D, class Order, class V, class Source, class Out>
[[gnu::noinline]] void transposePanel(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Rows<V> panel,
                                      std::ptrdiff_t v, Source next, std::ptrdiff_t g, Out out,
                                      std::ptrdiff_t outVector, std::ptrdiff_t outRow) {
  constexpr int L = lanes<V>, kLaneBits = log2OfPower(L);
  const PanelTwiddles<V> twiddles = {job.twiddles, job.twiddles + plan.fine, plan.vectors1};
  const std::ptrdiff_t step = plan.vectors1 * plan.wide;
  for (std::ptrdiff_t t = 0; t < plan.vectors1; ++t) {
    const std::ptrdiff_t tile = reversedBits(job.bitReversal, job.order, t, plan.bits1 - kLaneBits);
    Strided<L, Rows<V>> rows(panel.from(tile * plan.wide + v), step);
    keepInMemory(rows);  // The addresses written to take all registers.
    const auto row = [&](auto r) __attribute__((always_inline)) {
      return rows(Index<bitReversed(Order::template lane<V>(r), kLaneBits)>{});
    };
    if constexpr (Source::kByRows) next.template prefetchRows<L>((v * plan.vectors1 + t) * L, L, plan.wide);
    else
      for (int l = 0; l < L; ++l) next.prefetch(t, l, v);
    // Stores to where no cache line is would wait for it.
    if constexpr (Out::kVia == Via::caches)
      for (int l = 0; l < L; ++l) out.from((t + 1) * outVector).from(Even{l * outRow}).prefetch(0);
    transposed<Order, V>(
        [&](auto r, auto s) __attribute__((always_inline)) { return row(r).halves(row(s)); },
        [&](auto point) __attribute__((always_inline)) {
          unroll<L>([&](auto l) __attribute__((always_inline)) {
            out.from(t * outVector).from(Even{l * outRow}).put(0, twiddles.template turn<D>(t, g, l, point(l)));
          });
        });
  }
}

// Where blocks of the last pass leave spectrum points: that of row 0, vector v, at place(block, v), the others a step
// apart.
template <class V>
struct PanelResults {
  const int32_t* bitReversal;
  int order, bits;
  std::ptrdiff_t vectors1, first, step;

  OVKS_INLINE std::ptrdiff_t place(std::ptrdiff_t block, std::ptrdiff_t v) const {
    return (reversedBits(bitReversal, order, block, bits) * vectors1 + first + v) * lanes<V>;
  }
};

// The imaginary parts of a block, which have been held back in the panel.
template <class V>
OVKS_INLINE void releaseImaginary(Rows<V> panel, std::ptrdiff_t wide, PanelResults<V> results, std::ptrdiff_t block,
                                  Lane<V>* im) {
  for (std::ptrdiff_t v = 0; v < wide; ++v) {
    const Rows<V> from = panel.from(block * 8 * wide + v);
    const std::ptrdiff_t then = results.place(block + 1, v), to = results.place(block, v);
    for (int j = 0; j < 8; ++j) __builtin_prefetch(im + then + j * results.step, 0, 2);
    unroll<8>([&](auto j) __attribute__((always_inline)) { store(im + to + j * results.step, from.get(j * wide).im); });
  }
}

// The last pass, on n blocks of 8 rows of the panel from the given one on: spectrum point k of the columns is row k of
// the points, to which `first` and on are the panel's columns. Meanwhile memory is asked for the next panel. Imaginary
// parts that are held back go out a block later.
template <Direction D, bool scale, class V, class Source, class Points>
[[gnu::noinline]] void lastPanelPass(const Job<Lane<V>>& job, const PanelPlan<Lane<V>>& plan, Rows<V> panel,
                                     Source next, std::ptrdiff_t block, std::ptrdiff_t n, Points dst,
                                     std::ptrdiff_t first) {
  const std::ptrdiff_t blocks = plan.n2 / 8, step = blocks * plan.vectors1 * lanes<V>;
  const PanelResults<V> results = {job.bitReversal, job.order, plan.bits2 - 3, plan.vectors1, first, step};
  const Lane<V>* w = job.twiddles + plan.columns2 + columnTwiddles(blocks, plan.passes2.bits[0]) + block * 2 * 7;
  const V f = splat<V>(job.factor);
  const std::ptrdiff_t start = block;
  for (const std::ptrdiff_t end = block + n; block < end; ++block, w += 2 * 7) {
    for (std::ptrdiff_t v = 0; v < plan.wide; ++v) {
      const Rows<V> from = panel.from(block * 8 * plan.wide + v);
      if constexpr (Source::kByRows) next.template prefetchRows<lanes<V>>((block * plan.wide + v) * 8, 8, plan.wide);
      else
        for (int j = 0; j < 8; ++j) next.prefetch(block * 8 / lanes<V>, block * 8 % lanes<V> + j, v);
      const std::ptrdiff_t then = results.place(block + 1, v), to = results.place(block, v);
      if constexpr (Points::kVia == Via::caches)
        for (int j = 0; j < 8; ++j) dst.template prefetch<V>(then + j * step);
      butterfly<D, 8>(
          [&](auto j) __attribute__((always_inline)) {
            const Complex<V> x = from.get(j * plan.wide);
            if constexpr (decltype(j)::value == 0) return x;
            else return turnBy<D>(x, w + 2 * (j - 1));
          },
          [&](auto j, Complex<V> x) __attribute__((always_inline)) {
            if constexpr (scale) x = {x.re * f, x.im * f};
            if constexpr (Points::kHeld) {
              store(dst.re + to + j * step, x.re);
              store(from.from(j * plan.wide).p + lanes<V>, x.im);
            } else {
              dst.put(to + j * step, x);
            }
          });
    }
    if constexpr (Points::kHeld)
      if (block > start) releaseImaginary(panel, plan.wide, results, block - 1, dst.im);
  }
  if constexpr (Points::kHeld) releaseImaginary(panel, plan.wide, results, block - 1, dst.im);
}

}  // namespace ovks::fft
