// SPDX-License-Identifier: MIT
// Exact products of integer vectors, real and complex; see exact.hpp for what the classes offer.
#pragma once

#include "core/complex.hpp"
#include "core/exact.hpp"

namespace ovks {

namespace detail {

// The high halves of 16-bit products.
template <class V>
OVKS_INLINE V multiplyHigh(V a, V b) {
  using R = RawVec<sizeof(V)>;
  const R x = bits<R>(a), y = bits<R>(b);
  if constexpr (sizeof(V) == 64) {
    if constexpr (std::is_signed_v<Lane<V>>) return bits<V>(_mm512_mulhi_epi16(x, y));
    else return bits<V>(_mm512_mulhi_epu16(x, y));
  } else {
    if constexpr (std::is_signed_v<Lane<V>>) return bits<V>(_mm256_mulhi_epi16(x, y));
    else return bits<V>(_mm256_mulhi_epu16(x, y));
  }
}

// 64-bit products of the even 32-bit lanes.
template <class V>
OVKS_INLINE WideVec<V> multiplyEven(V a, V b) {
  using R = RawVec<sizeof(V)>;
  if constexpr (sizeof(V) == 64) return bits<WideVec<V>>(_mm512_mul_epi32(bits<R>(a), bits<R>(b)));
  else return bits<WideVec<V>>(_mm256_mul_epi32(bits<R>(a), bits<R>(b)));
}

// The odd 32-bit lanes in the even places, over lanes of any value.
template <class V>
OVKS_INLINE V oddDown(V v) {
  return bits<V>(bits<Unsigned<WideVec<V>>>(v) >> 32);
}

// All products at twice the width, in the order of widen.
template <class V>
OVKS_INLINE Pair<WideVec<V>> multiply(V a, V b) {
  using W = WideVec<V>;
  if constexpr (sizeof(Lane<V>) == 1) {
    const auto x = widen(a), y = widen(b);
    return {x.first * y.first, x.second * y.second};
  } else if constexpr (sizeof(Lane<V>) == 2) {
    const V low = bits<V>(bits<Unsigned<V>>(a) * bits<Unsigned<V>>(b)), high = multiplyHigh(a, b);
    return {bits<W>(unpackLow(low, high)), bits<W>(unpackHigh(low, high))};
  } else {
    return {multiplyEven(a, b), multiplyEven(oddDown(a), oddDown(b))};
  }
}

// Sums of the products of 16-bit neighbours, modulo 2^32.
template <class V>
OVKS_INLINE WideVec<V> multiplyNeighbours(V a, V b) {
  using R = RawVec<sizeof(V)>;
  if constexpr (sizeof(V) == 64) return bits<WideVec<V>>(_mm512_madd_epi16(bits<R>(a), bits<R>(b)));
  else return bits<WideVec<V>>(_mm256_madd_epi16(bits<R>(a), bits<R>(b)));
}

}  // namespace detail

// a * b.
template <class V>
struct ExactProduct {
  using T = Lane<V>;
  using W = WideVec<V>;
  static constexpr int kBits = 16 * sizeof(T);
  static constexpr int kMaxShift = std::is_signed_v<T> ? kBits - 1 : kBits;
  // Half of the product's width less the signs: fixed-point fractions.
  static constexpr int kQuickShift = std::is_same_v<T, uint8_t> ? 8 : std::is_same_v<T, int16_t> ? 15 : 0;
  V a, b;

  OVKS_INLINE V saturated() const { return narrow<V>(detail::multiply(a, b)); }

  OVKS_INLINE V scaledDown(int s) const {
    const auto p = detail::multiply(a, b);
    return narrow<V>({shifted(p.first, s), shifted(p.second, s)});
  }

  // The processor's rounding multiply takes ties up: those that it made odd step back. Of all products only
  // (-32768)^2 overflows.
  OVKS_INLINE V scaledDown(Quick<15>) const {
    using R = RawVec<sizeof(V)>;
    V r;
    if constexpr (sizeof(V) == 64) r = bits<V>(_mm512_mulhrs_epi16(bits<R>(a), bits<R>(b)));
    else r = bits<V>(_mm256_mulhrs_epi16(bits<R>(a), bits<R>(b)));
    const V fraction = bits<V>(bits<Unsigned<V>>(a) * bits<Unsigned<V>>(b)) << 1;
    const V lowest = broadcast<V>(std::numeric_limits<T>::min());
    r = fraction == lowest ? r & broadcast<V>(~1) : r;
    return r == lowest ? ~lowest : r;
  }

