// SPDX-License-Identifier: MIT
// Where a real signal's spectrum stands in each of its layouts, counted in reals: X[k] at 2k + kShift for
// 0 < k < N/2, X[0] at 0, X[N/2] at half(N).
#pragma once

#include <cstddef>

namespace ovks {

struct PackLayout {
  static constexpr int kShift = -1;
  static constexpr std::ptrdiff_t half(std::ptrdiff_t n) { return n - 1; }
};
struct PermLayout {
  static constexpr int kShift = 0;
  static constexpr std::ptrdiff_t half(std::ptrdiff_t) { return 1; }
};
struct CcsLayout {
  static constexpr int kShift = 0;
  static constexpr std::ptrdiff_t half(std::ptrdiff_t n) { return n; }
};

}  // namespace ovks
