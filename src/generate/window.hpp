// SPDX-License-Identifier: MIT
// What all windows share: symmetric weights applied to elements of every type, and the entries.
//
// A shape makes values in index order by `template <int n> Vec<double, n> next()`: recurrences and polynomials run in
// 64f. They are rounded to the type of the weights, which is 32f for 16s, 16sc, 32f and 32fc elements;
// `weights(values)` makes the weights of them.
#pragma once

#include <cmath>
#include <cstring>
#include <numbers>

#include "core/check.hpp"
#include "core/complex.hpp"
#include "core/float_to_integer.hpp"
#include "core/part.hpp"

namespace ovks {

template <class T>
using Weight = std::conditional_t<isInteger<T>, float, Real<T>>;

// As many elements as their products with weights fill a vector.
template <class T>
inline constexpr int kBlock = kVectorBytes / (int{sizeof(Weight<T>)} * parts<T>);
template <class T>
using WeightBlock = Vec<Weight<T>, kBlock<T>>;

// Two vectors one after the other.
template <class V>
OVKS_INLINE auto concat(V a, V b) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return __builtin_shufflevector(a, b, static_cast<int>(i)...);
  }
  (std::make_index_sequence<2 * lanes<V>>{});
}

// The next n values of a shape, rounded to W.
template <class W, int n, class Shape>
OVKS_INLINE Vec<W, n> nextValues(Shape& shape) {
  if constexpr (n * int{sizeof(double)} > kVectorBytes) {
    const auto first = nextValues<W, n / 2>(shape);
    return concat(first, nextValues<W, n / 2>(shape));
  } else {
    return convert<W>(shape.template next<n>());
  }
}

// For shapes whose values are the weights.
struct Direct {
  template <class V>
  OVKS_INLINE static V weights(V values) {
    return values;
  }
};

namespace detail {

// The exact product of 16-bit integers and weights, rounded once to nearest even by the sum with a number whose last
// place is 1, and saturated. The lowest bits of the sum are the integer.
template <class T, class V>
OVKS_INLINE auto integerProduct(V x, V w) {
  static_assert(std::is_same_v<T, int16_t>);
  constexpr float kUnits = 0x1.8p23f;
  const V zero = broadcast<V>(kUnits), max = broadcast<V>(kUnits + 32767), min = broadcast<V>(kUnits - 32768);
  V sum = fma(x, w, zero);
  sum = sum == sum ? sum : zero;
  sum = larger(min, smaller(max, sum));
  return convert<T>(bits<Vec<int32_t, lanes<V>>>(sum));
}

template <class T>
OVKS_INLINE Elements<T, kBlock<T>> weighted(Elements<T, kBlock<T>> x, WeightBlock<T> weights) {
  using V = Vec<Weight<T>, lanes<decltype(x)>>;
  V w;
  if constexpr (isComplex<T>) w = duplicate<V>(weights);
  else w = weights;
  if constexpr (isInteger<T>) return integerProduct<Real<T>>(convert<float>(x), w);
  else return x * w;
}

template <class V>
OVKS_INLINE V reversed(V v) {
  return ovks::shuffle(v, [](int i) { return lanes<V> - 1 - i; });
}

struct NoControl {};
// 16-bit results do not depend on the caller's control.
template <class T>
using Control = std::conditional_t<isInteger<T>, DefaultFloatControl, NoControl>;

}  // namespace detail

// pDst[i] = pSrc[i] * w(i) for vectors of n elements, a pair of mirror images at a time.
template <class T>
struct Windowing {
  using X = Elements<T, kBlock<T>>;
  using W = WeightBlock<T>;
  static constexpr int kStep = kBlock<T>;

  const T* src;
  T* dst;
  std::ptrdiff_t n;

  OVKS_INLINE void one(std::ptrdiff_t i, Weight<T> w) const { part(i, 1, broadcast<W>(w)); }
  void copy(std::ptrdiff_t i) const { std::memmove(dst + i, src + i, sizeof(T)); }
  void zero(std::ptrdiff_t i) const { std::memset(static_cast<void*>(dst + i), 0, sizeof(T)); }

  // The elements first .. last - 1 and their mirror images, on the other side of the centre.
  template <class Shape>
  OVKS_INLINE void pairs(Shape& shape, std::ptrdiff_t first, std::ptrdiff_t last) const {
    std::ptrdiff_t i = first;
    if constexpr (requires { shape.left(); }) i += beginning(shape, first, last);
    for (; i + kStep <= last; i += kStep) {
      const W w = shape.weights(nextValues<Weight<T>, kStep>(shape));
      whole(i, w);
      whole(n - i - kStep, detail::reversed(w));
    }
    if (i < last) some(shape, i, last - i);
  }

 private:
  OVKS_INLINE void whole(std::ptrdiff_t i, W w) const { store(dst + i, detail::weighted<T>(load<X>(src + i), w)); }
  // Some elements fewer than a step, so that whole steps remain of what the shape has stored.
  template <class Shape>
  OVKS_INLINE std::ptrdiff_t beginning(Shape& shape, std::ptrdiff_t first, std::ptrdiff_t last) const {
    const int count = shape.left() % kStep;
    if (count == 0 || first + count > last) return 0;
    some(shape, first, count);
    shape.back(kStep - count);
    return count;
  }

  template <class Shape>
  OVKS_INLINE void some(Shape& shape, std::ptrdiff_t i, std::ptrdiff_t count) const {
    const W w = shape.weights(nextValues<Weight<T>, kStep>(shape));
    part(i, count, w);
    Weight<T> mirrored[2 * kStep] = {};
    store(mirrored, detail::reversed(w));
    part(n - i - count, count, load<W>(mirrored + kStep - count));
  }

  OVKS_INLINE void part(std::ptrdiff_t i, std::ptrdiff_t count, W w) const {
    const X x = loadPart<X>(reals(src + i), count * parts<T>);
    storePart(reals(dst + i), detail::weighted<T>(x, w), count * parts<T>);
  }
};

// The checks of every window; its shortest length counts as a size.
inline Status checkWindow(int len, int shortest, const void* pSrc, const void* pDst) {
  return check(len < shortest ? 0 : len, static_cast<const char*>(pSrc), static_cast<const char*>(pDst));
}

// The entries: Shape::run(pSrc, pDst, len) or Shape::run(pSrc, pDst, len, alpha) for all of a shape's types.
template <class T>
using Alpha = std::type_identity_t<Weight<T>>;

template <class Shape, class T>
Status window(const T* pSrc, T* pDst, int len) {
  return Shape::run(pSrc, pDst, len);
}
template <class Shape, class T>
Status window(T* pSrcDst, int len) {
  return Shape::run(static_cast<const T*>(pSrcDst), pSrcDst, len);
}
template <class Shape, class T>
Status window(const T* pSrc, T* pDst, int len, Alpha<T> alpha) {
  return Shape::run(pSrc, pDst, len, alpha);
}
template <class Shape, class T>
Status window(T* pSrcDst, int len, Alpha<T> alpha) {
  return Shape::run(static_cast<const T*>(pSrcDst), pSrcDst, len, alpha);
}

}  // namespace ovks
