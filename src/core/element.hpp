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

// One element repeated, converted to the lanes' type.
template <class V, class T>
OVKS_INLINE V repeat(T x) {
  using R = Lane<V>;
  if constexpr (isComplex<T> && std::is_same_v<R, Real<T>> && sizeof(T) <= 8) {
    using Both = std::conditional_t<sizeof(T) == 8, uint64_t, uint32_t>;
    return bits<V>(broadcast<Vec<Both, sizeof(V) / sizeof(Both)>>(bits<Both>(x)));
  } else if constexpr (isComplex<T>) {
    const Vec<R, 2> pair = {static_cast<R>(x.re), static_cast<R>(x.im)};
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
      return __builtin_shufflevector(pair, pair, static_cast<int>(i % 2)...);
    }
    (std::make_index_sequence<lanes<V>>{});
  } else {
    return broadcast<V>(static_cast<R>(x));
  }
}

}  // namespace ovks
