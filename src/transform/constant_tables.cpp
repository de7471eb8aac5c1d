// SPDX-License-Identifier: MIT
#include "transform/constant_tables.hpp"

#include "transform/spec.hpp"
#include "transform/twiddle_tables.hpp"

namespace ovks::fft {
namespace {

template <class T, int order>
struct ConstantTwiddles {
  alignas(64) T table[2 << order];
  constexpr ConstantTwiddles() : table{} {
    static_assert(passesOf<T>(order) == complexPassesOf<T>(order));
    makeTwiddles<ByChunks>(table, kQuarterWave<T>.sine, kConstantOrder, order, passesOf<T>(order));
  }
};
template <class T, int order>
struct ConstantSplitTwiddles {
  alignas(64) T table[1 << (order - 1)];
  constexpr ConstantSplitTwiddles() : table{} { makeSplitTwiddles(table, kQuarterWave<T>.sine, kConstantOrder, order); }
};
template <class T, int order>
struct ConstantRealTiles {
  alignas(64) T table[1 << (order - 1)];
  constexpr ConstantRealTiles() : table{} { makeRealTiles(table, kQuarterWave<T>.sine, kConstantOrder, order); }
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

}  // namespace

template <class T>
const T* constantTwiddles(int order) {
  constexpr int kFirst = kMinPassesOrder<T>;
  return kConstantTables<ConstantTwiddles, T, kFirst, kMaxConstantOrder>.ofOrder[order - kFirst];
}
template <class T>
const T* constantSplitTwiddles(int order) {
  constexpr int kFirst = kMaxSmallRealOrder + 1;
  return kConstantTables<ConstantSplitTwiddles, T, kFirst, kMaxConstantSplitOrder>.ofOrder[order - kFirst];
}
template <class T>
const T* constantRealTiles(int order) {
  constexpr int kFirst = kMinPairsPassesOrder<T> + 1;
  return kConstantTables<ConstantRealTiles, T, kFirst, kMaxConstantSplitOrder>.ofOrder[order - kFirst];
}

template const float* constantTwiddles(int);
template const double* constantTwiddles(int);
template const float* constantSplitTwiddles(int);
template const double* constantSplitTwiddles(int);
template const float* constantRealTiles(int);
template const double* constantRealTiles(int);

}  // namespace ovks::fft
