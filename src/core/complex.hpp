// SPDX-License-Identifier: MIT
// Complex arithmetic on vectors of (re, im) lanes.
#pragma once

#include "core/simd.hpp"

namespace ovks {

template <class V>
OVKS_INLINE V dupReal(V v) {
  return shuffle(v, [](int i) { return i & ~1; });
}
template <class V>
OVKS_INLINE V dupImag(V v) {
  return shuffle(v, [](int i) { return i | 1; });
}
template <class V>
OVKS_INLINE V swapParts(V v) {
  return shuffle(v, [](int i) { return i ^ 1; });
}

// One part of each element, in half as many lanes.
template <class V>
OVKS_INLINE auto realLanes(V v) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(v, v, static_cast<int>(2 * i)...);
  }
  (std::make_index_sequence<lanes<V> / 2>{});
}
template <class V>
OVKS_INLINE auto imagLanes(V v) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(v, v, static_cast<int>(2 * i + 1)...);
  }
  (std::make_index_sequence<lanes<V> / 2>{});
}

// One part of each element of a and b, in whatever order the processor does at once.
template <class V>
OVKS_INLINE V realLanes(V a, V b) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, (i / 4 * 4 + i % 2 * 2 + i / 2 % 2 * lanes<V>)...);
  }
  (std::make_index_sequence<lanes<V>>{});
}
template <class V>
OVKS_INLINE V imagLanes(V a, V b) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, (i / 4 * 4 + i % 2 * 2 + 1 + i / 2 % 2 * lanes<V>)...);
  }
  (std::make_index_sequence<lanes<V>>{});
}

// Each of half as many reals in both lanes of its pair.
template <class V, class H>
OVKS_INLINE V duplicate(H v) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(v, v, static_cast<int>(i / 2)...);
  }
  (std::make_index_sequence<lanes<V>>{});
}

// re = fma(a.re, b.re, -(a.im b.im)), im = fma(a.re, b.im, a.im b.re)
template <class V>
OVKS_INLINE V complexProduct(V a, V b) {
  a = inRegister(a);
  b = inRegister(b);
  return fmaSubAdd(dupReal(a), b, dupImag(a) * swapParts(b));
}

// c + a b, the products fused with the sum one after the other.
template <class V>
OVKS_INLINE V complexProductSum(V a, V b, V c) {
  a = inRegister(a);
  b = inRegister(b);
  return fmaSubAdd(dupReal(a), b, fmaSubAdd(dupImag(a), swapParts(b), c));
}

}  // namespace ovks
