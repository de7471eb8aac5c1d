// SPDX-License-Identifier: MIT
// Cyclic convolution of short blocks with a filter, in registers from the first load to the last store.
#pragma once

#include "core/element.hpp"

namespace ovks {

inline constexpr int kMostShortBlocks = 2;
inline constexpr int kMostShortPoints = 256;

// run filters `count` blocks at once: y[b] becomes x[b], N elements, convolved with the filter of the given spectrum
// (in the Perm layout for reals), from number `first` on. All of x is read before any of y is written.
template <class T>
struct ShortBlocks {
  int count;
  void (*run)(const T* const* x, const T* spectrum, T* const* y, int first);
};

// One block and no function where N = 2^order is too small or too large to be worth it.
template <class T>
ShortBlocks<T> shortBlocks(int order);

}  // namespace ovks
