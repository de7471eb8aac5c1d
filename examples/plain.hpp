// SPDX-License-Identifier: MIT
// The library's operations as anybody would write them down, to time and to check the steps against.
#pragma once

#include <cstdint>

namespace plain {

void toFloat(const int16_t* src, float* dst, int len);
float peak(const float* src, int len);
// srcDst[n] = sum of taps[k] * srcDst[n - k * channels].
void filter(const float* taps, int tapsLen, int channels, float* srcDst, int len);

void multiply(float val, float* srcDst, int len);
void add(const float* src, float* srcDst, int len);
void multiply(const float* src, float* srcDst, int len);

// To nearest, ties to even, saturated.
void toInteger(const float* src, int16_t* dst, int len);

// dst[n] = src[n] * val / 2^15, rounded likewise.
void multiplyFraction(const int16_t* src, int16_t val, int16_t* dst, int len);

void addSaturated(const int16_t* src, int16_t* srcDst, int len);

}  // namespace plain
