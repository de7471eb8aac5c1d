// SPDX-License-Identifier: MIT
// Sorting in place by parting ranges down to blocks.
//
// Each range knows bounds of its keys. A range with equal bounds is done, so equal keys cost nothing; and when sampled
// pivots keep missing the middle, halving the bounds instead ends after as many steps as a key has bits, whatever the
// input. That is the guard against quadratic time.
#pragma once

#include "sort/partition.hpp"
#include "sort/sort.hpp"

namespace ovks::sort {

namespace detail {

template <class V>
OVKS_INLINE V median(V a, V b, V c) {
  exchange(a, b);
  const V d = b < c ? b : c;
  return a < d ? d : a;
}

// How many rows a sample reads, spread evenly over the range.
template <class Rows>
struct Sample {
  static constexpr int groups = 16 / Rows::L, each = groups == 1 ? 3 : 1, rows = groups * each * 3;

  std::ptrdiff_t step;

  OVKS_INLINE explicit Sample(std::ptrdiff_t n) : step((n - Rows::L) / (rows - 1)) {}
  OVKS_INLINE std::ptrdiff_t at(int row) const { return row * step; }
};

// The middle of sixteen medians, taken lane by lane of a sample's rows. What is little more than a block is better cut
// into most of one and a remainder.
template <class Rows>
OVKS_INLINE typename Rows::Key samplePivot(Rows rows, std::ptrdiff_t n, std::ptrdiff_t block) {
  using V = typename Rows::V;
  using K = typename Rows::Key;
  constexpr int groups = Sample<Rows>::groups, each = Sample<Rows>::each;
  const Sample<Rows> sample(n);
  V middle[groups];
  unroll<groups>([&](auto g) __attribute__((always_inline)) {
    V m[each];
    unroll<each>([&](auto i) __attribute__((always_inline)) {
      V v[3];
      unroll<3>([&](auto j)
                    __attribute__((always_inline)) { v[j] = Rows::keyOf(rows.load(sample.at((g * each + i) * 3 + j))); });
      m[i] = median(v[0], v[1], v[2]);
    });
    if constexpr (each == 3) middle[g] = median(m[0], m[1], m[2]);
    else middle[g] = m[0];
  });
  Vec<K, 4> v[4];
  __builtin_memcpy(v, &middle, sizeof v);
  sortRows<4>(v);
  return n <= block + block * 3 / 8 ? v[3][0] : v[2][0];
}

constexpr int kMisses = 4;

template <class C>
struct Range {
  std::ptrdiff_t first, size;
  Bounds<C> bounds;
  int misses;
};

}  // namespace detail

// Sorts rows[0, n). `finish` gives blocks and ranges of equal keys their final form.
template <class Rows, class Finish>
void quickSort(Rows rows, std::ptrdiff_t n, Bounds<typename Rows::Key> bounds, std::ptrdiff_t block, Finish finish) {
  using C = typename Rows::Key;
  detail::Range<C> pending[64];
  int count = 0;
  detail::Range<C> range{0, n, bounds, 0};
  for (;;) {
    if (range.bounds.low == range.bounds.high) {
      finish.equal(range.first, range.size, range.bounds.low);
    } else if (range.size <= block) {
      finish.block(range.first, range.size);
    } else {
      const auto [low, high] = range.bounds;
      Rows part = rows.from(range.first);
      C pivot = range.misses < detail::kMisses
                    ? detail::samplePivot(part, range.size, block)
                    : static_cast<C>(low + static_cast<C>((static_cast<std::make_unsigned_t<C>>(high) -
                                                           static_cast<std::make_unsigned_t<C>>(low)) /
                                                          2));
      if (pivot == high) --pivot;
      const std::ptrdiff_t size = partition(part, range.size, pivot);
      const std::ptrdiff_t other = range.size - size;
      const int misses = range.misses + (size < range.size / 8 || other < range.size / 8);
      detail::Range<C> left{range.first, size, {low, pivot}, misses};
      detail::Range<C> right{range.first + size, other, {static_cast<C>(pivot + 1), high}, misses};
      if (size > other) std::swap(left, right);
      pending[count++] = right;
      range = left;
      continue;
    }
    if (count == 0) return;
    range = pending[--count];
  }
}

}  // namespace ovks::sort
