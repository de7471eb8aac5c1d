// SPDX-License-Identifier: MIT
// Norms of a vector, and of the difference of two.
#include "core/check.hpp"
#include "core/export.hpp"
#include "ovks/stats.h"
#include "stats/magnitude.hpp"
#include "stats/modulus.hpp"
#include "stats/square.hpp"

namespace {

using namespace ovks;

// Sums below may have lost the digits of elements whose squares vanished.
constexpr double kLeastSquare = 0x1p-960, kLeastModulus = 0x1p-400;

// Norm kinds: of(n, src...) gives the norm of one source, or of the difference of two: an exact integer for integers,
// a double for floating point. Where kRoot says so, it is the square of the norm that is exact.
struct Inf {
  static constexpr bool kRoot = false;

  template <class T, class... S>
  OVKS_INLINE static auto of(std::ptrdiff_t n, const T* src, const S*... other) {
    if constexpr (isComplex<T>) {
      if constexpr (std::is_same_v<T, Complex32f> && sizeof...(S) == 0) {
        const float quick = fold(LargestModulus32(), n, src).value();
        if (quick >= LargestModulus32::kLeast && quick <= LargestModulus32::kGreatest) [[likely]]
          return root(double{quick});
      }
      const auto square = [&](auto scale) __attribute__((always_inline)) {
        return fold(LargestModulus<T, decltype(scale)>{scale}, n, src, other...).value();
      };
      return inRange<Real<T>>(kLeastSquare, square, root<double>);
    } else {
      return fold(LargestMagnitude<T>(), n, src, other...).value();
    }
  }
};

struct L1 {
  static constexpr bool kRoot = false;

  template <class T, class... S>
  OVKS_INLINE static auto of(std::ptrdiff_t n, const T* src, const S*... other) {
    if constexpr (isComplex<T>) {
      const auto sum = [&](auto scale) __attribute__((always_inline)) {
        return fold(SumOfModuli<T, decltype(scale)>{scale}, n, src, other...).value();
      };
      return inRange<Real<T>>(kLeastModulus, sum, [](double v) { return v; });
    } else if constexpr (isInteger<T>) {
      return total<SumOfShortMagnitudes>(n, src, other...).re;
    } else {
      if constexpr (kAvx512 && std::is_same_v<T, float> && sizeof...(S) == 0) {
        const double sum = total<SumOfShiftedMagnitudes>(n, src).re;
        if (sum < SumOfShiftedMagnitudes::kLimit) [[likely]]
          return sum;
      }
      return total<SumOfMagnitudes<T, 1 + sizeof...(S)>>(n, src, other...).re;
    }
  }
};

struct L2Sqr {
  static constexpr bool kRoot = false;

  template <class... S>
  OVKS_INLINE static int64_t of(std::ptrdiff_t n, const S*... src) {
    return total<ShortSquares<sizeof...(S)>>(n, src...).re;
  }
};

struct L2 {
  static constexpr bool kRoot = true;

  template <class T, class... S>
  OVKS_INLINE static auto of(std::ptrdiff_t n, const T* src, const S*... other) {
    if constexpr (isInteger<T>) {
      return L2Sqr::of(n, src, other...);
    } else {
      using F = Real<T>;
      const auto sum = [&](auto scale) __attribute__((always_inline)) {
        return fold(SumOfSquares<F, decltype(scale), 1 + sizeof...(S)>{scale}, n * parts<T>, reals(src),
                    reals(other)...)
            .value();
      };
      return inRange<F>(kLeastSquare, sum, root<double>);
    }
  }
};

template <class Kind, class D, class... S>
OVKS_INLINE void store(D* pNorm, int len, const S*... src) {
  const auto v = Kind::of(len, src...);
  if constexpr (Kind::kRoot && std::is_integral_v<decltype(+v)>) *pNorm = static_cast<D>(root(static_cast<double>(v)));
  else *pNorm = static_cast<D>(v);
}

template <class Kind, class D, class... S>
OVKS_INLINE void storeScaled(D* pNorm, int len, int scaleFactor, const S*... src) {
  const int64_t v = Kind::of(len, src...);
  *pNorm = Kind::kRoot ? scaledRoot<D>(v, 1, scaleFactor) : scaled<D>(v, scaleFactor);
}

template <class Kind, class T, class D>
Status norm(const T* pSrc, int len, D* pNorm) {
  if (const Status s = check(len, pSrc, pNorm)) return s;
  store<Kind>(pNorm, len, pSrc);
  return StatusOk;
}

template <class Kind, class T, class D>
Status norm(const T* pSrc, int len, D* pNorm, int scaleFactor) {
  if (const Status s = check(len, pSrc, pNorm)) return s;
  storeScaled<Kind>(pNorm, len, scaleFactor, pSrc);
  return StatusOk;
}

template <class Kind, class T, class D>
Status norm(const T* pSrc1, const T* pSrc2, int len, D* pNorm) {
  if (const Status s = check(len, pSrc1, pSrc2, pNorm)) return s;
  store<Kind>(pNorm, len, pSrc1, pSrc2);
  return StatusOk;
}

template <class Kind, class T, class D>
Status norm(const T* pSrc1, const T* pSrc2, int len, D* pNorm, int scaleFactor) {
  if (const Status s = check(len, pSrc1, pSrc2, pNorm)) return s;
  storeScaled<Kind>(pNorm, len, scaleFactor, pSrc1, pSrc2);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksNorm_Inf_16s32f, norm<Inf>);
OVKS_EXPORT(ovksNorm_Inf_16s32s_Sfs, norm<Inf>);
OVKS_EXPORT(ovksNorm_Inf_32f, norm<Inf>);
OVKS_EXPORT(ovksNorm_Inf_32fc32f, norm<Inf>);
OVKS_EXPORT(ovksNorm_Inf_64f, norm<Inf>);
OVKS_EXPORT(ovksNorm_Inf_64fc64f, norm<Inf>);
OVKS_EXPORT(ovksNorm_L1_16s32f, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_16s32s_Sfs, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_16s64s_Sfs, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_32f, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_32fc64f, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_64f, norm<L1>);
OVKS_EXPORT(ovksNorm_L1_64fc64f, norm<L1>);
OVKS_EXPORT(ovksNorm_L2_16s32f, norm<L2>);
OVKS_EXPORT(ovksNorm_L2_16s32s_Sfs, norm<L2>);
OVKS_EXPORT(ovksNorm_L2_32f, norm<L2>);
OVKS_EXPORT(ovksNorm_L2_32fc64f, norm<L2>);
OVKS_EXPORT(ovksNorm_L2_64f, norm<L2>);
OVKS_EXPORT(ovksNorm_L2_64fc64f, norm<L2>);
OVKS_EXPORT(ovksNorm_L2Sqr_16s64s_Sfs, norm<L2Sqr>);

OVKS_EXPORT(ovksNormDiff_Inf_16s32f, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_Inf_16s32s_Sfs, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_Inf_32f, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_Inf_32fc32f, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_Inf_64f, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_Inf_64fc64f, norm<Inf>);
OVKS_EXPORT(ovksNormDiff_L1_16s32f, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_16s32s_Sfs, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_16s64s_Sfs, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_32f, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_32fc64f, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_64f, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L1_64fc64f, norm<L1>);
OVKS_EXPORT(ovksNormDiff_L2_16s32f, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2_16s32s_Sfs, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2_32f, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2_32fc64f, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2_64f, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2_64fc64f, norm<L2>);
OVKS_EXPORT(ovksNormDiff_L2Sqr_16s64s_Sfs, norm<L2Sqr>);
