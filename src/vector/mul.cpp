// SPDX-License-Identifier: MIT
// Products, squares and products added to a vector.
#include "core/complex.hpp"
#include "core/elementwise.hpp"
#include "core/export.hpp"
#include "core/float_to_integer.hpp"
#include "core/product.hpp"
#include "core/wide_integer.hpp"
#include "ovks/vector.h"

namespace {

using namespace ovks;

struct Mul {
  template <class D, class A, class B>
  OVKS_INLINE static auto apply(A a, B b) {
    using T = Real<D>;
    if constexpr (isComplex<D> && lanes<A> < lanes<B>) {
      return duplicate<B>(a) * b;
    } else if constexpr (isComplex<D> && isInteger<D>) {
      return ExactComplexProduct<A>{a, b};
    } else if constexpr (isComplex<D>) {
      return complexProduct(a, b);
    } else if constexpr (!isInteger<D>) {
      return convert<T>(a) * convert<T>(b);
    } else if constexpr (sizeof(T) > sizeof(Lane<A>)) {
      const auto product = convert<T>(a) * convert<T>(b);
      return ExactValue<T, std::remove_const_t<decltype(product)>>{product};
    } else if constexpr (std::is_same_v<A, B>) {
      return ExactProduct<A>{a, b};
    } else {
      return ExactPair<B>{multiplyMixed(a, b)};
    }
  }
};

struct Sqr {
  template <class D, class V>
  OVKS_INLINE static auto apply(V v) {
    return Mul::apply<D>(v, v);
  }
};

struct AddProduct {
  static constexpr bool kAccumulates = true;

  template <class D, class A, class C>
  OVKS_INLINE static auto apply(A a, A b, C c) {
    if constexpr (isComplex<D>) {
      return complexProductSum(a, b, c);
    } else if constexpr (!isInteger<D>) {
      return fma(a, b, c);
    } else if constexpr (std::is_same_v<A, C>) {
      return ExactPair<A>{multiplySum(a, b, c)};
    } else {
      return ExactSum<C>{convert<Real<D>>(a) * convert<Real<D>>(b), c};
    }
  }
};

// Floating-point products as integers.
template <class S, class F, class D>
Status multiplyToInteger(const S* pSrc, F val, D* pDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  using V = Elements<F, detail::step<D, S, F>>;
  const DefaultFloatControl control;
  const auto f = [val, scaled = PowerOfTwo<V>(scaleFactor)](auto v) {
    return toInteger<D, RoundNear>(scaled(convert<F>(v) * broadcast<V>(val)));
  };
  return map(f, pDst, len, pSrc);
}

Status multiplyLow(const float* pSrc, float val, int16_t* pDst, int len) {
  return multiplyToInteger(pSrc, val, pDst, len, 0);
}

Status multiplyToInteger(double val, int64_t* pSrcDst, int len, int scaleFactor) {
  return multiplyToInteger(pSrcDst, val, pSrcDst, len, scaleFactor);
}

Status multiplyLong(int64_t val, int64_t* pSrcDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrcDst)) return s;
  for (int i = 0; i < len; ++i)
    store(pSrcDst + i, scaledLong(__int128{load<int64_t>(pSrcDst + i)} * val, scaleFactor));
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksMul_16s, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16s32f, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16s32s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16s_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16s_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16sc_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16sc_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16u16s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16u_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_16u_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32f, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32f32fc, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32f32fc_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32f_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32fc, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32fc_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32s_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32sc_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_32sc_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_64f, elementwise<Mul>);
OVKS_EXPORT(ovksMul_64f_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_64fc, elementwise<Mul>);
OVKS_EXPORT(ovksMul_64fc_I, elementwise<Mul>);
OVKS_EXPORT(ovksMul_8u16u, elementwise<Mul>);
OVKS_EXPORT(ovksMul_8u_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMul_8u_Sfs, elementwise<Mul>);

OVKS_EXPORT(ovksMulC_16s_I, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16s_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16sc_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16sc_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16u_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_16u_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32f, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32f16s_Sfs, multiplyToInteger);
OVKS_EXPORT(ovksMulC_32f_I, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32fc, elementwise<Flip<Mul>>);
OVKS_EXPORT(ovksMulC_32fc_I, elementwise<Flip<Mul>>);
OVKS_EXPORT(ovksMulC_32s_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32s_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32sc_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_32sc_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_64f, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_64f64s_ISfs, multiplyToInteger);
OVKS_EXPORT(ovksMulC_64f_I, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_64fc, elementwise<Flip<Mul>>);
OVKS_EXPORT(ovksMulC_64fc_I, elementwise<Flip<Mul>>);
OVKS_EXPORT(ovksMulC_64s_ISfs, multiplyLong);
OVKS_EXPORT(ovksMulC_8u_ISfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_8u_Sfs, elementwise<Mul>);
OVKS_EXPORT(ovksMulC_Low_32f16s, multiplyLow);

OVKS_EXPORT(ovksSqr_16s_ISfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_16s_Sfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_16sc_ISfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_16sc_Sfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_16u_ISfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_16u_Sfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_32f, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_32f_I, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_32fc, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_32fc_I, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_64f, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_64f_I, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_64fc, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_64fc_I, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_8u_ISfs, elementwise<Sqr>);
OVKS_EXPORT(ovksSqr_8u_Sfs, elementwise<Sqr>);

OVKS_EXPORT(ovksAddProduct_16s32s_Sfs, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_16s_Sfs, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_32f, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_32fc, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_32s_Sfs, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_64f, elementwise<AddProduct>);
OVKS_EXPORT(ovksAddProduct_64fc, elementwise<AddProduct>);

OVKS_EXPORT(ovksAddProductC_32f, elementwise<AddProduct>);
