// SPDX-License-Identifier: MIT
// Conversions between integers and floating point.
#include "core/elementwise.hpp"
#include "core/export.hpp"
#include "core/float_to_integer.hpp"
#include "ovks/vector.h"

namespace {

using namespace ovks;

struct Convert {
  template <class D, class V>
  OVKS_INLINE static auto apply(V v) {
    return convert<D>(v);
  }
};

template <RoundMode mode, class S, class D>
Status convertRounded(const S* pSrc, D* pDst, int len, int scaleFactor) {
  using V = Vec<S, detail::step<S, D>>;
  const DefaultFloatControl control;
  const auto f = [scaled = PowerOfTwo<V>(scaleFactor)](auto v) { return toInteger<D, mode>(scaled(v)); };
  return map(f, pDst, len, pSrc);
}

template <class S, class D>
Status convertScaled(const S* pSrc, D* pDst, int len, RoundMode rndMode, int scaleFactor) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  if (rndMode == RoundZero) return convertRounded<RoundZero>(pSrc, pDst, len, scaleFactor);
  if (rndMode == RoundNear) return convertRounded<RoundNear>(pSrc, pDst, len, scaleFactor);
  return convertRounded<RoundHalfAway>(pSrc, pDst, len, scaleFactor);
}

}  // namespace

OVKS_EXPORT(ovksConvert_16s32f, elementwise<Convert>);
OVKS_EXPORT(ovksConvert_32f16s_Sfs, convertScaled);
