// SPDX-License-Identifier: MIT
#include "vector_plain.hpp"

#include <cmath>

namespace plain {
namespace {

// To nearest, ties to even.
int scaled(int v, int s) { return (v + (1 << (s - 1)) - 1 + ((v >> s) & 1)) >> s; }
int clamped(int v, int low, int high) { return v < low ? low : v > high ? high : v; }

template <class T, class D, class F>
void loop(const T* __restrict a, const T* __restrict b, D* __restrict d, int n, F f) {
  for (int i = 0; i < n; ++i) d[i] = static_cast<D>(f(a[i], b[i]));
}

}  // namespace

void add32f(const float* a, const float* b, float* d, int n) {
  loop(a, b, d, n, [](float x, float y) { return x + y; });
}

void mul32f(const float* a, const float* b, float* d, int n) {
  loop(a, b, d, n, [](float x, float y) { return x * y; });
}

void mulC32f(const float* a, float c, float* d, int n) {
  loop(a, a, d, n, [c](float x, float) { return x * c; });
}

void div32f(const float* a, const float* b, float* d, int n) {
  loop(a, b, d, n, [](float x, float y) { return y / x; });
}

void mul32fc(const float* __restrict a, const float* __restrict b, float* __restrict d, int n) {
  for (int i = 0; i < 2 * n; i += 2) {
    d[i] = a[i] * b[i] - a[i + 1] * b[i + 1];
    d[i + 1] = a[i] * b[i + 1] + a[i + 1] * b[i];
  }
}

void add16s(const int16_t* a, const int16_t* b, int16_t* d, int n) {
  loop(a, b, d, n, [](int x, int y) { return clamped(x + y, INT16_MIN, INT16_MAX); });
}

void add16sScaled(const int16_t* a, const int16_t* b, int16_t* d, int n, int s) {
  loop(a, b, d, n, [s](int x, int y) { return clamped(scaled(x + y, s), INT16_MIN, INT16_MAX); });
}

void mul16sScaled(const int16_t* a, const int16_t* b, int16_t* d, int n, int s) {
  loop(a, b, d, n, [s](int x, int y) { return clamped(scaled(x * y, s), INT16_MIN, INT16_MAX); });
}

void add8u(const uint8_t* a, const uint8_t* b, uint8_t* d, int n) {
  loop(a, b, d, n, [](int x, int y) { return clamped(x + y, 0, UINT8_MAX); });
}

void mul8uScaled(const uint8_t* a, const uint8_t* b, uint8_t* d, int n, int s) {
  loop(a, b, d, n, [s](int x, int y) { return clamped(scaled(x * y, s), 0, UINT8_MAX); });
}

void convert32f16s(const float* a, int16_t* d, int n) {
  for (int i = 0; i < n; ++i) {
    const float x = a[i] < -32768.0f ? -32768.0f : a[i] > 32767.0f ? 32767.0f : a[i];
    d[i] = static_cast<int16_t>(std::nearbyint(x));
  }
}

}  // namespace plain
