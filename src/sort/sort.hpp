// SPDX-License-Identifier: MIT
// The family's kernels. All sort keys upwards; `order` says how elements become keys, and every kernel leaves elements.
#pragma once

#include "sort/order.hpp"

namespace ovks::sort {

template <class C>
struct Bounds {
  C low, high;
};

void sortValues(int8_t* p, std::ptrdiff_t n, const Order<int8_t>& order);
void sortValues(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order);
void sortValues(int32_t* p, std::ptrdiff_t n, const Order<int32_t>& order);
void sortValues(int64_t* p, std::ptrdiff_t n, const Order<int64_t>& order);

// The same for what mapKeys has left.
void sortKeys(int32_t* p, std::ptrdiff_t n, Bounds<int32_t> bounds, const Order<int32_t>& order);
void sortKeys(int64_t* p, std::ptrdiff_t n, Bounds<int64_t> bounds, const Order<int64_t>& order);
void sortTaggedKeys(int32_t* p, int32_t* tag, std::ptrdiff_t n, Bounds<int32_t> bounds, const Order<int32_t>& order);
void sortTaggedKeys(int64_t* p, int32_t* tag, std::ptrdiff_t n, Bounds<int64_t> bounds, const Order<int64_t>& order);

// The elements' positions before the sort go along into tag.
void sortTagged(int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order);
void sortTagged(int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order);
void sortTagged(int32_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int32_t>& order);
void sortTagged(int64_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& order);

// The positions alone, equal elements in the order of their positions.
inline constexpr std::ptrdiff_t kMostPositions = 1 << 24;
void positions(const int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order);
void positions(const int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order);  // n <= kMostPositions

}  // namespace ovks::sort
