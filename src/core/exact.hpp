// SPDX-License-Identifier: MIT
// Exact results of integer operations on vectors, to be saturated or scaled into the destination's lanes.
//
// Each class stands for a result that may be wider than its operands' lanes and has
//   saturated()      the result clamped to the destination's type
//   scaledDown(s)    the result times 2^-s, rounded once to nearest with ties to even, then clamped, 1 <= s <=
//   kMaxShift kMaxShift        beyond it every result is 0
// Where one factor is cheaper or needs another formula, kQuickShift names it, scaledDown takes it as Quick<s>, and the
// general form need not serve it.
#pragma once

#include "core/element.hpp"
#include "core/pack.hpp"
#include "core/rounding.hpp"

namespace ovks {

template <int s>
using Quick = std::integral_constant<int, s>;

namespace detail {

template <class V>
OVKS_INLINE V saturatedSum(V a, V b) {
  using T = Lane<V>;
  using R = RawVec<sizeof(V)>;
  if constexpr (sizeof(V) == 64 && sizeof(T) <= 2) {
    if constexpr (std::is_same_v<T, uint8_t>) return bits<V>(_mm512_adds_epu8(bits<R>(a), bits<R>(b)));
    if constexpr (std::is_same_v<T, uint16_t>) return bits<V>(_mm512_adds_epu16(bits<R>(a), bits<R>(b)));
    if constexpr (std::is_same_v<T, int16_t>) return bits<V>(_mm512_adds_epi16(bits<R>(a), bits<R>(b)));
  } else if constexpr (sizeof(V) == 32 && sizeof(T) <= 2) {
    if constexpr (std::is_same_v<T, uint8_t>) return bits<V>(_mm256_adds_epu8(bits<R>(a), bits<R>(b)));
    if constexpr (std::is_same_v<T, uint16_t>) return bits<V>(_mm256_adds_epu16(bits<R>(a), bits<R>(b)));
    if constexpr (std::is_same_v<T, int16_t>) return bits<V>(_mm256_adds_epi16(bits<R>(a), bits<R>(b)));
  } else if constexpr (std::is_unsigned_v<T>) {
    const V r = a + b;
    return r < a ? ~V{} : r;
  } else {
    const V r = bits<V>(bits<Unsigned<V>>(a) + bits<Unsigned<V>>(b));
    const V limit = (a >> (8 * sizeof(T) - 1)) ^ broadcast<V>(std::numeric_limits<T>::max());
    return ((a ^ r) & (b ^ r)) < 0 ? limit : r;
  }
}

template <class V>
OVKS_INLINE V saturatedDifference(V a, V b) {
  using T = Lane<V>;
  using R = RawVec<sizeof(V)>;
  if constexpr (std::is_unsigned_v<T>) {
    return larger(a, b) - b;
  } else if constexpr (sizeof(V) == 64 && sizeof(T) == 2) {
    return bits<V>(_mm512_subs_epi16(bits<R>(a), bits<R>(b)));
  } else if constexpr (sizeof(V) == 32 && sizeof(T) == 2) {
    return bits<V>(_mm256_subs_epi16(bits<R>(a), bits<R>(b)));
  } else {
    const V r = bits<V>(bits<Unsigned<V>>(a) - bits<Unsigned<V>>(b));
    const V limit = (a >> (8 * sizeof(T) - 1)) ^ broadcast<V>(std::numeric_limits<T>::max());
    return ((a ^ b) & (a ^ r)) < 0 ? limit : r;
  }
}

// Bytes have no shifts of their own: f runs on their double-width lanes.
template <class V, class F>
OVKS_INLINE V throughWide(V a, F f) {
  const auto w = widen(a);
  return narrow<V>({f(w.first), f(w.second)});
}

}  // namespace detail

// a + b. The lanes hold the sum's half and its lowest bit, so that no wider lanes are needed.
template <class V>
struct ExactSum {
  static constexpr int kBits = 8 * sizeof(Lane<V>);
  static constexpr int kMaxShift = kBits + std::is_unsigned_v<Lane<V>>;
  static constexpr int kQuickShift = 1;
  V a, b;

