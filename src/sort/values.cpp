// SPDX-License-Identifier: MIT
// Sorting values: blocks in registers, quicksort above them, counting where the elements are narrow and many.
#include "sort/counting.hpp"
#include "sort/quick.hpp"

namespace ovks::sort {

namespace {

template <class K, class C>
struct Finish {
  K* p;
  Order<K> order;

  void block(std::ptrdiff_t first, std::ptrdiff_t n) const { sortShort(p + first, n, Order<K>{}, order); }
  void equal(std::ptrdiff_t first, std::ptrdiff_t n, C key) const {
    fill(p + first, n, elementOf(order, static_cast<K>(key)));
  }
};

template <class K>
void sortWide(K* p, std::ptrdiff_t n, const Order<K>& order) {
  if (n <= kBlock<K>) return sortShort(p, n, order, order);
  sortKeys(p, n, mapKeys(p, p, n, order), order);
}

}  // namespace

void sortKeys(int32_t* p, std::ptrdiff_t n, Bounds<int32_t> bounds, const Order<int32_t>& order) {
  quickSort(Keys<int32_t, int32_t>{p}, n, bounds, kBlock<int32_t>, Finish<int32_t, int32_t>{p, order});
}

void sortKeys(int64_t* p, std::ptrdiff_t n, Bounds<int64_t> bounds, const Order<int64_t>& order) {
  quickSort(Keys<int64_t, int64_t>{p}, n, bounds, kBlock<int64_t>, Finish<int64_t, int64_t>{p, order});
}

void sortValues(int32_t* p, std::ptrdiff_t n, const Order<int32_t>& order) { sortWide(p, n, order); }
void sortValues(int64_t* p, std::ptrdiff_t n, const Order<int64_t>& order) { sortWide(p, n, order); }

void sortValues(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order) {
  if (n <= kBlock<int16_t>) return sortShort(p, n, order, order);
  const auto [low, high] = mapKeys(p, p, n, order);
  if (high - low < 256) return countFewValues(p, n, order, low);
  if (countingPays(n, high - low)) return countManyValues(p, n, order, low, high);
  quickSort(Keys<int16_t, int32_t>{p}, n, Bounds<int32_t>{low, high}, kBlock<int16_t>,
            Finish<int16_t, int32_t>{p, order});
}

void sortValues(int8_t* p, std::ptrdiff_t n, const Order<int8_t>& order) {
  if (n <= kBlock<int8_t>) return sortShort(p, n, order, order);
  const auto [low, high] = mapKeys(p, p, n, order);
  countFewValues(p, n, order, low);
}

}  // namespace ovks::sort