  // Even and odd bytes in 16-bit lanes of their own. Ties go up and then back to even, all bytes at once.
  OVKS_INLINE V scaledDown(Quick<8>) const {
    using U = Vec<uint16_t, sizeof(V) / 2>;
    const U high = broadcast<U>(0xff00), low = broadcast<U>(0x00ff), half = broadcast<U>(0x0080);
    const U even = (bits<U>(a) & low) * (bits<U>(b) & low) + half;
    const U odd = detail::multiplyHigh(bits<U>(a) & high, bits<U>(b) & high) + half;
    const V r = bits<V>((even >> 8) | (odd & high)), fraction = bits<V>((even & low) | (odd << 8));
    return fraction == V{} ? r & broadcast<V>(0xfe) : r;
  }

 private:
  OVKS_INLINE static W shifted(W p, int s) {
    if constexpr (std::is_signed_v<T>) {
      return roundShiftSmall(p, s);
    } else if (s == kBits) {
      return p > broadcast<W>(Lane<W>{1} << (kBits - 1)) ? broadcast<W>(1) : W{};
    } else {
      return roundShift(p, s);
    }
  }
};

// A signed value at twice the width of V's lanes, in the order of widen.
template <class V>
struct ExactPair {
  static constexpr int kMaxShift = 16 * sizeof(Lane<V>) - 1;
  Pair<WideVec<V>> p;

  OVKS_INLINE V saturated() const { return narrow<V>(p); }
  OVKS_INLINE V scaledDown(int s) const { return narrow<V>({roundShift(p.first, s), roundShift(p.second, s)}); }
};

// c + a * b.
template <class V>
OVKS_INLINE Pair<WideVec<V>> multiplySum(V a, V b, V c) {
  const auto p = detail::multiply(a, b), q = widen(c);
  return {p.first + q.first, p.second + q.second};
}

// Unsigned times signed, of 16 bits.
template <class V>
OVKS_INLINE Pair<WideVec<V>> multiplyMixed(Unsigned<V> a, V b) {
  using U = Unsigned<V>;
  using W = WideVec<V>;
  const U low = a * bits<U>(b), high = detail::multiplyHigh(a, bits<U>(b)) - (a & bits<U>(b >> 15));
  return {bits<W>(unpackLow(low, high)), bits<W>(unpackHigh(low, high))};
}

// The complex product of (re, im) lanes. Its parts need one value more than double-width lanes hold: an imaginary part
// of 2^(bits-1), from four factors of the smallest value. One less rounds and saturates alike.
template <class V>
struct ExactComplexProduct {
  using T = Lane<V>;
  using W = WideVec<V>;
  static constexpr int kMaxShift = 16 * sizeof(T) - 1;
  V a, b;

  OVKS_INLINE V saturated() const { return joined(real(), imaginary()); }
  OVKS_INLINE V scaledDown(int s) const { return joined(roundShift(real(), s), roundShift(imaginary(), s)); }

  OVKS_INLINE W real() const {
    if constexpr (sizeof(T) == 2) {
      // a.re b.re + a.im ~b.im + a.im = a.re b.re - a.im b.im
      const V notImag = bits<V>(bits<W>(b) ^ broadcast<W>(static_cast<Lane<W>>(0xffff0000)));
      return wrappedSum(detail::multiplyNeighbours(a, notImag), bits<W>(a) >> 16);
    } else {
      return detail::multiplyEven(a, b) - detail::multiplyEven(detail::oddDown(a), detail::oddDown(b));
    }
  }

 private:
  OVKS_INLINE W imaginary() const {
    W sum;
    if constexpr (sizeof(T) == 2) {
      sum = detail::multiplyNeighbours(a, swapParts(b));
    } else {
      sum = wrappedSum(detail::multiplyEven(a, detail::oddDown(b)), detail::multiplyEven(detail::oddDown(a), b));
    }
    const W lowest = broadcast<W>(std::numeric_limits<Lane<W>>::min());
    return sum == lowest ? ~lowest : sum;
  }

  OVKS_INLINE static W wrappedSum(W x, W y) { return bits<W>(bits<Unsigned<W>>(x) + bits<Unsigned<W>>(y)); }

  OVKS_INLINE static V joined(W re, W im) {
    if constexpr (sizeof(T) == 2) {
      return shuffle(packSigned<V>(re, im), [](int i) { return i / 8 * 8 + i % 8 / 2 + i % 2 * 4; });
    } else {
      return interleave<V>(clamp<T>(re), clamp<T>(im));
    }
  }
};

}  // namespace ovks