  OVKS_INLINE V saturated() const { return detail::saturatedSum(a, b); }

  OVKS_INLINE V scaledDown(Quick<1>) const {
    if constexpr (sizeof(Lane<V>) == 1) return throughWide(1);
    else return half() + (half() & odd());
  }

  OVKS_INLINE V scaledDown(int s) const {
    if constexpr (sizeof(Lane<V>) == 1) {
      return throughWide(s);
    } else {
      if constexpr (std::is_unsigned_v<Lane<V>>) {
        if (s > kBits) return half() + odd() > broadcast<V>(Lane<V>{1} << (kBits - 1)) ? broadcast<V>(1) : V{};
      }
      return roundHalves(half(), odd(), s - 1);
    }
  }

 private:
  OVKS_INLINE V half() const { return (a & b) + ((a ^ b) >> 1); }
  OVKS_INLINE V odd() const { return (a ^ b) & broadcast<V>(1); }

  OVKS_INLINE V throughWide(int s) const {
    const auto x = widen(a), y = widen(b);
    using W = Signed<decltype(x.first)>;  // nine bits are small
    const auto scaled = [s](auto sum) { return bits<decltype(sum)>(roundShiftSmall(bits<W>(sum), s)); };
    return narrow<V>({scaled(x.first + y.first), scaled(x.second + y.second)});
  }
};

// a - b.
template <class V>
struct ExactDifference {
  static constexpr int kMaxShift = 8 * sizeof(Lane<V>);
  static constexpr int kQuickShift = 1;
  V a, b;

  OVKS_INLINE V saturated() const { return detail::saturatedDifference(a, b); }

  OVKS_INLINE V scaledDown(Quick<1>) const {
    if constexpr (sizeof(Lane<V>) == 1) {
      return throughWide(1);
    } else {
      // The greatest half stays: rounded up, it would leave the lanes.
      const V greatest = broadcast<V>(std::numeric_limits<Lane<V>>::max());
      return half() + (half() == greatest ? V{} : half() & odd());
    }
  }

  OVKS_INLINE V scaledDown(int s) const {
    if constexpr (sizeof(Lane<V>) == 1) return throughWide(s);
    else return roundHalves(half(), odd(), s - 1);
  }

 private:
  // a - b = a + ~b + 1. Unsigned differences below 0 end as 0, so they may be 0 at once.
  OVKS_INLINE V half() const {
    if constexpr (std::is_unsigned_v<Lane<V>>) return saturated() >> 1;
    else return (a | ~b) - ((a ^ ~b) >> 1);
  }
  OVKS_INLINE V odd() const {
    if constexpr (std::is_unsigned_v<Lane<V>>) return saturated() & broadcast<V>(1);
    else return (a ^ b) & broadcast<V>(1);
  }

  OVKS_INLINE V throughWide(int s) const {
    return detail::throughWide(saturated(), [s](auto d) {
      using W = Signed<decltype(d)>;
      return bits<decltype(d)>(roundShiftSmall(bits<W>(d), s));
    });
  }
};

// A value that fits its signed lanes, which may be wider than the destination's.
template <class D, class W>
struct ExactValue {
  static constexpr int kMaxShift = 8 * sizeof(Lane<W>) - 1;
  using V = Vec<D, lanes<W>>;
  W value;

  OVKS_INLINE V saturated() const { return converted(value); }
  OVKS_INLINE V scaledDown(int s) const { return converted(roundShift(value, s)); }

 private:
  OVKS_INLINE static V converted(W v) {
    if constexpr (sizeof(D) < sizeof(Lane<W>)) v = clamp<D>(v);
    return __builtin_convertvector(v, V);
  }
};

}  // namespace ovks
