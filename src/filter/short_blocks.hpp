// SPDX-License-Identifier: MIT
// Cyclic convolution of short blocks with a filter, in registers from the first load to the last store.
#pragma once

#include "core/element.hpp"

namespace ovks {

// So many at once: two blocks of reals are the real and the imaginary part of one of complex points.
inline constexpr int kShortBlocks = 2;
inline constexpr int kMostShortPoints = 256;

// y[b] becomes x[b], N elements, convolved with the filter of the given spectrum (in the Perm layout for reals), from
// number `first` on. All of x is read before any of y is written.
template <class T>
using ShortBlocksFilter = void (*)(const T* const* x, const T* spectrum, T* const* y, int first);

// Null where N = 2^order is too small or too large to be worth it.
template <class T>
ShortBlocksFilter<T> shortBlocksFilter(int order);

}  // namespace ovks
