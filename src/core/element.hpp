// SPDX-License-Identifier: MIT
// Vector elements: real ones, and complex ones as pairs of reals.
#pragma once

#include "core/simd.hpp"

namespace ovks {

template <class T>
struct ElementTraits {
  using Real = T;
  static constexpr int parts = 1;
};

template <class T>
requires requires(T z) { z.re; }
struct ElementTraits<T> {
  using Real = decltype(T::re);
  static constexpr int parts = 2;
};

template <class T>
using Real = typename ElementTraits<T>::Real;
template <class T>
inline constexpr int parts = ElementTraits<T>::parts;
template <class T>
inline constexpr bool isComplex = parts<T> == 2;
template <class T>
inline constexpr bool isInteger = std::is_integral_v<Real<T>>;

template <class T>
OVKS_INLINE Real<T>* reals(T* p) {
  return reinterpret_cast<Real<T>*>(p);
}
template <class T>
OVKS_INLINE const Real<T>* reals(const T* p) {
  return reinterpret_cast<const Real<T>*>(p);
}

// n elements side by side in lanes.
template <class T, int n>
using Elements = Vec<Real<T>, n * parts<T>>;

// One element repeated.
template <class V, class T>
OVKS_INLINE V repeat(T x) {
  V v;
  for (int i = 0; i < lanes<V>; ++i) {
    if constexpr (isComplex<T>) {
      v[i] = i % 2 ? x.im : x.re;
    } else {
      v[i] = x;
    }
  }
  return v;
}

}  // namespace ovks
