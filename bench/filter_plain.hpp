// SPDX-License-Identifier: MIT
// Plain filters as a compiler vectorises them for this machine, and its peak of multiply-adds.
#pragma once

#include <complex>
#include <cstdint>

namespace plain {

// y[i] = sum of taps[k] x[i - k]; x has tapsLen - 1 earlier samples before it.
void fir(const float* x, float* y, int n, const float* taps, int tapsLen);
void fir(const double* x, double* y, int n, const double* taps, int tapsLen);
void fir(const std::complex<float>* x, std::complex<float>* y, int n, const std::complex<float>* taps, int tapsLen);
void fir(const std::complex<double>* x, std::complex<double>* y, int n, const std::complex<double>* taps, int tapsLen);

// y has n + tapsLen - 1 elements.
void convolve(const float* x, int n, const float* taps, int tapsLen, float* y);

// Products of spectra of n complex elements.
void multiply(const float* a, float* b, int n);

// So many scalar multiply-adds, at the rate the machine can do them, without memory.
void peak(float, int64_t multiplyAdds);
void peak(double, int64_t multiplyAdds);

}  // namespace plain
