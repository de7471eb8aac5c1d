// SPDX-License-Identifier: MIT
// How much work quicksort does on inputs made against its pivots, counted in rows read.
#include <gtest/gtest.h>

#include "sort/median_killer.hpp"
#include "sort/pivot_killer.hpp"

namespace {

using namespace ovks::sort;

template <class K>
struct CountedKeys : Keys<K, K> {
  using Base = Keys<K, K>;
  static inline std::ptrdiff_t elements = 0;

  typename Base::Row load(std::ptrdiff_t i) const {
    elements += Base::L;
    return Base::load(i);
  }
  CountedKeys from(std::ptrdiff_t i) const { return {Base::from(i)}; }
};

constexpr std::ptrdiff_t kShort = 64;

template <class K>
struct StandardFinish {
  K* p;

  void block(std::ptrdiff_t first, std::ptrdiff_t n) const { std::sort(p + first, p + first + n); }
  void equal(std::ptrdiff_t, std::ptrdiff_t, K) const {}
};

// Reads of elements, for each of them.
template <class K>
double work(std::vector<K> v) {
  const auto n = static_cast<std::ptrdiff_t>(v.size());
  const auto [low, high] = std::minmax_element(v.begin(), v.end());
  CountedKeys<K>::elements = 0;
  quickSort(CountedKeys<K>{{v.data()}}, n, Bounds<K>{*low, *high}, kShort * 4, StandardFinish<K>{v.data()});
  EXPECT_TRUE(std::is_sorted(v.begin(), v.end()));
  return static_cast<double>(CountedKeys<K>::elements) / static_cast<double>(n);
}

template <class K>
class Quick : public testing::Test {};
using KeyTypes = testing::Types<int32_t, int64_t>;
TYPED_TEST_SUITE(Quick, KeyTypes);

TYPED_TEST(Quick, NoInputIsQuadratic) {
  using K = TypeParam;
  constexpr int n = 400000, bits = sizeof(K) * 8;
  constexpr K most = std::numeric_limits<K>::max();
  std::vector<K> random(n);
  std::mt19937_64 engine(1);
  for (K& x : random) x = static_cast<K>(engine());
  const double usual = work(random);
  EXPECT_LT(usual, 16);  // log2(n / 256) = 10.6

  // The first pivots miss, then each pass takes a bit off the keys. Without an end to the misses it would take n / 144
  // passes or more.
  for (const int misses : {detail::kMisses, 300}) {
    const double killed = work(pivotKiller<K>(n, kShort * 4, most, misses));
    EXPECT_GT(killed, usual + detail::kMisses);
    EXPECT_LT(killed, bits + detail::kMisses + 1);
  }
  std::vector<K> ascending = random, organPipe(n);
  std::sort(ascending.begin(), ascending.end());
  for (int i = 0; i < n; ++i) organPipe[static_cast<std::size_t>(i)] = std::min(i, n - i);
  for (const auto& v : {medianKiller<K>(n), ascending, {ascending.rbegin(), ascending.rend()}, organPipe})
    EXPECT_LT(work(v), 2 * usual);
  for (K& x : random) x = static_cast<K>(engine() % 5);
  EXPECT_LT(work(random), 6);
  EXPECT_EQ(work(std::vector<K>(n, 7)), 0);
}

}  // namespace
