// SPDX-License-Identifier: MIT
// Random elements, with what makes trouble mixed in.
#pragma once

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <string_view>
#include <vector>

#include "support/reference.hpp"

namespace ovks::test {

// The same sequence for a name and the program's --gtest_random_seed.
class Random {
 public:
  explicit Random(std::string_view name)
      : engine_(std::hash<std::string_view>()(name) + static_cast<unsigned>(GTEST_FLAG_GET(random_seed))) {}

  std::uint64_t bits() { return engine_(); }
  int below(int n) { return static_cast<int>(bits() % static_cast<unsigned>(n)); }
  int between(int low, int high) { return low + below(high - low + 1); }

  // Integers of every magnitude. Floats of every kind, most of them of moderate size, some halfway between integers.
  template <class T>
  T value() {
    using L = std::numeric_limits<T>;
    if constexpr (ComplexElement<T>) {
      using R = decltype(T::re);
      const R re = value<R>(), im = value<R>();
      return below(16) ? T{re, im} : T{};
    } else if constexpr (std::is_integral_v<T>) {
      const T edges[] = {L::min(), L::min() + 1, L::max(), L::max() - 1, 0, 1, static_cast<T>(-1)};
      if (below(4) == 0) return edges[below(7)];
      const auto x = static_cast<std::make_signed_t<T>>(bits());
      return static_cast<T>(x >> (below(2) ? below(8 * sizeof(T)) : 0));
    } else {
      using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
      const T edges[] = {0, L::infinity(), L::quiet_NaN(), L::signaling_NaN(), L::denorm_min(), L::min(), L::max(), 1};
      const int kind = below(8);
      const Bits sign = static_cast<Bits>(bits() & 1) << (8 * sizeof(T) - 1);
      if (kind == 0) return std::bit_cast<T>(std::bit_cast<Bits>(edges[below(8)]) | sign);
      if (kind == 1) return std::bit_cast<T>(static_cast<Bits>(bits()));
      if (kind == 2) return static_cast<T>(between(-70000, 70000)) / 2;
      return static_cast<T>(std::ldexp(static_cast<T>(static_cast<std::int64_t>(bits())), between(-80, -56)));
    }
  }

  template <class T>
  std::vector<T> vector(int n) {
    std::vector<T> v(static_cast<std::size_t>(n));
    for (T& x : v) x = value<T>();
    return v;
  }

 private:
  std::mt19937_64 engine_;
};

}  // namespace ovks::test
