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
    constexpr unsigned kDefault = 0x1f80, kFlags = 0x3f;
    if ((callers_ & ~kFlags) != kDefault) _mm_setcsr(kDefault);
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

namespace detail {

// The nearest 32-bit integers, ties to even, under the default control.
template <class V>
OVKS_INLINE auto nearest(V v) {
  using R = Vec<int32_t, lanes<V>>;
  if constexpr (sizeof(V) == 64) {
    if constexpr (lanes<V> == 16) return bits<R>(_mm512_cvtps_epi32(v));
    else return bits<R>(_mm512_cvtpd_epi32(v));
  } else {
    if constexpr (lanes<V> == 8) return bits<R>(_mm256_cvtps_epi32(v));
    else return bits<R>(_mm256_cvtpd_epi32(v));
  }
}

// Whether narrowing by the processor's packs saturates what falls below T's range.
template <class T>
inline constexpr bool narrowsBelow = !kAvx512 && sizeof(T) <= 2;

template <class T, class W>
OVKS_INLINE auto narrowed(W v) {
  if constexpr (narrowsBelow<T>) {
    const __m128i first = ovks::low<__m128i>(v);
    __m128i second = first;
    if constexpr (sizeof(W) == 32) second = _mm256_extracti128_si256(bits<__m256i>(v), 1);
    __m128i words = std::is_same_v<T, uint16_t> ? _mm_packus_epi32(first, second) : _mm_packs_epi32(first, second);
    if constexpr (sizeof(T) == 1)
      words = std::is_signed_v<T> ? _mm_packs_epi16(words, words) : _mm_packus_epi16(words, words);
    return ovks::low<Vec<T, lanes<W>>>(words);
  } else {
    return convert<T>(v);
  }
}

}  // namespace detail

// Rounded to T under the default control, saturated; NaN gives 0.
template <class T, RoundMode mode, class V>
OVKS_INLINE auto toInteger(V v) {
  using L = std::numeric_limits<T>;
  using F = Lane<V>;
  v = v == v ? v : V{};
  if constexpr (sizeof(T) == 8) {
    constexpr F kEnd = 0x1p63;
    using R = Vec<T, lanes<V>>;
    v = roundTo<mode>(v);
    const R inside = v < broadcast<V>(-kEnd) ? broadcast<R>(L::min()) : __builtin_convertvector(v, R);
    return v >= broadcast<V>(kEnd) ? broadcast<R>(L::max()) : inside;
  } else {
    const V max = broadcast<V>(static_cast<F>(L::max())), min = broadcast<V>(static_cast<F>(L::min()));
    v = smaller(max, v);
    if constexpr (!detail::narrowsBelow<T>) v = larger(min, v);
    if constexpr (mode == RoundNear) return detail::narrowed<T>(detail::nearest(v));
    else return detail::narrowed<T>(convert<int32_t>(roundTo<mode>(v)));
  }
}

// v * 2^-scaleFactor, where that power is a normal number.
template <class V>
class NormalPowerOfTwo {
 public:
  using F = Lane<V>;
  static constexpr int kMax = std::numeric_limits<F>::max_exponent - 2;  // either way

  explicit OVKS_INLINE NormalPowerOfTwo(int scaleFactor) {
    if constexpr (sizeof(F) == 4) factor_ = bits<float>((127 - scaleFactor) << 23);
    else factor_ = bits<double>(int64_t{1023 - scaleFactor} << 52);
  }
  OVKS_INLINE V operator()(V v) const { return v * broadcast<V>(factor_); }

 private:
  F factor_;
};

// For factors up to what makes every value vanish or saturate.
template <class V>
class PowerOfTwo {
 public:
  explicit PowerOfTwo(int scaleFactor) : PowerOfTwo(clamped(scaleFactor, kFar), clamped(scaleFactor, Normal::kMax)) {}

  OVKS_INLINE V operator()(V v) const {
    v = scaled_(v);
    if (rest_ != 0) [[unlikely]]
      v = Normal(rest_)(v);
    return v;
  }

 private:
  using Normal = NormalPowerOfTwo<V>;
  static constexpr int kFar = sizeof(Lane<V>) == 4 ? 250 : 2040;

  PowerOfTwo(int whole, int normal) : scaled_(normal), rest_(whole - normal) {}
  static int clamped(int x, int limit) { return x < -limit ? -limit : x > limit ? limit : x; }

  Normal scaled_;
  int rest_;
};

}  // namespace ovks
