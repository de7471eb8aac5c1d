// SPDX-License-Identifier: MIT
// Sorting narrow elements by counting them.
#pragma once

#include "sort/keys.hpp"
#include "sort/network.hpp"

namespace ovks::sort {

// Counts of up to 256 values. Four tables: a count just written is slow to read again, and equal elements tend to be
// neighbours.
struct Histogram {
  alignas(64) uint32_t table[4][256];

  Histogram() { __builtin_memset(table, 0, sizeof table); }
  uint32_t& operator[](int value) { return table[0][value]; }

  // Counts value(p[i]), which is below 256. A word at a time: loads are what it takes most of.
  template <class K, class F>
  void count(const K* p, std::ptrdiff_t n, F value) {
    constexpr int each = sizeof(uint64_t) / sizeof(K), width = 8 * sizeof(K);
    std::ptrdiff_t i = 0;
    for (; i + 2 * each <= n; i += 2 * each) {
      const uint64_t word[2] = {load<uint64_t>(p + i), load<uint64_t>(p + i + each)};
      unroll<2 * each>([&](auto k) __attribute__((always_inline)) {
        ++table[k % 4][value(static_cast<K>(word[k / each] >> (k % each * width)))];
      });
    }
    for (; i < n; ++i) ++table[0][value(p[i])];
    for (int k = 0; k < 256; ++k) table[0][k] += table[1][k] + table[2][k] + table[3][k];
  }

  // Counts become the places where the values begin.
  void toPlaces() {
    uint32_t sum = 0;
    for (uint32_t& c : table[0]) {
      const uint32_t here = c;
      c = sum;
      sum += here;
    }
  }
};

// count copies of x, and more where there is room up to the end: whole vectors, which do not depend on the count.
template <class K>
OVKS_INLINE void fillAhead(K* p, std::ptrdiff_t count, K x, const K* end) {
  using V = Vec<K>;
  const V v = broadcast<V>(x);
  const K* const next = p + count;
  for (; end - p >= lanes<V>; p += lanes<V>) {
    store(p, v);
    if (p + lanes<V> >= next) return;
  }
  if (p < next) storePart(p, v, next - p);
}

// Sorts keys of less than 256 values from `low` on into elements.
template <class K>
void countFewValues(K* p, std::ptrdiff_t n, const Order<K>& order, K low) {
  Histogram histogram;
  // The low byte tells less than 256 values apart, wherever they begin.
  const auto byte = [](K key) { return static_cast<unsigned char>(key); };
  histogram.count(p, n, byte);
  const K* const end = p + n;
  for (int k = 0; p < end; ++k) {
    const auto key = static_cast<K>(low + k);
    const uint32_t count = histogram[byte(key)];
    fillAhead(p, count, elementOf(order, key), end);
    p += count;
  }
}

// Whether counting n keys beats comparing them: it pays for every value in their range, too.
constexpr bool countingPays(std::ptrdiff_t n, int range) { return n * 4 > range * std::ptrdiff_t{5}; }

// The same for up to 2^16 values. A table of bytes stays near the processor. What does not fit a byte is put down as a
// key that stands for 255: the part of the range that has been read already has room for those, at least until the
// elements that they stand for are written, from the end of the range downwards.
void countManyValues(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order, int16_t low, int16_t high);

}  // namespace ovks::sort
