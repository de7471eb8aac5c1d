// SPDX-License-Identifier: MIT
#include "plain.hpp"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

template <class T>
int16_t saturated(T v) {
  return static_cast<int16_t>(std::clamp<T>(v, INT16_MIN, INT16_MAX));
}

}  // namespace

void toFloat(const int16_t* src, float* dst, int len) {
  for (int i = 0; i < len; ++i) dst[i] = src[i];
}

float peak(const float* src, int len) {
  float peak = 0;
  for (int i = 0; i < len; ++i) peak = std::max(peak, std::abs(src[i]));
  return peak;
}

void filter(const float* taps, int tapsLen, int channels, float* srcDst, int len) {
  for (int i = len - 1; i >= 0; --i) {  // backwards, as it needs what comes before
    float sum = 0;
    for (int k = 0; k < tapsLen && i >= k * channels; ++k) sum += taps[k] * srcDst[i - k * channels];
    srcDst[i] = sum;
  }
}

void multiply(float val, float* srcDst, int len) {
  for (int i = 0; i < len; ++i) srcDst[i] *= val;
}

void add(const float* src, float* srcDst, int len) {
  for (int i = 0; i < len; ++i) srcDst[i] += src[i];
}

void multiply(const float* src, float* srcDst, int len) {
  for (int i = 0; i < len; ++i) srcDst[i] *= src[i];
}

void toInteger(const float* src, int16_t* dst, int len) {
  for (int i = 0; i < len; ++i) dst[i] = saturated(std::lrint(src[i]));
}

void multiplyFraction(const int16_t* src, int16_t val, int16_t* dst, int len) {
  for (int i = 0; i < len; ++i) {
    const int product = src[i] * val;
    dst[i] = saturated((product + 0x3fff + (product >> 15 & 1)) >> 15);
  }
}

void addSaturated(const int16_t* src, int16_t* srcDst, int len) {
  for (int i = 0; i < len; ++i) srcDst[i] = saturated(srcDst[i] + src[i]);
}

}  // namespace plain
