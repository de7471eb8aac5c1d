// SPDX-License-Identifier: MIT
// Sequences, and their convolution in long double.
#pragma once

#include <complex>

#include "support/trial.hpp"

namespace ovks::test {

template <class T>
using Sequence = std::vector<T>;

// Integers of all sizes, floats up to 1.
template <class T>
Sequence<T> noise(Random& random, std::integral auto n) {
  using R = Real<T>;
  Sequence<R> reals(static_cast<std::size_t>(n) * parts<T>);
  for (R& x : reals) {
    const auto bits = static_cast<std::int64_t>(random.bits());
    x = std::is_integral_v<R> ? static_cast<R>(bits) : static_cast<R>(std::ldexp(static_cast<double>(bits), -63));
  }
  return sequence<T>(bytesOf(reals));
}

template <class T>
auto wide(T x) {
  if constexpr (ComplexElement<T>) return std::complex<long double>(x.re, x.im);
  else return static_cast<long double>(x);
}

// y[n] = sum taps[k] x[n - k], and the sums of magnitudes that bound its rounding.
template <class T, class U>
auto convolution(const Sequence<U>& taps, const Sequence<T>& x, std::size_t count) {
  std::vector<std::pair<decltype(wide(U())), long double>> y(count);
  for (std::size_t n = 0; n < count; ++n) {
    for (std::size_t k = 0; k < taps.size() && k <= n; ++k) {
      if (n - k >= x.size()) continue;
      const auto term = wide(taps[k]) * wide(x[n - k]);
      y[n].first += term;
      y[n].second += std::abs(term);
    }
  }
  return y;
}

// Each of the additions rounds once; a transform spreads the largest result's error over all. Integers are rounded and
// saturated at last.
template <class T, class U>
void expectConvolution(const Sequence<T>& y, const Sequence<U>& taps, const Sequence<T>& x, bool byTransform) {
  using R = Real<T>;
  constexpr bool rounds = std::is_integral_v<R>;
  constexpr long double unit = std::numeric_limits<Real<U>>::epsilon() / 2, least = rounds ? 0.5L : 1e-300L;
  const auto error = [](long double got, long double want) {
    using L = std::numeric_limits<R>;
    return std::fabs(got - (rounds ? std::clamp<long double>(want, L::min(), L::max()) : want));
  };
  const long double length = static_cast<long double>(taps.size()), spread = byTransform ? 16 * std::sqrt(length) : 0;
  const auto wants = convolution(taps, x, y.size());
  for (std::size_t n = 0; n < y.size(); ++n) {
    const auto& [want, size] = wants[n];
    const auto got = wide(y[n]);
    ASSERT_LE(std::max(error(std::real(got), std::real(want)), error(std::imag(got), std::imag(want))),
              unit * (2 * length * size + spread) + least)
        << taps.size() << " by " << x.size() << " at " << n;
  }
}

template <class T>
bool sameBits(const Sequence<T>& a, const Sequence<T>& b) {
  return bytesOf(a) == bytesOf(b);
}

}  // namespace ovks::test
