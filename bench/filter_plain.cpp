// SPDX-License-Identifier: MIT
#include "filter_plain.hpp"

#include <immintrin.h>

namespace plain {
namespace {

// A strip of outputs in registers, tap by tap.
template <class T>
void strips(const T* __restrict x, T* __restrict y, int n, const T* __restrict taps, int tapsLen) {
  constexpr int kStrip = 256 / sizeof(T);
  int i = 0;
  for (; i + kStrip <= n; i += kStrip) {
    T sums[kStrip] = {};
    for (int k = 0; k < tapsLen; ++k) {
      for (int j = 0; j < kStrip; ++j) sums[j] += taps[k] * x[i + j - k];
    }
    for (int j = 0; j < kStrip; ++j) y[i + j] = sums[j];
  }
  for (; i < n; ++i) {
    T sum = 0;
    for (int k = 0; k < tapsLen; ++k) sum += taps[k] * x[i - k];
    y[i] = sum;
  }
}

// Of parts re, im.
template <class R>
void complexStrips(const R* __restrict x, R* __restrict y, int n, const R* __restrict taps, int tapsLen) {
  constexpr int kStrip = 256 / sizeof(R);
  const auto some = [&](int first, int count) {
    R byRe[kStrip] = {}, byIm[kStrip] = {};
    for (int k = 0; k < tapsLen; ++k) {
      const R re = taps[2 * k], im = taps[2 * k + 1];
      const R* const from = x + 2 * (static_cast<std::ptrdiff_t>(first) - k);
      for (int j = 0; j < 2 * count; ++j) {
        byRe[j] += re * from[j];
        byIm[j] += im * from[j];
      }
    }
    for (int j = 0; j < 2 * count; j += 2) {
      y[2 * first + j] = byRe[j] - byIm[j + 1];
      y[2 * first + j + 1] = byRe[j + 1] + byIm[j];
    }
  };
  int i = 0;
  for (; i + kStrip / 2 <= n; i += kStrip / 2) some(i, kStrip / 2);
  for (; i < n; ++i) some(i, 1);
}

#ifdef __AVX512F__
__m512 fma(__m512 a, __m512 b, __m512 c) { return _mm512_fmadd_ps(a, b, c); }
__m512d fma(__m512d a, __m512d b, __m512d c) { return _mm512_fmadd_pd(a, b, c); }
__m512 allFloats(float x) { return _mm512_set1_ps(x); }
__m512d allDoubles(double x) { return _mm512_set1_pd(x); }
#else
__m256 fma(__m256 a, __m256 b, __m256 c) { return _mm256_fmadd_ps(a, b, c); }
__m256d fma(__m256d a, __m256d b, __m256d c) { return _mm256_fmadd_pd(a, b, c); }
__m256 allFloats(float x) { return _mm256_set1_ps(x); }
__m256d allDoubles(double x) { return _mm256_set1_pd(x); }
#endif

// Eight chains hide a latency of four at two a cycle, ten have some to spare. They are variables with names: an array
// might be kept in memory. Towards 2, so that no number is slow.
template <class W>
void chains(W half, W one, int64_t multiplyAdds) {
  asm volatile("" : "+v"(half), "+v"(one));  // not to be computed beforehand
  W a = one, b = one, c = one, d = one, e = one, f = one, g = one, h = one, i = one, j = one;
  const int64_t passes = multiplyAdds / static_cast<int64_t>(10 * sizeof(W) / sizeof(one[0]));
  for (int64_t pass = 0; pass < passes; ++pass) {
    a = fma(a, half, one), b = fma(b, half, one), c = fma(c, half, one), d = fma(d, half, one), e = fma(e, half, one);
    f = fma(f, half, one), g = fma(g, half, one), h = fma(h, half, one), i = fma(i, half, one), j = fma(j, half, one);
    asm volatile("" : "+v"(a), "+v"(b), "+v"(c), "+v"(d), "+v"(e), "+v"(f), "+v"(g), "+v"(h), "+v"(i), "+v"(j));
  }
}

}  // namespace

void fir(const float* x, float* y, int n, const float* taps, int tapsLen) { strips(x, y, n, taps, tapsLen); }
void fir(const double* x, double* y, int n, const double* taps, int tapsLen) { strips(x, y, n, taps, tapsLen); }

void fir(const std::complex<float>* x, std::complex<float>* y, int n, const std::complex<float>* taps, int tapsLen) {
  complexStrips(reinterpret_cast<const float*>(x), reinterpret_cast<float*>(y), n,
                reinterpret_cast<const float*>(taps), tapsLen);
}

void fir(const std::complex<double>* x, std::complex<double>* y, int n, const std::complex<double>* taps,
         int tapsLen) {
  complexStrips(reinterpret_cast<const double*>(x), reinterpret_cast<double*>(y), n,
                reinterpret_cast<const double*>(taps), tapsLen);
}

void convolve(const float* __restrict x, int n, const float* __restrict taps, int tapsLen, float* __restrict y) {
  for (int i = 0; i < n + tapsLen - 1; ++i) y[i] = 0;
  for (int k = 0; k < tapsLen; ++k) {
    for (int i = 0; i < n; ++i) y[i + k] += taps[k] * x[i];
  }
}

void multiply(const float* __restrict a, float* __restrict b, int n) {
  for (int i = 0; i < 2 * n; i += 2) {
    const float re = a[i] * b[i] - a[i + 1] * b[i + 1], im = a[i] * b[i + 1] + a[i + 1] * b[i];
    b[i] = re;
    b[i + 1] = im;
  }
}

void peak(float, int64_t multiplyAdds) { chains(allFloats(0.5f), allFloats(1), multiplyAdds); }
void peak(double, int64_t multiplyAdds) { chains(allDoubles(0.5), allDoubles(1), multiplyAdds); }

}  // namespace plain
