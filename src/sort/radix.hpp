// SPDX-License-Identifier: MIT
// Sorting within a caller's work buffer.
#pragma once

#include "sort/sort.hpp"

namespace ovks::sort {

// Bytes for n elements; 0 for what cannot be sorted.
int64_t radixBufferSize(int n, DataType type);

void radixSort(int8_t* p, std::ptrdiff_t n, const Order<int8_t>& order, void* buffer);
void radixSort(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order, void* buffer);
void radixSort(int32_t* p, std::ptrdiff_t n, const Order<int32_t>& order, void* buffer);
void radixSort(int64_t* p, std::ptrdiff_t n, const Order<int64_t>& order, void* buffer);

void radixPositions(const int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order, void* buffer);
void radixPositions(const int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order, void* buffer);
void radixPositions(const int32_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int32_t>& order, void* buffer);
void radixPositions(const int64_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& order, void* buffer);

}  // namespace ovks::sort
