// SPDX-License-Identifier: MIT
// The tables of twiddles: built by Init for long transforms, by the compiler for others.
#pragma once

#include "transform/complex_transform.hpp"
#include "transform/real_split.hpp"
#include "transform/unit_circle.hpp"

namespace ovks::fft {

// Points factor * (first + l) of the circle, l = 0 ... L - 1, real parts then imaginary parts, in the given order.
template <class V, class Order, class T>
constexpr void putPoints(T* p, const UnitCircle<T>& circle, int32_t factor, int32_t first) {
  if (std::is_constant_evaluated()) {
    for (int i = 0; i < lanes<V>; ++i) {
      const Complex<T> w = circle(factor * (first + Order::template lane<V>(i)));
      p[i] = w.re;
      p[lanes<V> + i] = w.im;
    }
  } else {
    Vec<int32_t, lanes<V>> l;
    for (int i = 0; i < lanes<V>; ++i) l[i] = Order::template lane<V>(i);
    const Complex<V> w = circle.template points<V>((l + first) * factor);
    store(p, w.re);
    store(p + lanes<V>, w.im);
  }
}

// Points step, 2 step ... (n - 1) step of the circle, one after the other.
template <class T>
constexpr T* appendMultiples(T* p, const UnitCircle<T>& circle, int32_t step, int n) {
  using V = Vec<T>;
  for (int j = 1; j < n; j += lanes<V>) {
    T points[2 * lanes<V>] = {};
    putPoints<V, InOrder>(points, circle, step, j);
    for (int i = 0; i < lanes<V> && i < n - j; ++i) {
      *p++ = points[i];
      *p++ = points[lanes<V> + i];
    }
  }
  return p;
}

// Vectors of twiddles for rows row ... row + lanes - 1 of the closing pass.
template <class Twiddles, class V, class Order, class T>
constexpr void makeTile(T* p, const UnitCircle<T>& circle, int32_t row) {
  for (int i = 0; i < Twiddles::kStored; ++i, p += 2 * lanes<V>)
    putPoints<V, Order>(p, circle, Twiddles::point(i), row);
}
template <class Twiddles, class V, class Order, class T>
constexpr void makeTiles(T* p, const UnitCircle<T>& circle, int32_t rows) {
  for (int32_t k = 0; k < rows; k += lanes<V>, p += Twiddles::kPerTile) makeTile<Twiddles, V, Order>(p, circle, k);
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

template <class Order, class T>
constexpr void makeTwiddles(T* table, const T* sine, int sineOrder, int order) {
  using V = Vec<T>;
  constexpr int L = lanes<V>;
  if (takesPanels<T>(order)) return makePanelTwiddles<Order>(table, sine, sineOrder, order);
  const int32_t rows = (1 << order) / L;
  const TwiddleLayout<T> layout(order);
  const UnitCircle<T> circle(sine, sineOrder, order);
  if (order > kMaxInCacheOrder<T>) {
    makeTile<TileTwiddles<V, false>, V, Order>(table, circle, 0);
    T* p = table + layout.tiles;
    for (int32_t k = 0; k < rows; k += L) p = appendMultiples(p, circle, k, L);
  } else if (order < kMinFewTwiddlesOrder<T>) {
    makeTiles<TileTwiddles<V, false>, V, Order>(table, circle, rows);
  } else if constexpr (L == 8) {
    makeTiles<TileTwiddles<V, true>, V, Order>(table, circle, rows);
  }
  makeColumns(table + layout.columns, sine, sineOrder, passesOf<T>(order));
}

// See real_split.hpp. A factor of -i is a quarter of the circle.
template <class V, class T>
constexpr void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  const UnitCircle<T> circle(sine, sineOrder, order);
  const bool twoLevels = splitInTwoLevels<T>(order);
  const int32_t quarter = (1 << order) / 4, pairs = twoLevels ? 1024 : quarter;
  for (int32_t i = 0; i < pairs; i += lanes<V>) putPoints<V, ByChunks>(table + 2 * i, circle, 1, quarter + i + 1);
  if (!twoLevels) return;
  T* coarse = table + 2 * pairs;
  for (int32_t j = 0; j < 1 << (order - 12); ++j) {
    const Complex<T> w = circle(1024 * j);
    *coarse++ = w.re;
    *coarse++ = w.im;
  }
}

template <class T>
constexpr void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  if (splitLanes<T>(order) == kLanes<T>) makeSplitTwiddles<Vec<T>>(table, sine, sineOrder, order);
  else if constexpr (kAvx512 && sizeof(T) == 4) makeSplitTwiddles<Vec<T, kLanes<T> / 2>>(table, sine, sineOrder, order);
}

// Up to these orders the tables are constants.
inline constexpr int kMaxConstantOrder = 10, kMaxConstantSplitOrder = 11;

template <class T, int order>
struct ConstantTwiddles {
  alignas(64) T table[2 << order];
  constexpr ConstantTwiddles() : table{} { makeTwiddles<ByChunks>(table, kQuarterWave<T>.sine, kConstantOrder, order); }
};
template <class T, int order>
struct ConstantSplitTwiddles {
  alignas(64) T table[1 << (order - 1)];
  constexpr ConstantSplitTwiddles() : table{} { makeSplitTwiddles(table, kQuarterWave<T>.sine, kConstantOrder, order); }
};

// The constant tables of orders from first on.
template <template <class, int> class Table, class T, int first, int n>
struct ConstantTables {
  const T* ofOrder[n];

  template <int order>
  static constexpr Table<T, order> kTable{};

  constexpr ConstantTables() : ConstantTables(std::make_integer_sequence<int, n>{}) {}
  template <int... i>
  constexpr explicit ConstantTables(std::integer_sequence<int, i...>) : ofOrder{kTable<first + i>.table...} {}
};
template <template <class, int> class Table, class T, int first, int last>
inline constexpr ConstantTables<Table, T, first, last - first + 1> kConstantTables;

template <class T>
const T* constantTwiddles(int order) {
  constexpr int kFirst = kMaxShortOrder<T> + 1;
  return kConstantTables<ConstantTwiddles, T, kFirst, kMaxConstantOrder>.ofOrder[order - kFirst];
}
template <class T>
const T* constantSplitTwiddles(int order) {
  constexpr int kFirst = kMaxSmallRealOrder + 1;
  return kConstantTables<ConstantSplitTwiddles, T, kFirst, kMaxConstantSplitOrder>.ofOrder[order - kFirst];
}

}  // namespace ovks::fft
