// SPDX-License-Identifier: MIT
#include "stats_plain.hpp"

#include <algorithm>
#include <cmath>

namespace plain {
namespace {

template <class R, class F>
R total(int n, F term) {
  R sum = 0;
  for (int i = 0; i < n; ++i) sum += static_cast<R>(term(i));
  return sum;
}

}  // namespace

float sum32f(const float* a, int n) {
  return total<float>(n, [a](int i) { return a[i]; });
}
double sum32fWide(const float* a, int n) {
  return total<double>(n, [a](int i) { return a[i]; });
}
double dot32fWide(const float* a, const float* b, int n) {
  return total<double>(n, [a, b](int i) { return static_cast<double>(a[i]) * b[i]; });
}
float norm1(const float* a, int n) {
  return total<float>(n, [a](int i) { return std::fabs(a[i]); });
}
float norm2(const float* a, int n) {
  return std::sqrt(total<float>(n, [a](int i) { return a[i] * a[i]; }));
}
float normInf(const float* a, int n) {
  float most = 0;
  for (int i = 0; i < n; ++i) most = std::max(most, std::fabs(a[i]));
  return most;
}
float deviation32f(const float* a, int n) {
  double sum = 0, squares = 0;
  for (int i = 0; i < n; ++i) {
    const double x = a[i];
    sum += x;
    squares += x * x;
  }
  return static_cast<float>(std::sqrt((squares - sum * sum / n) / (n - 1)));
}
int64_t sum16s(const int16_t* a, int n) {
  return total<int64_t>(n, [a](int i) { return a[i]; });
}
int64_t dot16s(const int16_t* a, const int16_t* b, int n) {
  return total<int64_t>(n, [a, b](int i) { return a[i] * b[i]; });
}
double sumLn(const float* a, int n) {
  return total<double>(n, [a](int i) { return std::log(a[i]); });
}

}  // namespace plain
