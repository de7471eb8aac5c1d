// SPDX-License-Identifier: MIT
// The tables that a single convolution needs: those of specifications where these are constants, else only few.
#pragma once

#include "transform/constant_tables.hpp"
#include "transform/twiddle_tables.hpp"

namespace ovks::fft {

// The tables of a convolution.
template <class Tiles, class Pairs, class T>
struct ConvolutionTables {
  Tiles tiles;  // of the closing pass
  Pairs pairs;  // of the split, see real_split.hpp
  const T* columns;
  const int32_t* bitReversal;
};

// Room for tables, which are taken one after the other, each aligned.
class TableArea {
 public:
  explicit TableArea(uint8_t* start) : next_(start) {}

  template <class T>
  T* take(std::ptrdiff_t n) {
    T* const p = reinterpret_cast<T*>(next_);
    next_ += aligned(n * int64_t{sizeof(T)});
    return p;
  }

 private:
  uint8_t* next_;
};

// A quarter wave of the sine with 2^order points a turn.
template <class T>
struct Wave {
  const T* sine;
  int order;

  UnitCircle<T> circle(int n) const { return {sine, order, n}; }
};

template <class T>
Wave<T> wholeWave(TableArea& area, int order) {
  if (order <= kConstantOrder) return {kQuarterWave<T>.sine, kConstantOrder};
  T* const table = area.take<T>((std::ptrdiff_t{1} << (order - 2)) + 1);
  computeQuarterWave(table, order);
  return {table, order};
}

// Only the `count` least and greatest sines of it.
template <class T>
Wave<T> endsOfWave(TableArea& area, int order, std::ptrdiff_t count) {
  const std::ptrdiff_t quarter = std::ptrdiff_t{1} << (order - 2);
  if (quarter <= 2 * count) return wholeWave<T>(area, order);
  T* const table = area.take<T>(quarter + 1);
  computeSines(table, order, 0, count);
  computeSines(table, order, quarter - count, quarter);
  table[quarter] = 1;
  return {table, order};
}

// m rows, the points of which `fine` has.
template <class V, class T>
TileTwiddleProducts<V> makeTileProducts(TableArea& area, std::ptrdiff_t m, Wave<T> fine, Wave<T> coarse) {
  constexpr int L = lanes<V>;
  T* const rows = area.take<T>(2 * L * (L - 1));
  T* const tiles = area.take<T>(m / L * TileTwiddleProducts<V>::kPerTile);
  const int coarseOrder = log2OfPower(m);
  makeTile<V, ByChunks>(rows, fine.circle(coarseOrder + log2OfPower(L)), 0);
  T* p = tiles;
  for (int32_t g = 0; g < m / L; ++g) p = appendMultiples(p, coarse.circle(coarseOrder), g, L);
  return {tiles, rows};
}

template <class V, class T>
SplitTwiddleProducts<V> makePairProducts(TableArea& area, int order, Wave<T> fine, Wave<T> coarse) {
  constexpr int32_t kFine = SplitTwiddleProducts<V>::kFine;
  const int32_t quarter = 1 << (order - 2);
  T* const within = area.take<T>(2 * kFine);
  T* const starts = area.take<T>(2 * (quarter / kFine));
  for (int32_t i = 0; i < kFine; i += lanes<V>) putSplitPoints<V>(within + 2 * i, fine.circle(order), quarter, i + 1);
  putCoarseSplitPoints(starts, coarse.circle(order - log2OfPower(kFine)));
  return {within, starts};
}

// Tables in which most twiddles are products of two. They are made in a tenth of the time that all of them would take,
// and leave the caches to the data.
template <class T>
auto makeProductTables(TableArea area, int order) {
  using V = Vec<T>;
  using Pairs = SplitTwiddleProducts<V>;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << (order - 1)) / lanes<V>;
  const Wave<T> fine = endsOfWave<T>(area, order, Pairs::kFine + 2 * lanes<V>);
  const Wave<T> coarse = wholeWave<T>(area, log2OfPower(m));
  T* const columns = area.take<T>(2 * m);
  makeColumns(columns, coarse.sine, coarse.order, complexPassesOf<T>(order - 1));
  int32_t* const bitReversal = area.take<int32_t>(m / lanes<V>);
  makeBitReversal(bitReversal, order - 1, static_cast<int32_t>(m / lanes<V>));
  return ConvolutionTables<TileTwiddleProducts<V>, Pairs, T>{
      makeTileProducts<V>(area, m, fine, coarse), makePairProducts<V>(area, order, fine, coarse), columns, bitReversal};
}

// Those of the specification, which are constants.
template <class Tiles, class T>
auto constantTables(TableArea area, int order, const T* twiddles, Tiles tileTwiddles) {
  using V = Vec<T>;
  const int32_t tiles = (1 << (order - 1)) / (lanes<V> * lanes<V>);
  int32_t* const bitReversal = area.take<int32_t>(tiles);
  makeBitReversal(bitReversal, order - 1, tiles);
  return ConvolutionTables<Tiles, SplitTwiddles<V>, T>{tileTwiddles, SplitTwiddles<V>{constantSplitTwiddles<T>(order)},
                                                       twiddles + TwiddleLayout<T>(order - 1).columns, bitReversal};
}

}  // namespace ovks::fft
