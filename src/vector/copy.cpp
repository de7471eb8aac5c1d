// SPDX-License-Identifier: MIT
// Copies and fills.
#include "core/elementwise.hpp"
#include "core/export.hpp"
#include "ovks/vector.h"

namespace {

using namespace ovks;

struct Copy {
  template <class D, class V>
  OVKS_INLINE static V apply(V v) {
    return v;
  }
};

template <class D>
Status set(D val, D* pDst, int len) {
  if (const Status s = check(len, pDst)) return s;
  return map([val] { return repeat<Elements<D, detail::step<D>>>(val); }, pDst, len);
}

template <class D>
Status zero(D* pDst, int len) {
  return set(D{}, pDst, len);
}

}  // namespace

OVKS_EXPORT(ovksCopy_8u, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_16s, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_32s, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_32f, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_64s, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_64f, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_16sc, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_32sc, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_32fc, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_64sc, elementwise<Copy>);
OVKS_EXPORT(ovksCopy_64fc, elementwise<Copy>);
OVKS_EXPORT(ovksZero_8u, zero);
OVKS_EXPORT(ovksZero_16s, zero);
OVKS_EXPORT(ovksZero_32s, zero);
OVKS_EXPORT(ovksZero_32f, zero);
OVKS_EXPORT(ovksZero_64s, zero);
OVKS_EXPORT(ovksZero_64f, zero);
OVKS_EXPORT(ovksZero_16sc, zero);
OVKS_EXPORT(ovksZero_32sc, zero);
OVKS_EXPORT(ovksZero_32fc, zero);
OVKS_EXPORT(ovksZero_64sc, zero);
OVKS_EXPORT(ovksZero_64fc, zero);
OVKS_EXPORT(ovksSet_8u, set);
OVKS_EXPORT(ovksSet_16s, set);
OVKS_EXPORT(ovksSet_32s, set);
OVKS_EXPORT(ovksSet_32f, set);
OVKS_EXPORT(ovksSet_64s, set);
OVKS_EXPORT(ovksSet_64f, set);
OVKS_EXPORT(ovksSet_16sc, set);
OVKS_EXPORT(ovksSet_32sc, set);
OVKS_EXPORT(ovksSet_32fc, set);
OVKS_EXPORT(ovksSet_64sc, set);
OVKS_EXPORT(ovksSet_64fc, set);
