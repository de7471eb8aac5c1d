// SPDX-License-Identifier: MIT
// An input against the pivots that quickSort takes from samples. It looks inside, so it holds for the level that it is
// compiled for.
#pragma once

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

#include "sort/quick.hpp"

// Keys that move as Keys<K, K> do and tell where they came from.
template <class K>
struct TracedKeys : ovks::sort::TaggedKeys<K, K> {
  using Base = ovks::sort::TaggedKeys<K, K>;
  static constexpr int ahead = ovks::sort::Keys<K, K>::ahead;

  TracedKeys from(std::ptrdiff_t i) const { return {Base::from(i)}; }
};

// n ranks, in an order that makes each of the first `misses` pivots one of the smallest keys of its range: the keys that
// a sample reads are made the smallest of all that no sample has read yet, and then the range is parted as the sort
// does it. The rest come in any order. The last rank is `highest`, far from the others, so that the halves of the bounds
// do not part them soon either.
template <class K>
std::vector<K> pivotKiller(std::ptrdiff_t n, std::ptrdiff_t block, K highest, int misses) {
  using namespace ovks::sort;
  using Rows = TracedKeys<K>;
  std::vector<K> key(static_cast<std::size_t>(n), highest), rank = key;
  std::vector<int32_t> origin(key.size());
  std::iota(origin.begin(), origin.end(), 0);
  K next = 0;
  std::ptrdiff_t first = 0;
  for (int miss = 0; miss < misses && n - first > 4 * block; ++miss) {
    const Rows rows{{key.data() + first, origin.data() + first}};
    const detail::Sample<Rows> sample(n - first);
    for (int row = 0; row < sample.rows; ++row) {
      for (int lane = 0; lane < Rows::L; ++lane) {
        const auto i = static_cast<std::size_t>(first + sample.at(row) + lane);
        if (key[i] == highest) key[i] = rank[static_cast<std::size_t>(origin[i])] = next++;
      }
    }
    first += partition(rows, n - first, detail::samplePivot(rows, n - first, block));
  }
  std::shuffle(origin.begin() + first, origin.end(), std::mt19937(1));
  for (auto i = origin.begin() + first; i + 1 < origin.end(); ++i) {
    if (K& r = rank[static_cast<std::size_t>(*i)]; r == highest) r = next++;
  }
  return rank;
}
