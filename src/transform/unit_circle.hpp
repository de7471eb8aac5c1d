// SPDX-License-Identifier: MIT
// Points of the unit circle, correctly rounded, from a quarter wave of the sine.
#pragma once

#include "transform/double_double.hpp"

namespace ovks::fft {

// sin(2 pi k / 1024), k = 0 ... 256: enough for orders up to 10.
inline constexpr int kConstantOrder = 10;

template <class T>
struct QuarterWave {
  static constexpr int kPoints = (1 << kConstantOrder) / 4;
  T sine[kPoints + 1];

  constexpr QuarterWave() : sine{} {
    for (int k = 0; k <= kPoints; ++k)
      sine[k] = static_cast<T>(sineOfQuarter(static_cast<double>(k) / kPoints, 2 * k > kPoints));
  }
};
template <class T>
inline constexpr QuarterWave<T> kQuarterWave;

// table[k] = sin(2 pi k / N), k = 0 ... N/4, N = 2^order > 1024.
template <class T>
inline void computeQuarterWave(T* table, int order) {
  using V = Vec<double>;
  const std::ptrdiff_t points = std::ptrdiff_t{1} << (order - 2);
  V index;
  for (int i = 0; i < lanes<V>; ++i) index[i] = i;
  for (std::ptrdiff_t k = 0; k < points; k += lanes<V>) {
    const V t = (index + static_cast<double>(k)) * (1.0 / static_cast<double>(points));
    store(table + k, convert<T>(sineOfQuarter(t, 2 * k >= points)));
  }
  table[points] = 1;
}

// exp(-2 pi i j / N) for any j >= 0, N = 2^order, from a quarter wave of N * stride points.
template <class T>
class UnitCircle {
 public:
  constexpr UnitCircle(const T* sine, int sineOrder, int order)
      : sine_(sine), quarter_((int64_t{1} << order) / 4), shift_(sineOrder - order) {}

  constexpr Complex<T> operator()(int64_t j) const {
    const int64_t within = j & (quarter_ - 1);
    const T up = at(within), down = at(quarter_ - within);
    switch (j / quarter_ & 3) {
      case 0: return {down, -up};
      case 1: return {-up, -down};
      case 2: return {-down, up};
      default: return {up, down};
    }
  }

 private:
  constexpr T at(int64_t k) const { return sine_[k << shift_]; }

  const T* sine_;
  int64_t quarter_;
  int shift_;
};

}  // namespace ovks::fft
