// SPDX-License-Identifier: MIT
// Quotients of vectors that tell whether they met a zero divisor: divisor first, as the library's functions take them.
#pragma once

#include "core/complex.hpp"
#include "core/element.hpp"
#include "core/float_to_integer.hpp"

namespace ovks {

template <class V>
OVKS_INLINE bool any(V mask) {
  if constexpr (sizeof(V) == 64) {
    return _mm512_test_epi64_mask(bits<__m512i>(mask), bits<__m512i>(mask)) != 0;
  } else if constexpr (sizeof(V) == 32) {
    return !_mm256_testz_si256(bits<__m256i>(mask), bits<__m256i>(mask));
  } else {
    return !_mm_testz_si128(bits<__m128i>(mask), bits<__m128i>(mask));
  }
}

// All ones in the lanes of zeros; of complex data, in both lanes of elements whose parts are both zero.
template <class D, class V>
OVKS_INLINE auto zeros(V v) {
  const auto zero = v == V{};
  if constexpr (isComplex<D>) return zero & swapParts(zero);
  else return zero;
}

// Whether any element is 0: a compare that stays in mask registers, where there are some.
template <class D, class V>
OVKS_INLINE bool hasZeros(V v) {
  if constexpr (isComplex<D> || sizeof(V) < 64) return any(zeros<D>(v));
  else if constexpr (sizeof(Lane<V>) == 4) return _mm512_cmp_ps_mask(v, V{}, _CMP_EQ_OQ) != 0;
  else return _mm512_cmp_pd_mask(v, V{}, _CMP_EQ_OQ) != 0;
}

// c / a as c conj(a) / |a|^2.
template <class V>
struct ComplexQuotient {
  V numerator, denominator;

  OVKS_INLINE ComplexQuotient(V a, V c) {
    const V cross = dupImag(a) * swapParts(c), squares = a * a;
    numerator = fma(dupReal(a), c, cross * repeat<V>(Complex64f{1, -1}));
    denominator = squares + swapParts(squares);
  }
};

// The quotient of integers in floating-point lanes wide enough for its one rounding: a quotient that is not a tie keeps
// more distance from one than the division's error, since its denominator is small. F is the lanes' type.
template <class D, class F, RoundMode mode>
class IntegerQuotient {
 public:
  using Work = std::conditional_t<isComplex<D>, Complex64f, F>;
  using V = Vec<F>;

  explicit IntegerQuotient(int scaleFactor)
      : scaled_(scaleFactor < -30    ? -kFar
                : scaleFactor > kFar ? kFar
                                     : scaleFactor) {}

  template <class A, class B>
  OVKS_INLINE auto operator()(A divisor, B dividend) {
    const V a = convert<F>(divisor), c = convert<F>(dividend);
    const auto zero = zeros<D>(a);
    zeros_ |= zero;
    V quotient;
    if constexpr (isComplex<D>) {
      const ComplexQuotient<V> q(a, c);
      quotient = scaled_(zero ? c : q.numerator) / q.denominator;
    } else {
      quotient = scaled_(c) / a;
    }
    return toInteger<Real<D>, mode>(quotient);
  }

  bool metZero() const { return any(zeros_); }

 private:
  static constexpr int kFar = 100;  // rounds every quotient to 0, or saturates it

  NormalPowerOfTwo<V> scaled_;
  decltype(V{} == V{}) zeros_{};
};

// Floating-point quotients, patched where the divisor is zero.
template <class D>
class FloatQuotient {
 public:
  using Work = std::conditional_t<isComplex<D>, Complex64f, D>;
  using V = Elements<D, kVectorBytes / sizeof(Work)>;

  OVKS_INLINE V operator()(V a, V c) {
    if (!hasZeros<D>(a)) [[likely]]
      return quotient(a, c);
    const auto zero = zeros<D>(a);
    zeros_ |= zero;
    return zero ? patched(c) : quotient(zero ? broadcast<V>(1) : a, c);
  }

  bool metZero() const { return any(zeros_); }

 private:
  OVKS_INLINE static V quotient(V a, V c) {
    if constexpr (!isComplex<D>) {
      return c / a;
    } else if constexpr (sizeof(Lane<V>) == 4) {
      using W = Vec<double, lanes<V>>;
      return __builtin_convertvector(complexQuotient(__builtin_convertvector(a, W), __builtin_convertvector(c, W)), V);
    } else {
      const V scale = unitScale(a);
      return complexQuotient(a * scale, c) * scale;
    }
  }

  template <class W>
  OVKS_INLINE static W complexQuotient(W a, W c) {
    const ComplexQuotient<W> q(a, c);
    return q.numerator / q.denominator;
  }

  // The power of two that brings the larger part to [1, 2), so that squares neither overflow nor vanish.
  OVKS_INLINE static V unitScale(V v) {
    using I = Vec<int64_t, lanes<V>>;
    const I magnitude = bits<I>(v) & broadcast<I>(0x7ff0000000000000), other = swapParts(magnitude);
    const I largest = magnitude > other ? magnitude : other;
    const I inverse = broadcast<I>(int64_t{2046} << 52) - largest, least = broadcast<I>(int64_t{1} << 52);
    return bits<V>(inverse < least ? least : inverse);
  }

  OVKS_INLINE static V patched(V c) {
    using I = decltype(c == c);
    constexpr bool single = sizeof(Lane<V>) == 4;
    const I infinity = broadcast<I>(static_cast<Lane<I>>(single ? 0x7f800000 : 0x7ff0000000000000));
    const I nan = broadcast<I>(static_cast<Lane<I>>(single ? 0x7fbfffff : 0x7ff7ffffffffffff));
    const I sign = broadcast<I>(std::numeric_limits<Lane<I>>::min());
    const I ordinary = (c < V{}) | (c > V{});
    return bits<V>(ordinary ? (bits<I>(c) & sign) | infinity : nan);
  }

  decltype(V{} == V{}) zeros_{};
};

}  // namespace ovks
