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

// The real or the imaginary parts of interleaved points in two vectors. A lane of the second vector counts from
// lanes<V> on.
template <class Order, int part>
struct Parts {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * Order::template lane<V>(i) + part;
  }
};
// Half h of the points, interleaved, from their parts.
template <class Order, int h>
struct PointsHalf {
  template <class V>
  static constexpr int lane(int i) {
    return Order::template place<V>(h * lanes<V> / 2 + i / 2) + i % 2 * lanes<V>;
  }
};
template <class Order>
struct Placed {
  template <class V>
  static constexpr int lane(int i) {
    return Order::template place<V>(i);
  }
};

// Whole 128-bit chunks: the first of the two given, then the second, from each of two vectors.
template <int first, int second>
struct Chunks {
  template <class V>
  static constexpr int lane(int i) {
    constexpr int E = 16 / sizeof(Lane<V>), half = lanes<V> / 2;
    const int chunk = i % half / E ? second : first;
    return chunk * E + i % E + (i >= half ? lanes<V> : 0);
  }
};

}  // namespace detail

// How points stand in a vector's lanes: lane i has point lane(i), and point l stands in lane place(l).
struct InOrder {
  template <class V>
  static constexpr int lane(int i) {
    return i;
  }
  template <class V>
  static constexpr int place(int l) {
    return l;
  }
};
// As interleaved points come apart within 128-bit chunks, which is cheaper than across: half of a chunk from the first
// half of the points, half from the second.
struct ByChunks {
  template <class V>
  static constexpr int lane(int i) {
    constexpr int E = 16 / sizeof(Lane<V>), h = E / 2;
    return i % h + i / E * h + i % E / h * lanes<V> / 2;
  }
  template <class V>
  static constexpr int place(int l) {
    constexpr int E = 16 / sizeof(Lane<V>), h = E / 2, half = lanes<V> / 2;
    return l % h + l % half / h * E + l / half * h;
  }
};

// Two vectors into one, lane i taken from F's lane i.
template <class F, class V>
OVKS_INLINE V shuffle2(V a, V b) {
  return detail::shuffled<F>(a, b, std::make_integer_sequence<int, lanes<V>>{});
}

// The low halves of two vectors, and the high ones. A vector of one chunk is not halved.
template <class V>
struct Halves {
  V low, high;
};
template <class V>
OVKS_INLINE Halves<V> halvesOf(V a, V b) {
  using namespace detail;
  if constexpr (sizeof(V) == 16) return {a, b};
  else if constexpr (sizeof(V) == 32) return {shuffle2<Chunks<0, 0>>(a, b), shuffle2<Chunks<1, 1>>(a, b)};
  else return {shuffle2<Chunks<0, 1>>(a, b), shuffle2<Chunks<2, 3>>(a, b)};
}
// The same from memory, where the halves come together as they are loaded.
template <class V>
OVKS_INLINE V loadTogether(const Lane<V>* a, const Lane<V>* b) {
  if constexpr (sizeof(V) == 64) {
    return bits<V>(_mm512_inserti64x4(_mm512_castsi256_si512(load<__m256i>(a)), load<__m256i>(b), 1));
  } else {
    return bits<V>(_mm256_inserti128_si256(_mm256_castsi128_si256(load<__m128i>(a)), load<__m128i>(b), 1));
  }
}
template <class V>
OVKS_INLINE Halves<V> loadHalves(const Lane<V>* a, const Lane<V>* b) {
  constexpr int half = lanes<V> / 2;
  return {loadTogether<V>(a, b), loadTogether<V>(a + half, b + half)};
}

// The halves of two rows.
template <class V>
struct ComplexHalves {
  Halves<V> re, im;
};

// Into the caches or past them.
enum class Via { caches, none };
template <Via via, class V>
OVKS_INLINE void write(Lane<V>* p, V v) {
  if constexpr (via == Via::caches) store(p, v);
  else stream(p, v);
}

// Points as the caller stores them.
template <class T, Via via = Via::caches>
struct Interleaved {
  static constexpr Via kVia = via;
  using Order = ByChunks;
  T* p;

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
};

template <class T, Via via = Via::caches>
struct Split {
  static constexpr Via kVia = via;
  using Order = InOrder;
  T *re, *im;

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
    __builtin_prefetch(im + i, 0, 2);
  }
  OVKS_INLINE Complex<T> at(std::ptrdiff_t i) const { return {re[i], im[i]}; }
  OVKS_INLINE void set(std::ptrdiff_t i, Complex<T> x) const {
    re[i] = x.re;
    im[i] = x.im;
  }
};

