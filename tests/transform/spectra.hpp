// SPDX-License-Identifier: MIT
// Spectra of real numbers, as they are packed.
#pragma once

#include "support/prototypes.hpp"

namespace ovks::test {

// X[0] ... X[n / 2] in the layout of an export's name: all of their parts, or without those that are zero. X[n / 2] of
// an even n then comes last or, with Perm, beside X[0].
template <class T>
std::vector<T> packed(const Prototype& p, const std::vector<Complex<T>>& points, std::size_t n) {
  std::vector<T> v;
  for (std::size_t k = 0; k <= n / 2; ++k) v.insert(v.end(), {points[k].re, points[k].im});
  if (!p.nameHas("Perm") && !p.nameHas("Pack")) return v;
  if (p.nameHas("Perm") && n % 2 == 0) v[1] = v[n];
  else v.erase(v.begin() + 1);
  v.resize(n);
  return v;
}

}  // namespace ovks::test
