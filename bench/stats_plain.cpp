// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "stats_peers.hpp"

namespace {

// The sum of term(x) or term(x, y), in R.
template <class R, auto term, class S>
R total(const S* a, int n) {
  R sum = 0;
  for (int i = 0; i < n; ++i) sum += static_cast<R>(term(a[i]));
  return sum;
}
template <class R, auto term, class S>
R total(const S* a, const S* b, int n) {
  R sum = 0;
  for (int i = 0; i < n; ++i) sum += static_cast<R>(term(a[i], b[i]));
  return sum;
}

template <class R, auto term, class... S>
R rootOfTotal(const S*... a, int n) {
  return std::sqrt(total<R, term>(a..., n));
}

template <auto term, class... S>
float largest(const S*... a, int n) {
  float most = 0;
  for (int i = 0; i < n; ++i) most = std::max(most, term(a[i]...));
  return most;
}

float deviation(const float* a, int n) {
  double sum = 0, squares = 0;
  for (int i = 0; i < n; ++i) {
    const double x = a[i];
    sum += x;
    squares += x * x;
  }
  return static_cast<float>(std::sqrt((squares - sum * sum / n) / (n - 1)));
}

Complex32f complexDot(const Complex32f* a, const Complex32f* b, int n) {
  float re = 0, im = 0;
  for (int i = 0; i < n; ++i) {
    re += a[i].re * b[i].re - a[i].im * b[i].im;
    im += a[i].re * b[i].im + a[i].im * b[i].re;
  }
  return {re, im};
}

float value(float x) { return x; }
float magnitude(float x) { return std::fabs(x); }
float square(float x) { return x * x; }
float distance(float x, float y) { return std::fabs(x - y); }
float squaredDistance(float x, float y) { return (x - y) * (x - y); }
double wideProduct(float x, float y) { return double{x} * y; }
double wideSquare(float x) { return double{x} * x; }
double wideDistance(float x, float y) { return std::fabs(double{x} - y); }
double wideSquaredDistance(float x, float y) { return (double{x} - y) * (double{x} - y); }
float logarithm(float x) { return std::log(x); }
double modulus(Complex32f z) { return std::sqrt(double{z.re} * z.re + double{z.im} * z.im); }
float squaredModulus(Complex32f z) { return z.re * z.re + z.im * z.im; }
int shortValue(int16_t x) { return x; }
int shortMagnitude(int16_t x) { return std::abs(int{x}); }
int shortProduct(int16_t x, int16_t y) { return x * y; }
int shortSquare(int16_t x) { return x * x; }
int shortDistance(int16_t x, int16_t y) { return std::abs(x - y); }

float largestModulus(const Complex32f* a, int n) { return std::sqrt(largest<squaredModulus, Complex32f>(a, n)); }

}  // namespace

const StatsPeer kLoop = {
    .name = "loop",
    .sum = total<float, value>,
    .wideSum = total<double, value>,
    .deviation = deviation,
    .logarithms = total<double, logarithm>,
    .norm1 = total<float, magnitude>,
    .norm2 = rootOfTotal<float, square, float>,
    .normInf = largest<magnitude, float>,
    .difference1 = total<float, distance>,
    .difference2 = rootOfTotal<float, squaredDistance, float, float>,
    .differenceInf = largest<distance, float, float>,
    .wideDot = total<double, wideProduct>,
    .wideNorm1 = total<double, magnitude>,
    .wideNorm2 = rootOfTotal<double, wideSquare, float>,
    .wideDifference1 = total<double, wideDistance>,
    .wideDifference2 = rootOfTotal<double, wideSquaredDistance, float, float>,
    .complexDot = complexDot,
    .moduli = total<double, modulus>,
    .largestModulus = largestModulus,
    .shortSum = total<int64_t, shortValue>,
    .shortNorm1 = total<int64_t, shortMagnitude>,
    .shortNorm2Sqr = total<int64_t, shortSquare>,
    .shortDifference1 = total<int64_t, shortDistance>,
    .shortDot = total<int64_t, shortProduct>,
};
