// SPDX-License-Identifier: MIT
// Plain loops over the elements, as a compiler makes them for this machine.
#pragma once

#include <cstdint>

namespace plain {

float sum32f(const float* a, int n);
double sum32fWide(const float* a, int n);
double dot32fWide(const float* a, const float* b, int n);
float norm1(const float* a, int n);
float norm2(const float* a, int n);
float normInf(const float* a, int n);
float deviation32f(const float* a, int n);
int64_t sum16s(const int16_t* a, int n);
int64_t dot16s(const int16_t* a, const int16_t* b, int n);
double sumLn(const float* a, int n);

}  // namespace plain