// Rows of one vector of real and one of imaginary parts, side by side: in the work buffer, or in the room that as many
// interleaved points have.
template <class V, Via via = Via::caches>
struct Rows {
  using Vector = V;
  Lane<V>* p;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(p + i * 2 * lanes<V>), load<V>(p + i * 2 * lanes<V> + lanes<V>)};
  }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(p + i * 2 * lanes<V>, x.re);
    write<via>(p + i * 2 * lanes<V> + lanes<V>, x.im);
  }
  OVKS_INLINE ComplexHalves<V> halves(std::ptrdiff_t i, std::ptrdiff_t j) const {
    const Lane<V>*a = p + i * 2 * lanes<V>, *b = p + j * 2 * lanes<V>;
    return {loadHalves<V>(a, b), loadHalves<V>(a + lanes<V>, b + lanes<V>)};
  }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    const Lane<V>* row = p + i * 2 * lanes<V>;
    __builtin_prefetch(row, 1, 2);
    __builtin_prefetch(row + lanes<V>, 1, 2);
  }
  OVKS_INLINE Rows from(std::ptrdiff_t i) const { return {p + i * 2 * lanes<V>}; }
};

// Rows in two arrays.
template <class V, Via via = Via::caches>
struct SplitRows {
  using Vector = V;
  Lane<V>*re, *im;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(re + i * lanes<V>), load<V>(im + i * lanes<V>)};
  }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(re + i * lanes<V>, x.re);
    write<via>(im + i * lanes<V>, x.im);
  }
  OVKS_INLINE ComplexHalves<V> halves(std::ptrdiff_t i, std::ptrdiff_t j) const {
    return {loadHalves<V>(re + i * lanes<V>, re + j * lanes<V>), loadHalves<V>(im + i * lanes<V>, im + j * lanes<V>)};
  }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    __builtin_prefetch(re + i * lanes<V>, 1, 2);
    __builtin_prefetch(im + i * lanes<V>, 1, 2);
  }
  OVKS_INLINE SplitRows from(std::ptrdiff_t i) const { return {re + i * lanes<V>, im + i * lanes<V>}; }
};

// The rows in the room of a transform's points.
template <class V>
OVKS_INLINE Rows<V> rowsIn(Interleaved<Lane<V>> a) {
  return {a.p};
}
template <class V>
OVKS_INLINE SplitRows<V> rowsIn(Split<Lane<V>> a) {
  return {a.re, a.im};
}

// The same, written past the caches: all vectors must be aligned.
template <class T>
Interleaved<T, Via::none> pastCaches(Interleaved<T> a) {
  return {a.p};
}
template <class T>
Split<T, Via::none> pastCaches(Split<T> a) {
  return {a.re, a.im};
}
template <class V>
Rows<V, Via::none> pastCaches(Rows<V> a) {
  return {a.p};
}
template <class V>
SplitRows<V, Via::none> pastCaches(SplitRows<V> a) {
  return {a.re, a.im};
}
// Whether one's arrays are also the other's.
template <class T>
bool haveSameArray(Interleaved<T> a, Interleaved<T> b) {
  return a.p == b.p;
}
template <class T>
bool haveSameArray(Split<T> a, Split<T> b) {
  return a.re == b.re || a.re == b.im || a.im == b.re || a.im == b.im;
}
template <class V, class T>
bool isAligned(Interleaved<T> a) {
  return reinterpret_cast<uintptr_t>(a.p) % sizeof(V) == 0;
}
template <class V, class T>
bool isAligned(Split<T> a) {
  return (reinterpret_cast<uintptr_t>(a.re) | reinterpret_cast<uintptr_t>(a.im)) % sizeof(V) == 0;
}

// The caller's points a vector at a time, as if they were rows.
template <class V, class Points>
struct PointRows {
  Points points;
  std::ptrdiff_t first = 0;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const { return points.template get<V>((first + i) * lanes<V>); }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const { points.template prefetch<V>((first + i) * lanes<V>); }
  OVKS_INLINE PointRows from(std::ptrdiff_t i) const { return {points, first + i}; }
};

}  // namespace ovks::fft
