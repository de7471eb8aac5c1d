// SPDX-License-Identifier: MIT
// The closing pass: tiles of L rows, transposed, turned and transformed across their lanes, into natural order.
#pragma once

#include "transform/crowded_sets.hpp"
#include "transform/passes.hpp"

namespace ovks::fft {

// Twiddles exp(-2 pi i l k / N) for point l of the L rows k = g L + 0 ... L - 1 of tile g, one vector each, rows in the
// points' order.
template <class V>
struct TileTwiddles {
  using T = Lane<V>;
  static constexpr int kPerTile = (lanes<V> - 1) * 2 * lanes<V>;
  static constexpr bool kAskAhead = false;

  const T* table;

  template <Direction D, int l>
  OVKS_INLINE Complex<V> turn(std::ptrdiff_t g, Complex<V> x) const {
    const T* w = table + g * kPerTile + (l - 1) * 2 * lanes<V>;
    return fft::turn<D>(x, load<V>(w), load<V>(w + lanes<V>));
  }
};

// The same as products of exp(-2 pi i l g L / N), a number for each tile, and exp(-2 pi i l r / N) for row r of a tile:
// next to no memory, where reading it would take longer than the product.
template <class V>
struct TileTwiddleProducts {
  using T = Lane<V>;
  static constexpr int kPerTile = (lanes<V> - 1) * 2;
  // Tiles of eight rows are done before the next are there by themselves.
  static constexpr bool kAskAhead = lanes<V> == 8;

  const T *tiles, *rows;

  template <Direction D, int l>
  OVKS_INLINE Complex<V> turn(std::ptrdiff_t g, Complex<V> x) const {
    const T* w = tiles + g * kPerTile + (l - 1) * 2;
    const T* r = rows + (l - 1) * 2 * lanes<V>;
    const Complex<V> row = {load<V>(r), load<V>(r + lanes<V>)};
    const Complex<V> p = fft::turn<Direction::forward>(row, splat<V>(w[0]), splat<V>(w[1]));
    return fft::turn<D>(x, p.re, p.im);
  }
};

// Tile g of m rows, the first of which is given, rows and points of rows in the given order; step j of its spectrum
// goes to out(Index<j>, x).
template <Direction D, bool scale, class Order, class RowSet, class Twiddles, class Out,
          class V = typename RowSet::Vector>
OVKS_INLINE void closeTile(RowSet tile, std::ptrdiff_t step, std::ptrdiff_t g, Twiddles twiddles, Lane<V> factor,
                           Out out) {
  const V f = splat<V>(factor);
  const auto row = [&](auto r) __attribute__((always_inline)) {
    return tile.from(bitReversed(Order::template lane<V>(r), log2OfPower(lanes<V>)) * step);
  };
  acrossLanes<D, Order, V>(
      [&](auto r, auto s) __attribute__((always_inline)) { return row(r).halves(row(s)); },
      [&](auto l, Complex<V> x)
          __attribute__((always_inline)) { return twiddles.template turn<D, decltype(l)::value>(g, x); },
      [&](auto j, Complex<V> x) __attribute__((always_inline)) {
        if constexpr (scale) x = {x.re * f, x.im * f};
        out(j, x);
      });
}

// Row r of tile g of the spectrum stands in the row with r's bits reversed of tile reverse(g).
template <class V>
OVKS_INLINE std::ptrdiff_t reverseTile(const int32_t* bitReversal, std::ptrdiff_t g) {
  return bitReversal[g] >> (2 * log2OfPower(lanes<V>) - 1);
}

// All tiles in turn; of the next, which the processor does not see coming, the rows are asked for if wanted.
template <bool askAhead, class V, class Close>
OVKS_INLINE void forTiles(Rows<V> rows, std::ptrdiff_t m, const int32_t* bitReversal, Close close) {
  constexpr int L = lanes<V>;
  for (std::ptrdiff_t g = 0; g < m / L; ++g) {
    if constexpr (askAhead)
      if (g + 1 < m / L)
        for (int j = 0; j < L; ++j) rows.from(reverseTile<V>(bitReversal, g + 1) + j * (m / L)).prefetchNear(0);
    close(g, rows.from(reverseTile<V>(bitReversal, g)));
  }
}

// Takes the spectra of a tile: step j goes to first + j * step.
template <class V, class Points>
OVKS_INLINE auto to(Points dst, std::ptrdiff_t first, std::ptrdiff_t step) {
  return [steps = Strided<lanes<V>, Points>(dst.from(first), step)](auto j, auto x) __attribute__((always_inline)) {
    steps(j).put(0, x);
  };
}

// From rows into another place.
template <Direction D, bool scale, class V, class Twiddles, class Points>
[[gnu::noinline]] void closingPass(Rows<V> rows, Points dst, std::ptrdiff_t m, Twiddles twiddles,
                                   const int32_t* bitReversal, Lane<V> factor) {
  constexpr int L = lanes<V>;
  forTiles<Twiddles::kAskAhead>(
      rows, m, bitReversal, [&](std::ptrdiff_t g, Rows<V> tile) __attribute__((always_inline)) {
        closeTile<D, scale, typename Points::Order>(tile, m / L, g, twiddles, factor, to<V>(dst, g * L, m));
      });
}

// Into arrays that crowd sets, the imaginary parts of several tiles at a time, so that they come as runs: some steps of
// them with each of the next tiles, as all at once would crowd the sets again.
inline constexpr int kHeldTiles = 8;
template <Direction D, bool scale, class V, class Twiddles>
[[gnu::noinline]] void closingPassHeld(Rows<V> rows, Split<Lane<V>> dst, std::ptrdiff_t m, Twiddles twiddles,
                                       const int32_t* bitReversal, Lane<V> factor) {
  constexpr int L = lanes<V>, W = kHeldTiles, kSteps = L < W ? 1 : L / W;
  alignas(64) Lane<V> held[2][L * W * L];
  int turn = 0;
  const auto releaseFrom = [&](int step, std::ptrdiff_t firstTile) {
    release<kSteps, W, V>(dst.im + firstTile * L + step * m, m, held[turn ^ 1] + step * W * L);
  };
  forTiles<Twiddles::kAskAhead>(
      rows, m, bitReversal, [&](std::ptrdiff_t g, Rows<V> tile) __attribute__((always_inline)) {
        const int i = static_cast<int>(g % W), step = i * kSteps;
        if (i == 0) turn ^= 1;
        if (g >= W && step < L) releaseFrom(step, g - i - W);
        Lane<V>* const h = held[turn] + i * L;
        closeTile<D, scale, InOrder>(
            tile, m / L, g, twiddles, factor, [&](auto j, Complex<V> x) __attribute__((always_inline)) {
              store(dst.re + g * L + j * m, x.re);
              store(h + j * (W * L), x.im);
            });
      });
  turn ^= 1;
  for (int step = 0; step < L; step += kSteps) releaseFrom(step, m / L - W);
}

}  // namespace ovks::fft
