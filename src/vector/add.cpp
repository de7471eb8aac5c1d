// SPDX-License-Identifier: MIT
// Sums, differences and magnitudes.
#include "core/elementwise.hpp"
#include "core/exact.hpp"
#include "core/export.hpp"
#include "ovks/vector.h"

namespace {

using namespace ovks;

struct Add {
  template <class D, class A, class B>
  OVKS_INLINE static auto apply(A a, B b) {
    const auto x = convert<Real<D>>(a), y = convert<Real<D>>(b);
    if constexpr (isInteger<D>) return ExactSum<decltype(x + y)>{x, y};
    else return x + y;
  }
};

// The second operand less the first.
struct Sub {
  template <class D, class A, class B>
  OVKS_INLINE static auto apply(A a, B b) {
    const auto x = convert<Real<D>>(a), y = convert<Real<D>>(b);
    if constexpr (isInteger<D>) return ExactDifference<decltype(y - x)>{y, x};
    else return y - x;
  }
};

struct Abs {
  template <class D, class V>
  OVKS_INLINE static V apply(V v) {
    using T = Lane<V>;
    if constexpr (std::is_integral_v<T>) {
      return v < 0 ? bits<V>(Unsigned<V>{} - bits<Unsigned<V>>(v)) : v;
    } else {
      using I = Vec<std::conditional_t<sizeof(T) == 4, int32_t, int64_t>, lanes<V>>;
      return bits<V>(bits<I>(v) & broadcast<I>(std::numeric_limits<Lane<I>>::max()));
    }
  }
};

}  // namespace

OVKS_EXPORT(ovksAbs_16s, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_16s_I, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_32f, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_32f_I, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_32s, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_32s_I, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_64f, elementwise<Abs>);
OVKS_EXPORT(ovksAbs_64f_I, elementwise<Abs>);

OVKS_EXPORT(ovksAdd_16s, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16s32f, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16s32s_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16s_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16s_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16sc_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16sc_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16u, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16u_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_16u_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32f, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32f_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32fc, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32fc_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32s_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32sc_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32sc_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_32u, elementwise<Add>);
OVKS_EXPORT(ovksAdd_64f, elementwise<Add>);
OVKS_EXPORT(ovksAdd_64f_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_64fc, elementwise<Add>);
OVKS_EXPORT(ovksAdd_64fc_I, elementwise<Add>);
OVKS_EXPORT(ovksAdd_64s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_8u16u, elementwise<Add>);
OVKS_EXPORT(ovksAdd_8u_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAdd_8u_Sfs, elementwise<Add>);

OVKS_EXPORT(ovksAddC_16s_I, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16s_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16sc_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16sc_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16u_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_16u_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32f, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32f_I, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32fc, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32fc_I, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32s_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32sc_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_32sc_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64f, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64f_I, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64fc, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64fc_I, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64s_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_64u_Sfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_8u_ISfs, elementwise<Add>);
OVKS_EXPORT(ovksAddC_8u_Sfs, elementwise<Add>);

OVKS_EXPORT(ovksSub_16s, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16s32f, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16s_I, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16s_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16s_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16sc_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16sc_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16u_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_16u_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32f, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32f_I, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32fc, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32fc_I, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32s_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32s_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32sc_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_32sc_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_64f, elementwise<Sub>);
OVKS_EXPORT(ovksSub_64f_I, elementwise<Sub>);
OVKS_EXPORT(ovksSub_64fc, elementwise<Sub>);
OVKS_EXPORT(ovksSub_64fc_I, elementwise<Sub>);
OVKS_EXPORT(ovksSub_8u_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSub_8u_Sfs, elementwise<Sub>);

OVKS_EXPORT(ovksSubC_16s_I, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16s_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16s_Sfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16sc_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16sc_Sfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16u_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_16u_Sfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32f, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32f_I, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32fc, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32fc_I, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32s_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32s_Sfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32sc_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_32sc_Sfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_64f, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_64f_I, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_64fc, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_64fc_I, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_8u_ISfs, elementwise<Flip<Sub>>);
OVKS_EXPORT(ovksSubC_8u_Sfs, elementwise<Flip<Sub>>);

OVKS_EXPORT(ovksSubCRev_16s_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_16s_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_16sc_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_16sc_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_16u_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_16u_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32f, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32f_I, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32fc, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32fc_I, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32s_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32s_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32sc_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_32sc_Sfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_64f, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_64f_I, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_64fc, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_64fc_I, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_8u_ISfs, elementwise<Sub>);
OVKS_EXPORT(ovksSubCRev_8u_Sfs, elementwise<Sub>);
