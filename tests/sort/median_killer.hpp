// SPDX-License-Identifier: MIT
// An input against the median of the first, the middle and the last element.
#pragma once

#include <cstddef>
#include <vector>

// Each pivot is the second smallest of its range.
template <class T>
std::vector<T> medianKiller(int n) {
  std::vector<T> v(static_cast<std::size_t>(n));
  const int half = n / 2;
  for (int i = 0; i < half; ++i) {
    v[static_cast<std::size_t>(i)] = static_cast<T>(i % 2 ? half + i - 1 + half % 2 : i + 1);
    v[static_cast<std::size_t>(half + i)] = static_cast<T>(2 * (i + 1));
  }
  return v;
}
