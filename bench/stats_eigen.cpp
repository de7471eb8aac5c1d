// SPDX-License-Identifier: MIT
#include <Eigen/Core>
#include <cmath>
#include <complex>

#include "stats_peers.hpp"

namespace {

template <class T>
auto view(const T* a, int n) {
  return Eigen::Map<const Eigen::Array<T, Eigen::Dynamic, 1>>(a, n);
}
auto view(const Complex32f* a, int n) { return view(reinterpret_cast<const std::complex<float>*>(a), n); }
auto wide(const int16_t* a, int n) { return view(a, n).cast<int64_t>(); }
auto wide(const float* a, int n) { return view(a, n).cast<double>(); }

float deviation(const float* a, int n) {
  const auto x = wide(a, n);
  return static_cast<float>(std::sqrt((x - x.mean()).square().sum() / (n - 1)));
}

Complex32f complexDot(const Complex32f* a, const Complex32f* b, int n) {
  const std::complex<float> dot = (view(a, n) * view(b, n)).sum();
  return {dot.real(), dot.imag()};
}

}  // namespace

const StatsPeer kEigen = {
    .name = "eigen",
    .sum = [](const float* a, int n) { return view(a, n).sum(); },
    .wideSum = [](const float* a, int n) { return wide(a, n).sum(); },
    .deviation = deviation,
    .logarithms = [](const float* a, int n) { return view(a, n).log().cast<double>().sum(); },
    .norm1 = [](const float* a, int n) { return view(a, n).abs().sum(); },
    .norm2 = [](const float* a, int n) { return view(a, n).matrix().norm(); },
    .normInf = [](const float* a, int n) { return view(a, n).abs().maxCoeff(); },
    .difference1 = [](const float* a, const float* b, int n) { return (view(a, n) - view(b, n)).abs().sum(); },
    .difference2 = [](const float* a, const float* b, int n) { return (view(a, n) - view(b, n)).matrix().norm(); },
    .differenceInf = [](const float* a, const float* b, int n) { return (view(a, n) - view(b, n)).abs().maxCoeff(); },
    .wideDot = [](const float* a, const float* b, int n) { return (wide(a, n) * wide(b, n)).sum(); },
    .wideNorm1 = [](const float* a, int n) { return wide(a, n).abs().sum(); },
    .wideNorm2 = [](const float* a, int n) { return wide(a, n).matrix().norm(); },
    .wideDifference1 = [](const float* a, const float* b, int n) { return (wide(a, n) - wide(b, n)).abs().sum(); },
    .wideDifference2 = [](const float* a, const float* b, int n) { return (wide(a, n) - wide(b, n)).matrix().norm(); },
    .complexDot = complexDot,
    .moduli = [](const Complex32f* a, int n) { return view(a, n).cast<std::complex<double>>().abs().sum(); },
    .largestModulus = [](const Complex32f* a, int n) { return std::sqrt(view(a, n).abs2().maxCoeff()); },
    .shortSum = [](const int16_t* a, int n) { return wide(a, n).sum(); },
    .shortNorm1 = [](const int16_t* a, int n) { return wide(a, n).abs().sum(); },
    .shortNorm2Sqr = [](const int16_t* a, int n) { return wide(a, n).square().sum(); },
    .shortDifference1 = [](const int16_t* a, const int16_t* b, int n) { return (wide(a, n) - wide(b, n)).abs().sum(); },
    .shortDot = [](const int16_t* a, const int16_t* b, int n) { return (wide(a, n) * wide(b, n)).sum(); },
};
