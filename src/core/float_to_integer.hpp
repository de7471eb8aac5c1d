// SPDX-License-Identifier: MIT
// Floating-point vectors scaled, rounded and saturated to integers.
#pragma once

#include <limits>

#include "core/element.hpp"
#include "core/pack.hpp"

namespace ovks {

// The default floating-point control (to nearest, no traps, denormals kept) for as long as it lives. The caller's
// control and flags come back untouched.
class DefaultFloatControl {
 public:
  DefaultFloatControl() : callers_(_mm_getcsr()) {
    _mm_setcsr(0x1f80);
    asm volatile("" ::: "memory");
  }
  ~DefaultFloatControl() {
    asm volatile("" ::: "memory");
    _mm_setcsr(callers_);
  }
  DefaultFloatControl(const DefaultFloatControl&) = delete;
  DefaultFloatControl& operator=(const DefaultFloatControl&) = delete;

 private:
  unsigned callers_;
};

namespace detail {

// The processor's rounding to an integral value, by its immediate.
template <int immediate, class V>
OVKS_INLINE V roundImmediate(V v) {
  constexpr bool single = sizeof(Lane<V>) == 4;
  if constexpr (sizeof(V) == 64) {
    if constexpr (single) return _mm512_roundscale_ps(v, immediate);
    else return _mm512_roundscale_pd(v, immediate);
  } else {
    if constexpr (single) return _mm256_round_ps(v, immediate);
    else return _mm256_round_pd(v, immediate);
  }
}

}  // namespace detail

template <RoundMode mode, class V>
OVKS_INLINE V roundTo(V v) {
  if constexpr (mode == RoundNear) return detail::roundImmediate<_MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC>(v);
  const V whole = detail::roundImmediate<_MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC>(v);
  if constexpr (mode == RoundZero) return whole;
  const V rest = v - whole;  // exact
  const V up = rest >= broadcast<V>(0.5f) ? broadcast<V>(1) : V{};
  return whole + (rest <= broadcast<V>(-0.5f) ? broadcast<V>(-1) : up);
}

// An integral value as T, saturated; NaN gives 0.
template <class T, class V>
OVKS_INLINE auto toInteger(V v) {
  using L = std::numeric_limits<T>;
  using F = Lane<V>;
  if constexpr (sizeof(T) == 8) {
    constexpr F kEnd = 0x1p63;
    v = v == v ? v : V{};
    using R = Vec<T, lanes<V>>;
    const R inside = v < broadcast<V>(-kEnd) ? broadcast<R>(L::min()) : __builtin_convertvector(v, R);
    return v >= broadcast<V>(kEnd) ? broadcast<R>(L::max()) : inside;
  } else {
    const V max = broadcast<V>(static_cast<F>(L::max())), min = broadcast<V>(static_cast<F>(L::min()));
    v = v == v ? v : V{};
    v = v > max ? max : v;
    v = v < min ? min : v;
    return convert<T>(convert<int32_t>(v));
  }
}

// 2^-scaleFactor in two factors, neither of which leaves the normal range; as much as makes every float vanish or
// saturate.
template <class V>
class PowerOfTwo {
 public:
  using F = Lane<V>;

  explicit PowerOfTwo(int scaleFactor) {
    constexpr int kLimit = sizeof(F) == 4 ? 250 : 2040;
    const int s = scaleFactor < -kLimit ? -kLimit : scaleFactor > kLimit ? kLimit : scaleFactor;
    first_ = broadcast<V>(power(-s / 2));
    second_ = broadcast<V>(power(-s - -s / 2));
  }

  OVKS_INLINE V operator()(V v) const { return v * first_ * second_; }

 private:
  static F power(int exponent) {
    if constexpr (sizeof(F) == 4) return bits<float>((exponent + 127) << 23);
    else return bits<double>(int64_t{exponent + 1023} << 52);
  }

  V first_, second_;
};

}  // namespace ovks
