// SPDX-License-Identifier: MIT
// Where the points of packed spectra stand.
#pragma once

#include "support/prototypes.hpp"

namespace ovks::test {

enum Layout { kPerm, kPack, kCcs };

inline Layout layoutOf(const Prototype& p) { return p.nameHas("Perm") ? kPerm : p.nameHas("Pack") ? kPack : kCcs; }

// Where X[k], 0 < k < n / 2, and X[n / 2] of an even length stand.
inline std::size_t placeOf(Layout layout, std::size_t n, std::size_t k) {
  if (layout == kCcs) return 2 * k;
  if (n % 2 == 0 && 2 * k == n) return layout == kPack ? n - 1 : 1;
  return 2 * k - (layout == kPack || n % 2);
}

// Whether the imaginary part of X[k] stands beside the real one.
inline bool isPair(Layout layout, std::size_t n, std::size_t k) { return layout == kCcs || (k > 0 && 2 * k < n); }

}  // namespace ovks::test
