// SPDX-License-Identifier: MIT
// The complex transform of more points than a straight-line kernel has.
#pragma once

#include "transform/in_cache.hpp"
#include "transform/in_destination.hpp"
#include "transform/panels.hpp"

namespace ovks::fft {

// src and dst may be the same.
template <Direction D, class Points, class T>
void transformLong(const Job<T>& job, Points src, Points dst) {
  if (job.order <= kMaxInCacheOrder<T>) return inCache<D, Vec<T>>(job, src, dst);
  if constexpr (kHasPanels<T>)
    if (takesPanels<T>(job.order)) return inPanels<D, Vec<T>>(job, src, dst);
  inDestination<D, Vec<T>>(job, src, dst);
}

}  // namespace ovks::fft
