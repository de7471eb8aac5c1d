// SPDX-License-Identifier: MIT
// Sequences, buffers and references for filtering.
#pragma once

#include <complex>
#include <cstring>
#include <random>
#include <vector>

#include "ovks.h"
#include "support/guarded.hpp"

namespace ovks::test {

template <class T>
using Sequence = std::vector<T>;

template <class T>
struct Wider {
  using type = long double;
  static type of(T x) { return x; }
};
template <class T>
requires requires(T z) { z.re; }
struct Wider<T> {
  using type = std::complex<long double>;
  static type of(T x) { return {static_cast<long double>(x.re), static_cast<long double>(x.im)}; }
};

// y[n] = sum taps[k] x[n - k] for the n from first on, and the sums of magnitudes that bound its rounding.
template <class T, class U>
auto convolution(const Sequence<U>& taps, const Sequence<T>& x, std::size_t first, std::size_t count) {
  std::vector<std::pair<typename Wider<U>::type, long double>> y(count);
  for (std::size_t n = 0; n < count; ++n) {
    for (std::size_t k = 0; k < taps.size() && k <= first + n; ++k) {
      if (first + n - k >= x.size()) continue;
      const typename Wider<U>::type term =
          Wider<U>::of(taps[k]) * typename Wider<U>::type(Wider<T>::of(x[first + n - k]));
      y[n].first += term;
      y[n].second += std::abs(term);
    }
  }
  return y;
}

class Noise {
 public:
  explicit Noise(unsigned seed) : engine_(seed) {}

  template <class T>
  Sequence<T> sequence(std::size_t n) {
    Sequence<T> v(n);
    for (T& x : v) x = one<T>();
    return v;
  }

 private:
  template <class T>
  T one() {
    if constexpr (requires(T z) { z.re; }) {
      const auto re = one<decltype(T::re)>();
      return T{re, one<decltype(T::re)>()};
    } else if constexpr (std::is_integral_v<T>) {
      return static_cast<T>(engine_());
    } else {
      return std::uniform_real_distribution<T>(-1, 1)(engine_);
    }
  }

  std::mt19937 engine_;
};

// Memory of exactly so many bytes that ends at a guard page, at any address.
class Exactly {
 public:
  explicit Exactly(std::size_t bytes, std::size_t beforeEnd = 0) : memory_(bytes + 64) {
    const std::vector<std::byte> fill(bytes, std::byte{0xee});
    data_ = memory_.put({true, beforeEnd}, fill.data(), bytes);
  }
  template <class T>
  explicit Exactly(const Sequence<T>& v) : memory_(v.size() * sizeof(T) + 64) {
    data_ = memory_.put({true, 0}, v.data(), v.size() * sizeof(T));
  }

  template <class T>
  T* as() const {
    return reinterpret_cast<T*>(data_);
  }
  template <class T>
  Sequence<T> values(std::size_t n) const {
    Sequence<T> v(n);
    if (n > 0) std::memcpy(v.data(), data_, n * sizeof(T));
    return v;
  }
  bool intact() const { return memory_.intact(); }

 private:
  Guarded memory_;
  std::byte* data_;
};

template <class T>
bool sameBits(const Sequence<T>& a, const Sequence<T>& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(T)) == 0);
}

}  // namespace ovks::test
