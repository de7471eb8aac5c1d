// SPDX-License-Identifier: MIT
// Dot products.
#include "core/check.hpp"
#include "core/complex.hpp"
#include "core/export.hpp"
#include "ovks/stats.h"
#include "stats/sum.hpp"
#include "stats/wide_sum.hpp"

namespace {

using namespace ovks;

// Floating point, the second source real or complex, the first real.
template <class A, class B>
struct RealDot {
  using W = std::conditional_t<isComplex<B>, Complex64f, double>;
  static constexpr int kElements = kTaken<W>, kChains = kWidenedChains<Real<A>, 2>;
  using V = Elements<W, kElements>;
  V sum{};

  OVKS_INLINE void add(Elements<A, kElements> a, Elements<B, kElements> b) {
    if constexpr (isComplex<B>) sum = fma(convert<double>(duplicate<decltype(b)>(a)), convert<double>(b), sum);
    else sum = fma(convert<double>(a), convert<double>(b), sum);
  }
  OVKS_INLINE void merge(const RealDot& o) { sum += o.sum; }
  OVKS_INLINE Parts<double> parts() const { return sumOfLanes<B>(sum); }
};

// Floating point, both complex: products of parts with like parts, and with the other ones, in parts of W.
template <class T, class W>
struct ComplexDot {
  static constexpr int kElements = kTaken<W>, kChains = kAvx512 ? 8 : 4;
  using V = Elements<W, kElements>;
  V like{}, other{};

  OVKS_INLINE void add(Elements<T, kElements> a, Elements<T, kElements> b) {
    const V x = inRegister(convert<Real<W>>(a)), y = inRegister(convert<Real<W>>(b));
    like = fma(x, y, like);
    other = fma(x, swapParts(y), other);
  }
  OVKS_INLINE void merge(const ComplexDot& o) {
    like += o.like;
    other += o.other;
  }
  OVKS_INLINE Parts<double> parts() const {
    const auto p = evenAndOdd(like, other);
    const auto dot = foldLanes(fmaSubAdd(p.first, broadcast<V>(1), p.second), kPlus);
    return {double{dot[0]}, double{dot[1]}};
  }
};

// In single precision so far that the rounding error stays below what the result's own may be.
struct ShortRunsDot : ComplexDot<Complex32f, Complex32f> {
  static constexpr std::ptrdiff_t kBlock = 512;
};

// 16-bit integers, products of neighbours added at once.
template <class A, class B>
struct ShortDot {
  static constexpr int kElements = kVectorBytes / int{sizeof(B)}, kChains = 4;
  using V = Elements<B, kElements>;
  using W = WideVec<V>;
  static constexpr std::ptrdiff_t kBlock = WideSum<W>::kSteps * kElements;
  WideSum<W> re, im;

  OVKS_INLINE void add(Elements<A, kElements> a, V b) {
    if constexpr (isComplex<A>) {
      re.add(ExactComplexProduct<V>{a, b}.real());
      im.add(detail::multiplyNeighbours(a, swapParts(b)));
    } else if constexpr (isComplex<B>) {
      const W wide = convert<int32_t>(a);
      re.add(detail::multiplyNeighbours(bits<V>(wide & broadcast<W>(0xffff)), b));
      im.add(detail::multiplyNeighbours(bits<V>(wide << 16), b));
    } else {
      re.add(detail::multiplyNeighbours(a, b));
    }
  }
  OVKS_INLINE void merge(const ShortDot& o) {
    re.merge(o.re);
    if constexpr (isComplex<B>) im.merge(o.im);
  }
  OVKS_INLINE Parts<int64_t> parts() const { return {re.total(), isComplex<B> ? im.total() : 0}; }
};

// Products of up to 32 bits each way.
template <class A>
struct LongDot {
  static constexpr int kElements = kVectorBytes / 4, kChains = 4;
  using V = Vec<int32_t, kElements>;
  LongProducts<V> products;

  OVKS_INLINE void add(Vec<A, kElements> a, V b) { products.add(convert<int32_t>(a), b); }
  OVKS_INLINE void merge(const LongDot& o) { products.merge(o.products); }
  OVKS_INLINE Parts<__int128> parts() const { return {products.total(), 0}; }
};

template <class A, class B>
auto dotAccumulator() {
  if constexpr (std::is_same_v<B, int32_t>) return LongDot<A>();
  else if constexpr (isInteger<B>) return ShortDot<A, B>();
  else if constexpr (isComplex<A>) return ComplexDot<A, Complex64f>();
  else return RealDot<A, B>();
}

template <class A, class B, class D>
Status dot(const A* pSrc1, const B* pSrc2, int len, D* pDp) {
  if (const Status s = check(len, pSrc1, pSrc2, pDp)) return s;
  *pDp = settle<D>(total<decltype(dotAccumulator<A, B>())>(len, pSrc1, pSrc2), [](auto v) { return v; });
  return StatusOk;
}

// What overflows on the way may still have a finite sum in double precision.
Status dotComplexFloats(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, Complex32f* pDp) {
  if (const Status s = check(len, pSrc1, pSrc2, pDp)) return s;
  const Parts<double> sum = total<ShortRunsDot>(len, pSrc1, pSrc2);
  if (sum.re - sum.re != 0 || sum.im - sum.im != 0) return dot(pSrc1, pSrc2, len, pDp);
  *pDp = settle<Complex32f>(sum, [](double v) { return v; });
  return StatusOk;
}

template <class A, class B, class D>
Status dot(const A* pSrc1, const B* pSrc2, int len, D* pDp, int scaleFactor) {
  if (const Status s = check(len, pSrc1, pSrc2, pDp)) return s;
  const auto sum = total<decltype(dotAccumulator<A, B>())>(len, pSrc1, pSrc2);
  *pDp = scaled<D>(sum.re, scaleFactor);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksDotProd_16s16sc64sc, dot);
OVKS_EXPORT(ovksDotProd_16s32f, dot);
OVKS_EXPORT(ovksDotProd_16s32s32s_Sfs, dot);
OVKS_EXPORT(ovksDotProd_16s32s_Sfs, dot);
OVKS_EXPORT(ovksDotProd_16s64s, dot);
OVKS_EXPORT(ovksDotProd_16sc64sc, dot);
OVKS_EXPORT(ovksDotProd_32f, dot);
OVKS_EXPORT(ovksDotProd_32f32fc, dot);
OVKS_EXPORT(ovksDotProd_32f32fc64fc, dot);
OVKS_EXPORT(ovksDotProd_32f64f, dot);
OVKS_EXPORT(ovksDotProd_32fc, dotComplexFloats);
OVKS_EXPORT(ovksDotProd_32fc64fc, dot);
OVKS_EXPORT(ovksDotProd_32s_Sfs, dot);
OVKS_EXPORT(ovksDotProd_64f, dot);
OVKS_EXPORT(ovksDotProd_64f64fc, dot);
OVKS_EXPORT(ovksDotProd_64fc, dot);
