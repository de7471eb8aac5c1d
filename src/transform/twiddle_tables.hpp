// SPDX-License-Identifier: MIT
// The tables of twiddles: built by Init for long transforms, by the compiler for others.
#pragma once

#include "core/part.hpp"
#include "transform/panel_plan.hpp"
#include "transform/real_pairs.hpp"
#include "transform/twiddle_layout.hpp"
#include "transform/unit_circle.hpp"

namespace ovks::fft {

// The first 2^k entries, at least count, of a table of bit reversal: entry i is twice i with its order - 2 bits
// reversed.
inline void makeBitReversal(int32_t* table, int order, int32_t count) {
  table[0] = 0;
  for (int32_t made = 1; made < count; made *= 2) {
    const int32_t* __restrict lower = table;
    int32_t* __restrict upper = table + made;
    const int32_t bit = (1 << (order - 2)) / made;
    for (int32_t i = 0; i < made; ++i) upper[i] = lower[i] + bit;
  }
}

// Points factor * (first + l) of the circle, l = 0 ... L - 1, in the given order.
template <class V, class Order, class T>
OVKS_INLINE Complex<V> multiples(const UnitCircle<T>& circle, int32_t factor, int32_t first) {
  Vec<int32_t, lanes<V>> l;
  for (int i = 0; i < lanes<V>; ++i) l[i] = Order::template lane<V>(i);
  return circle.template points<V>((l + first) * factor);
}
// The same as a table: real parts, then imaginary parts.
template <class V, class Order, class T>
constexpr void putPoints(T* p, const UnitCircle<T>& circle, int32_t factor, int32_t first) {
  if (std::is_constant_evaluated()) {
    for (int i = 0; i < lanes<V>; ++i) {
      const Complex<T> w = circle(factor * (first + Order::template lane<V>(i)));
      p[i] = w.re;
      p[lanes<V> + i] = w.im;
    }
  } else {
    const Complex<V> w = multiples<V, Order>(circle, factor, first);
    store(p, w.re);
    store(p + lanes<V>, w.im);
  }
}

// Points step, 2 step ... (n - 1) step of the circle, one after the other.
template <class T>
constexpr T* appendMultiples(T* p, const UnitCircle<T>& circle, int32_t step, int n) {
  using V = Vec<T>;
  constexpr int L = lanes<V>;
  if (std::is_constant_evaluated()) {
    for (int j = 1; j < n; ++j) {
      const Complex<T> w = circle(step * j);
      *p++ = w.re;
      *p++ = w.im;
    }
    return p;
  }
  for (int j = 1; j < n; j += L) {
    T points[2 * L];
    Interleaved<T>{points}.put(0, multiples<V, ByChunks>(circle, step, j));
    int elements = 2 * (n - j < L ? n - j : L);
    const T* from = points;
    for (; elements >= L; elements -= L, from += L, p += L) store(p, load<V>(from));
    if (elements > 0) storePart(p, load<V>(from), elements);
    p += elements;
  }
  return p;
}

// Vectors of twiddles for rows row ... row + lanes - 1 of the closing pass.
template <class V, class Order, class T>
constexpr void makeTile(T* p, const UnitCircle<T>& circle, int32_t row) {
  for (int l = 1; l < lanes<V>; ++l, p += 2 * lanes<V>) putPoints<V, Order>(p, circle, l, row);
}

// Twiddles of the passes over columns: see passes.hpp.
template <class T>
constexpr void makeColumns(T* p, const T* sine, int sineOrder, const Passes& passes) {
  int blockBits = passes.bits[0];
  for (int s = 1; s < passes.count; ++s) {
    const int bits = passes.bits[s];
    const UnitCircle<T> circle(sine, sineOrder, blockBits + bits);
    for (int32_t b = 0; b < 1 << blockBits; ++b) p = appendMultiples(p, circle, bitReversed(b, blockBits), 1 << bits);
    blockBits += bits;
  }
}

// Twiddles of a transform in panels.
template <class Order, class T>
void makePanelTwiddles(T* table, const T* sine, int sineOrder, int order) {
  using V = Vec<T>;
  const PanelPlan<T> plan(order);
  const UnitCircle<T> circle(sine, sineOrder, order);
  T *coarse = table, *fine = table + plan.fine;
  for (int32_t n2 = 0; n2 < plan.n2; ++n2, fine += 2 * lanes<V>) putPoints<V, Order>(fine, circle, n2, 0);
  for (int32_t n2 = 0; n2 < plan.n2; n2 += lanes<V>)
    for (int32_t k1 = 0; k1 < plan.n1; k1 += lanes<V>, coarse += 2 * lanes<V>)
      putPoints<V, InOrder>(coarse, circle, k1, n2);
  makeColumns(table + plan.columns1, sine, sineOrder, plan.passes1);
  makeColumns(table + plan.columns2, sine, sineOrder, plan.passes2);
}

// Those of rows 1 ... M/2, for passes of real transforms that include the split; of products, the first tile's.
template <class T>
constexpr void makeRealTiles(T* table, const T* sine, int sineOrder, int order) {
  using V = Vec<T>;
  constexpr int L = lanes<V>;
  const UnitCircle<T> circle(sine, sineOrder, order - 1);
  const int32_t rows = order - 1 < kMinProductsOrder<T> ? (1 << (order - 1)) / L / 2 : L;
  for (int32_t k = 0; k < rows; k += L, table += TileTwiddles<V>::kPerTile) makeTile<V, ByChunks>(table, circle, k + 1);
}

template <class Order, class T>
constexpr void makeTwiddles(T* table, const T* sine, int sineOrder, int order, const Passes& passes) {
  using V = Vec<T>;
  constexpr int L = lanes<V>;
  if constexpr (kHasPanels<T>)
    if (takesPanels<T>(order)) return makePanelTwiddles<Order>(table, sine, sineOrder, order);
  const int32_t rows = (1 << order) / L;
  const TwiddleLayout<T> layout(order);
  const UnitCircle<T> circle(sine, sineOrder, order);
  if (order >= kMinProductsOrder<T>) {
    makeTile<V, Order>(table, circle, 0);
    T* p = table + layout.tiles;
    for (int32_t k = 0; k < rows; k += L) p = appendMultiples(p, circle, k, L);
  } else {
    T* p = table;
    for (int32_t k = 0; k < rows; k += L, p += TileTwiddles<V>::kPerTile) makeTile<V, Order>(p, circle, k);
  }
  makeColumns(table + layout.columns, sine, sineOrder, passes);
}

// Points quarter + first + l, 0 - sin - i cos of the angle beyond the quarter: both come as runs. No zero is negative.
template <class V, class T>
constexpr void putSplitPoints(T* p, const UnitCircle<T>& circle, int32_t quarter, int32_t first) {
  if (std::is_constant_evaluated()) return putPoints<V, ByChunks>(p, circle, 1, quarter + first);
  const auto last = [](int i) { return lanes<V> - 1 - ByChunks::lane<V>(i); };
  store(p, V{} - shuffle(load<V>(circle.sines() + first), [](int i) { return ByChunks::lane<V>(i); }));
  store(p + lanes<V>, V{} - shuffle(load<V>(circle.sines() + quarter - first - lanes<V> + 1), last));
}

// The first quarter of the circle.
template <class T>
constexpr void putCoarseSplitPoints(T* p, const UnitCircle<T>& circle) {
  for (int32_t j = 0; j < circle.quarter(); ++j) {
    const Complex<T> w = circle(j);
    *p++ = w.re;
    *p++ = w.im;
  }
}

// See real_split.hpp. A factor of -i is a quarter of the circle.
template <class V, class T>
constexpr void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  const UnitCircle<T> circle(sine, sineOrder, order);
  const bool twoLevels = splitInTwoLevels<T>(order);
  const int32_t quarter = (1 << order) / 4, pairs = twoLevels ? 1024 : quarter;
  for (int32_t i = 0; i < pairs; i += lanes<V>) putSplitPoints<V>(table + 2 * i, circle, quarter, i + 1);
  if (twoLevels) putCoarseSplitPoints(table + 2 * pairs, UnitCircle<T>(sine, sineOrder, order - 10));
}

template <class T>
constexpr void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  if (splitLanes<T>(order) == kLanes<T>) makeSplitTwiddles<Vec<T>>(table, sine, sineOrder, order);
  else if constexpr (kAvx512 && sizeof(T) == 4) makeSplitTwiddles<Vec<T, kLanes<T> / 2>>(table, sine, sineOrder, order);
}

}  // namespace ovks::fft
