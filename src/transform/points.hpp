// SPDX-License-Identifier: MIT
// A transform's points as the caller stores them: interleaved, or in two arrays.
#pragma once

#include <algorithm>

#include "transform/lane_order.hpp"

namespace ovks::fft {

// Memory for complex numbers.
template <class T>
struct OneArray {
  T* p;
};
template <class T>
struct TwoArrays {
  T *re, *im;
};

// Hides from the compiler where arrays lie.
template <class T>
OVKS_INLINE void hide(OneArray<T>& a) {
  asm("" : "+r"(a.p));
}
template <class T>
OVKS_INLINE void hide(TwoArrays<T>& a) {
  asm("" : "+r"(a.re), "+r"(a.im));
}

// Leaves the registers to others.
template <class T>
OVKS_INLINE void keepInMemory(T& x) {
  asm("" : "+m"(x));
}

// n places a step apart. Left to itself, the compiler keeps an address for each and runs out of registers; from every
// fourth the next three are within reach of an instruction's own address arithmetic.
template <int n, class Access>
class Strided {
 public:
  OVKS_INLINE Strided(Access first, std::ptrdiff_t step) : step_(step) {
    unroll<kFourths>([&](auto g) __attribute__((always_inline)) {
      Access fourth = first.from(4 * g * step);
      hide(fourth);  // Hidden in the array, each would be stored to memory.
      fourths_[g] = fourth;
    });
  }
  template <int i>
  OVKS_INLINE Access operator()(Index<i>) const {
    return fourths_[i / 4].from(i % 4 * step_);
  }

 private:
  static constexpr int kFourths = (n + 3) / 4;
  Access fourths_[kFourths];
  std::ptrdiff_t step_;
};

// Whether one's arrays are also the other's.
template <class T>
bool haveSameArray(OneArray<T> a, OneArray<T> b) {
  return a.p == b.p;
}
template <class T>
bool haveSameArray(TwoArrays<T> a, TwoArrays<T> b) {
  return a.re == b.re || a.re == b.im || a.im == b.re || a.im == b.im;
}
template <class T>
void copyPoints(OneArray<T> from, OneArray<T> to, std::ptrdiff_t n) {
  std::copy_n(from.p, 2 * n, to.p);
}
template <class T>
void copyPoints(TwoArrays<T> from, TwoArrays<T> to, std::ptrdiff_t n) {
  std::copy_n(from.re, n, to.re);
  std::copy_n(from.im, n, to.im);
}
template <class V>
bool isAligned(OneArray<Lane<V>> a) {
  return reinterpret_cast<uintptr_t>(a.p) % sizeof(V) == 0;
}
template <class V>
bool isAligned(TwoArrays<Lane<V>> a) {
  return (reinterpret_cast<uintptr_t>(a.re) | reinterpret_cast<uintptr_t>(a.im)) % sizeof(V) == 0;
}

// Whether places of the same number in two arrays compete for the same sets of the caches.
inline constexpr std::ptrdiff_t kPageBytes = 4096;
template <class T>
bool sharePageOffset(OneArray<T>) {
  return false;
}
template <class T>
bool sharePageOffset(TwoArrays<T> a) {
  constexpr uintptr_t kNear = 127;
  const uintptr_t apart = reinterpret_cast<uintptr_t>(a.re) - reinterpret_cast<uintptr_t>(a.im);
  return (apart + kNear) % kPageBytes <= 2 * kNear;
}

// Into the caches or past them; there all vectors must be aligned.
enum class Via { caches, none };
template <Via via, class V>
OVKS_INLINE void write(Lane<V>* p, V v) {
  if constexpr (via == Via::caches) store(p, v);
  else stream(p, v);
}
// The same arrays, written past the caches.
template <class Access>
auto pastCaches(Access a) {
  return typename Access::PastCaches{static_cast<typename Access::Arrays>(a)};
}

template <class T, Via via = Via::caches>
struct Interleaved : OneArray<T> {
  using Arrays = OneArray<T>;
  using PastCaches = Interleaved<T, Via::none>;
  using Order = ByChunks;
  static constexpr Via kVia = via;
  static constexpr bool kHeld = false;
  using Arrays::p;

  template <class V, class To = Order>
  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    const V a = load<V>(p + 2 * i), b = load<V>(p + 2 * i + lanes<V>);
    return {shuffle2<detail::Parts<To, 0>>(a, b), shuffle2<detail::Parts<To, 1>>(a, b)};
  }
  template <class From = Order, class V>
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(p + 2 * i, shuffle2<detail::PointsHalf<From, 0>>(x.re, x.im));
    write<via>(p + 2 * i + lanes<V>, shuffle2<detail::PointsHalf<From, 1>>(x.re, x.im));
  }
  // The last point first.
  template <class V>
  OVKS_INLINE Complex<V> getReversed(std::ptrdiff_t i) const {
    const V a = reversedPoints(load<V>(p + 2 * i + lanes<V>)), b = reversedPoints(load<V>(p + 2 * i));
    return {shuffle2<detail::Parts<Order, 0>>(a, b), shuffle2<detail::Parts<Order, 1>>(a, b)};
  }
  template <class V>
  OVKS_INLINE void putReversed(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(p + 2 * i, reversedPoints(shuffle2<detail::PointsHalf<Order, 1>>(x.re, x.im)));
    write<via>(p + 2 * i + lanes<V>, reversedPoints(shuffle2<detail::PointsHalf<Order, 0>>(x.re, x.im)));
  }
  template <class V>
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    __builtin_prefetch(p + 2 * i, 0, 2);
    __builtin_prefetch(p + 2 * i + lanes<V>, 0, 2);
  }
  OVKS_INLINE Complex<std::remove_const_t<T>> at(std::ptrdiff_t i) const { return {p[2 * i], p[2 * i + 1]}; }
  OVKS_INLINE void set(std::ptrdiff_t i, Complex<T> x) const {
    p[2 * i] = x.re;
    p[2 * i + 1] = x.im;
  }
  OVKS_INLINE Interleaved from(std::ptrdiff_t i) const { return {p + 2 * i}; }
};

// `held`: imaginary parts are to be held back for a while, so that fewer lines at once crowd a set of the first cache.
template <class T, Via via = Via::caches, bool held = false>
struct Split : TwoArrays<T> {
  using Arrays = TwoArrays<T>;
  using PastCaches = Split<T, Via::none>;
  using Order = InOrder;
  static constexpr Via kVia = via;
  static constexpr bool kHeld = held;
  using Arrays::re, Arrays::im;

  template <class V>
  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(re + i), load<V>(im + i)};
  }
  template <class From = Order, class V>
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(re + i, shuffle2<detail::Placed<From>>(x.re, x.re));
    write<via>(im + i, shuffle2<detail::Placed<From>>(x.im, x.im));
  }
  template <class V>
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    __builtin_prefetch(re + i, 0, 2);
    if (!held) __builtin_prefetch(im + i, 0, 2);
  }
  OVKS_INLINE Complex<T> at(std::ptrdiff_t i) const { return {re[i], im[i]}; }
  OVKS_INLINE void set(std::ptrdiff_t i, Complex<T> x) const {
    re[i] = x.re;
    im[i] = x.im;
  }
  OVKS_INLINE Split from(std::ptrdiff_t i) const { return {re + i, im + i}; }
};

}  // namespace ovks::fft
