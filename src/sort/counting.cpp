// SPDX-License-Identifier: MIT
#include "sort/counting.hpp"

namespace ovks::sort {

namespace {

constexpr int kFull = 255;

// n copies of x before `end`, and perhaps more, but nothing before `begin`.
OVKS_INLINE void writeBefore(int16_t* begin, int16_t* end, int16_t x, std::ptrdiff_t n) {
  using V = Vec<int16_t>;
  const V v = broadcast<V>(x);
  while (end - begin >= lanes<V>) [[likely]] {
      end -= lanes<V>;
      store(end, v);
      n -= lanes<V>;
      if (n <= 0) [[likely]]
        return;
    }
  for (; n > 0; --n) *--end = x;
}

// Counts keys into table, full counts into p[0, result) as keys.
std::ptrdiff_t tally(int16_t* p, std::ptrdiff_t n, int16_t low, uint8_t* table) {
  std::ptrdiff_t full = 0;
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    uint8_t& count = table[static_cast<uint16_t>(p[i] - low)];
    if (count == kFull) [[unlikely]] {
      p[full++] = p[i];
      count = 0;
    }
    ++count;
  }
  return full;
}

}  // namespace

[[gnu::noinline]] void countManyValues(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order, int16_t low,
                                       int16_t high) {
  constexpr int kBatch = 64;
  alignas(64) uint8_t table[1 << 16];
  const int values = high - low + 1, last = (values - 1) / kBatch * kBatch;
  __builtin_memset(table, 0, static_cast<std::size_t>(last + kBatch));
  std::ptrdiff_t full = tally(p, n, low, table);
  sortValues(p, full, Order<int16_t>{});
  int16_t* end = p + n;
  for (int k = last + kBatch - 1; k >= 0; --k) {
    std::ptrdiff_t count = table[k];
    const auto key = static_cast<int16_t>(low + k);
    for (; full > 0 && p[full - 1] == key; --full) count += kFull;
    writeBefore(p, end, elementOf(order, key), count);
    end -= count;
  }
}

}  // namespace ovks::sort
