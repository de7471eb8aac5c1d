// SPDX-License-Identifier: MIT
// Where a transform's points stand: interleaved or in two arrays, in the caller's order; or in rows, the order of the
// passes.
#pragma once

#include "transform/butterfly.hpp"

namespace ovks::fft {

namespace detail {

template <class F, class V, int... i>
OVKS_INLINE auto shuffled(V a, V b, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(a, b, F::template lane<V>(i)...);
}

// Lanes of interleaved pairs in two vectors, and of two vectors interleaved. A lane of the second vector counts from
// lanes<V> on.
struct EvenLanes {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * i;
  }
};
struct OddLanes {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * i + 1;
  }
};
struct FirstPairs {
  template <class V>
  static constexpr int lane(int i) {
    return i / 2 + i % 2 * lanes<V>;
  }
};
struct LastPairs {
  template <class V>
  static constexpr int lane(int i) {
    return lanes<V> / 2 + i / 2 + i % 2 * lanes<V>;
  }
};

}  // namespace detail

// Two vectors into one, lane i taken from F's lane i.
template <class F, class V>
OVKS_INLINE V shuffle2(V a, V b) {
  return detail::shuffled<F>(a, b, std::make_integer_sequence<int, lanes<V>>{});
}

// Points as the caller stores them.
template <class T>
struct Interleaved {
  T* p;

  template <class V>
  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    const V a = load<V>(p + 2 * i), b = load<V>(p + 2 * i + lanes<V>);
    return {shuffle2<detail::EvenLanes>(a, b), shuffle2<detail::OddLanes>(a, b)};
  }
  template <class V>
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    store(p + 2 * i, shuffle2<detail::FirstPairs>(x.re, x.im));
    store(p + 2 * i + lanes<V>, shuffle2<detail::LastPairs>(x.re, x.im));
  }
  OVKS_INLINE Complex<std::remove_const_t<T>> at(std::ptrdiff_t i) const { return {p[2 * i], p[2 * i + 1]}; }
  OVKS_INLINE void set(std::ptrdiff_t i, Complex<T> x) const {
    p[2 * i] = x.re;
    p[2 * i + 1] = x.im;
  }
};

template <class T>
struct Split {
  T *re, *im;

  template <class V>
  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(re + i), load<V>(im + i)};
  }
  template <class V>
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    store(re + i, x.re);
    store(im + i, x.im);
  }
  OVKS_INLINE Complex<T> at(std::ptrdiff_t i) const { return {re[i], im[i]}; }
  OVKS_INLINE void set(std::ptrdiff_t i, Complex<T> x) const {
    re[i] = x.re;
    im[i] = x.im;
  }
};

// Rows of one vector of real and one of imaginary parts, row i of either i * step elements from its first. They lie in
// the work buffer, or in the destination itself in the room of as many points.
template <class V>
struct Rows {
  using T = Lane<V>;
  T *re, *im;
  std::ptrdiff_t step;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const { return {load<V>(re + i * step), load<V>(im + i * step)}; }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    store(re + i * step, x.re);
    store(im + i * step, x.im);
  }
  OVKS_INLINE Rows from(std::ptrdiff_t i) const { return {re + i * step, im + i * step, step}; }
};

template <class V>
OVKS_INLINE Rows<V> rowsIn(Interleaved<Lane<V>> a) {
  return {a.p, a.p + lanes<V>, 2 * lanes<V>};
}
template <class V>
OVKS_INLINE Rows<V> rowsIn(Split<Lane<V>> a) {
  return {a.re, a.im, lanes<V>};
}

// The caller's points a vector at a time, as if they were rows.
template <class V, class Points>
struct PointRows {
  Points points;
  std::ptrdiff_t first = 0;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const { return points.template get<V>((first + i) * lanes<V>); }
  OVKS_INLINE PointRows from(std::ptrdiff_t i) const { return {points, first + i}; }
};

}  // namespace ovks::fft
