// SPDX-License-Identifier: MIT
// Fourier transforms of 2, 4, 8 and 16 points, across vectors or scalars of any type.
//
// in(Index<j>) yields point j and out(Index<k>, value) takes spectrum point k, so that every kernel reads and writes as
// it likes and the values go no way round through memory. The inverse differs in the sign of the quarter turns and of
// the twiddles' sines only; D picks it.
#pragma once

#include "core/simd.hpp"

namespace ovks::fft {

enum class Direction { forward, inverse };

template <int i>
using Index = std::integral_constant<int, i>;

// f(Index<0>) ... f(Index<n - 1>)
template <int n, class F>
OVKS_INLINE void unroll(F&& f) {
  [&]<int... i>(std::integer_sequence<int, i...>) __attribute__((always_inline)) { (f(Index<i>{}), ...); }
  (std::make_integer_sequence<int, n>{});
}

constexpr int bitReversed(int i, int bits) {
  int r = 0;
  for (int b = 0; b < bits; ++b) r |= (i >> b & 1) << (bits - 1 - b);
  return r;
}

constexpr int log2OfPower(long n) {
  int k = 0;
  while (1L << k < n) ++k;
  return k;
}

OVKS_INLINE float fma(float a, float b, float c) { return __builtin_fmaf(a, b, c); }
OVKS_INLINE double fma(double a, double b, double c) { return __builtin_fma(a, b, c); }
using ovks::fma;

template <class V>
struct ScalarOf {
  using type = Lane<V>;
};
template <class V>
requires std::is_arithmetic_v<V>
struct ScalarOf<V> {
  using type = V;
};
template <class V>
using Scalar = typename ScalarOf<V>::type;

// In all lanes; adding to zero is what compilers fold into the operand of the next instruction.
template <class V>
OVKS_INLINE V splat(Scalar<V> x) {
  if constexpr (std::is_arithmetic_v<V>) return x;
  else return x - V{};
}

template <class V>
struct Complex {
  V re, im;
};

template <class V>
OVKS_INLINE Complex<V> operator+(Complex<V> a, Complex<V> b) {
  return {a.re + b.re, a.im + b.im};
}
template <class V>
OVKS_INLINE Complex<V> operator-(Complex<V> a, Complex<V> b) {
  return {a.re - b.re, a.im - b.im};
}

// a + q b with q = -i forward and i inverse, and a - q b.
template <Direction D, class V>
OVKS_INLINE Complex<V> addQuarter(Complex<V> a, Complex<V> b) {
  if constexpr (D == Direction::forward) return {a.re + b.im, a.im - b.re};
  else return {a.re - b.im, a.im + b.re};
}
template <Direction D, class V>
OVKS_INLINE Complex<V> subQuarter(Complex<V> a, Complex<V> b) {
  return addQuarter < D == Direction::forward ? Direction::inverse : Direction::forward > (a, b);
}

// sqrt(2) times a turned by an eighth.
template <Direction D, class V>
OVKS_INLINE Complex<V> turnEighth(Complex<V> a) {
  return addQuarter<D>(a, a);
}

// a + r b, and a + r q b.
template <class V>
OVKS_INLINE Complex<V> addScaled(Complex<V> a, V r, Complex<V> b) {
  return {fma(r, b.re, a.re), fma(r, b.im, a.im)};
}
template <Direction D, class V>
OVKS_INLINE Complex<V> addScaledQuarter(Complex<V> a, V r, Complex<V> b) {
  if constexpr (D == Direction::forward) return {fma(r, b.im, a.re), fma(-r, b.re, a.im)};
  else return {fma(-r, b.im, a.re), fma(r, b.re, a.im)};
}

// x (c + i s) forward, x (c - i s) inverse: tables hold the forward twiddles.
template <Direction D, class V>
OVKS_INLINE Complex<V> turn(Complex<V> x, V c, V s) {
  if constexpr (D == Direction::forward) return {fma(x.re, c, -(x.im * s)), fma(x.im, c, x.re * s)};
  else return {fma(x.re, c, x.im * s), fma(x.im, c, -(x.re * s))};
}

template <Direction D, class In, class Out>
OVKS_INLINE void transform2(In in, Out out) {
  const auto a = in(Index<0>{}), b = in(Index<1>{});
  out(Index<0>{}, a + b);
  out(Index<1>{}, a - b);
}

template <Direction D, class In, class Out>
OVKS_INLINE void transform4(In in, Out out) {
  const auto a = in(Index<0>{}), c = in(Index<2>{}), s = a + c, t = a - c;
  const auto b = in(Index<1>{}), d = in(Index<3>{}), u = b + d, v = b - d;
  out(Index<0>{}, s + u);
  out(Index<1>{}, addQuarter<D>(t, v));
  out(Index<2>{}, s - u);
  out(Index<3>{}, subQuarter<D>(t, v));
}

template <Direction D, class In, class Out>
OVKS_INLINE void transform8(In in, Out out) {
  using X = decltype(in(Index<0>{}));
  using V = decltype(X::re);
  const V r = splat<V>(static_cast<Scalar<V>>(0.70710678118654752440L));
  const X x0 = in(Index<0>{}), x4 = in(Index<4>{}), a0 = x0 + x4, b0 = x0 - x4;
  const X x2 = in(Index<2>{}), x6 = in(Index<6>{}), a2 = x2 + x6, b2 = x2 - x6;
  const X x1 = in(Index<1>{}), x5 = in(Index<5>{}), a1 = x1 + x5, b1 = x1 - x5;
  const X x3 = in(Index<3>{}), x7 = in(Index<7>{}), a3 = x3 + x7, b3 = x3 - x7;
  const X s = a0 + a2, t = a0 - a2, u = a1 + a3, v = a1 - a3;
  out(Index<0>{}, s + u);
  out(Index<4>{}, s - u);
  out(Index<2>{}, addQuarter<D>(t, v));
  out(Index<6>{}, subQuarter<D>(t, v));
  const X p = addQuarter<D>(b0, b2), e = turnEighth<D>(addQuarter<D>(b1, b3));
  out(Index<1>{}, addScaled(p, r, e));
  out(Index<5>{}, addScaled(p, -r, e));
  const X q = subQuarter<D>(b0, b2), f = turnEighth<D>(subQuarter<D>(b1, b3));
  out(Index<3>{}, addScaledQuarter<D>(q, r, f));
  out(Index<7>{}, addScaledQuarter<D>(q, -r, f));
}

// Four by four: x[j + 4k] is spectrum point k of the points j, j + 4, j + 8, j + 12, turned by its twiddle where that
// is no multiple of an eighth.
template <Direction D, class X, class In>
OVKS_INLINE void columns16(X* x, In in) {
  using V = decltype(X::re);
  const V c = splat<V>(static_cast<Scalar<V>>(0.92387953251128675613L));
  const V s = splat<V>(static_cast<Scalar<V>>(-0.38268343236508977173L));
  unroll<4>([&](auto j) __attribute__((always_inline)) {
    constexpr int J = decltype(j)::value;
    transform4<D>(
        [&](auto i) __attribute__((always_inline)) { return in(Index<J + 4 * decltype(i)::value>{}); },
        [&](auto k, X v) __attribute__((always_inline)) { x[J + 4 * k] = v; });
    if constexpr (J == 1) {
      x[5] = turn<D>(x[5], c, s);
      x[13] = turn<D>(x[13], -s, -c);
    } else if constexpr (J == 3) {
      x[7] = turn<D>(x[7], -s, -c);
      x[15] = turn<D>(x[15], -c, -s);
    }
  });
}

template <Direction D, class In, class Out>
OVKS_INLINE void transform16(In in, Out out) {
  using X = decltype(in(Index<0>{}));
  using V = decltype(X::re);
  const V r = splat<V>(static_cast<Scalar<V>>(0.70710678118654752440L));
  X x[16];
  columns16<D>(x, in);
  const auto finish = [&](auto first, X s, X t, X u, X v) __attribute__((always_inline)) {
    constexpr int k = decltype(first)::value;
    out(Index<k>{}, s + u);
    out(Index<k + 8>{}, s - u);
    out(Index<k + 4>{}, addQuarter<D>(t, v));
    out(Index<k + 12>{}, subQuarter<D>(t, v));
  };
  finish(Index<0>{}, x[0] + x[2], x[0] - x[2], x[1] + x[3], x[1] - x[3]);
  const X h = turnEighth<D>(x[6]);
  finish(Index<1>{}, addScaled(x[4], r, h), addScaled(x[4], -r, h), x[5] + x[7], x[5] - x[7]);
  const X p = addQuarter<D>(x[8], x[10]), e = turnEighth<D>(addQuarter<D>(x[9], x[11]));
  out(Index<2>{}, addScaled(p, r, e));
  out(Index<10>{}, addScaled(p, -r, e));
  const X q = subQuarter<D>(x[8], x[10]), f = turnEighth<D>(subQuarter<D>(x[9], x[11]));
  out(Index<6>{}, addScaledQuarter<D>(q, r, f));
  out(Index<14>{}, addScaledQuarter<D>(q, -r, f));
  const X g = turnEighth<D>(x[14]);
  finish(Index<3>{}, addScaledQuarter<D>(x[12], r, g), addScaledQuarter<D>(x[12], -r, g), x[13] + x[15], x[13] - x[15]);
}

template <Direction D, int R, class In, class Out>
OVKS_INLINE void butterfly(In in, Out out) {
  if constexpr (R == 2) transform2<D>(in, out);
  else if constexpr (R == 4) transform4<D>(in, out);
  else if constexpr (R == 8) transform8<D>(in, out);
  else transform16<D>(in, out);
}

}  // namespace ovks::fft
