// SPDX-License-Identifier: MIT
// Quotients. All of them need a look at their divisors, so they have entries of their own.
#include "core/check.hpp"
#include "core/export.hpp"
#include "core/loops.hpp"
#include "core/wide_integer.hpp"
#include "ovks/vector.h"
#include "vector/quotient.hpp"

namespace {

using namespace ovks;

// How a quotient's operands come: both as sources, or one of them as a constant.
constexpr auto kSources = [](auto& q) { return [&q](auto a, auto c) { return q(a, c); }; };

template <class C>
auto constantDivisor(C val) {
  return [val](auto& q) {
    using V = typename std::remove_reference_t<decltype(q)>::V;
    return [&q, val](auto c) { return q(repeat<V>(val), c); };
  };
}

template <class C>
auto constantDividend(C val) {
  return [val](auto& q) {
    using V = typename std::remove_reference_t<decltype(q)>::V;
    return [&q, val](auto a) { return q(a, repeat<V>(val)); };
  };
}

// Lanes behind the last element hold ones, which are no zero divisors.
template <class F>
struct Padded : F {
  static constexpr int kPadding = 1;
};

template <class Q, class Form, class D, class... S>
OVKS_INLINE Status divideBy(Q q, Form form, D* pDst, int len, const S*... src) {
  mapInline<typename Q::Work>(Padded<decltype(form(q))>{form(q)}, pDst, len, src...);
  return q.metZero() ? StatusDivByZero : StatusOk;
}

template <RoundMode mode, class Form, class D, class... S>
Status divide(Form form, D* pDst, int len, int scaleFactor, const S*... src) {
  if constexpr (isInteger<D>) {
    const DefaultFloatControl control;
    if constexpr (!isComplex<D> && ((sizeof(S) <= 2) && ...)) {
      // Results of 16 bits leave a float enough digits unless they were scaled up.
      if (scaleFactor >= -6) return divideBy(IntegerQuotient<D, float, mode>(scaleFactor), form, pDst, len, src...);
    }
    return divideBy(IntegerQuotient<D, double, mode>(scaleFactor), form, pDst, len, src...);
  } else {
    return divideBy(FloatQuotient<D>(), form, pDst, len, src...);
  }
}

// Where doubles run out of digits: results of 32 bits, scaled up.
Status divideExactly(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pDst, int len, int scaleFactor) {
  Status status = StatusOk;
  for (int i = 0; i < len; ++i) {
    const auto divisor = load<int32_t>(pSrc1 + i), dividend = load<int32_t>(pSrc2 + i);
    int64_t quotient = dividend == 0 ? 0 : dividend > 0 ? INT64_MAX : INT64_MIN;
    if (divisor == 0) status = StatusDivByZero;
    else quotient = scaledQuotient(dividend, divisor, scaleFactor);
    quotient = quotient > INT32_MAX ? INT32_MAX : quotient < INT32_MIN ? INT32_MIN : quotient;
    store(pDst + i, static_cast<int32_t>(quotient));
  }
  return status;
}

template <class A, class B, class D>
Status div(const A* pSrc1, const B* pSrc2, D* pDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  if constexpr (std::is_same_v<A, int32_t>) {
    if (scaleFactor < -19) return divideExactly(pSrc1, pSrc2, pDst, len, scaleFactor);
  }
  return divide<RoundNear>(kSources, pDst, len, scaleFactor, pSrc1, pSrc2);
}

template <class D>
Status div(const D* pSrc, D* pSrcDst, int len, int scaleFactor) {
  return div(pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}

template <class D>
Status div(const D* pSrc1, const D* pSrc2, D* pDst, int len) {
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  return divide<RoundNear>(kSources, pDst, len, 0, pSrc1, pSrc2);
}

template <class D>
Status div(const D* pSrc, D* pSrcDst, int len) {
  return div(pSrc, static_cast<const D*>(pSrcDst), pSrcDst, len);
}

template <class D>
Status divRound(const D* pSrc1, const D* pSrc2, D* pDst, int len, RoundMode rndMode, int scaleFactor) {
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  // No signed 16-bit quotient survives a factor of 16, not even -32768 that ties would take away from zero.
  if (std::is_same_v<D, int16_t> && scaleFactor >= 16) scaleFactor = INT32_MAX;
  switch (rndMode) {
    case RoundZero: return divide<RoundZero>(kSources, pDst, len, scaleFactor, pSrc1, pSrc2);
    case RoundNear: return divide<RoundNear>(kSources, pDst, len, scaleFactor, pSrc1, pSrc2);
    case RoundHalfAway: return divide<RoundHalfAway>(kSources, pDst, len, scaleFactor, pSrc1, pSrc2);
    default: return StatusBadRoundMode;
  }
}

template <class D>
Status divRound(const D* pSrc, D* pSrcDst, int len, RoundMode rndMode, int scaleFactor) {
  return divRound(pSrc, pSrcDst, pSrcDst, len, rndMode, scaleFactor);
}

template <class D>
bool isZero(D val) {
  if constexpr (isComplex<D>) return val.re == 0 && val.im == 0;
  else return val == 0;
}

template <class D>
Status divC(const D* pSrc, D val, D* pDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  if (isZero(val)) return StatusDivByZeroErr;
  return divide<RoundNear>(constantDivisor(val), pDst, len, scaleFactor, pSrc);
}

Status divC(int64_t val, int64_t* pSrcDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrcDst)) return s;
  if (val == 0) return StatusDivByZeroErr;
  for (int i = 0; i < len; ++i) store(pSrcDst + i, scaledQuotient(load<int64_t>(pSrcDst + i), val, scaleFactor));
  return StatusOk;
}

template <class D>
Status divC(D val, D* pSrcDst, int len, int scaleFactor) {
  return divC(pSrcDst, val, pSrcDst, len, scaleFactor);
}

template <class D>
Status divC(const D* pSrc, D val, D* pDst, int len) {
  return divC(pSrc, val, pDst, len, 0);
}

template <class D>
Status divC(D val, D* pSrcDst, int len) {
  return divC(pSrcDst, val, pSrcDst, len, 0);
}

template <class D>
Status divCRev(const D* pSrc, D val, D* pDst, int len) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  return divide<RoundNear>(constantDividend(val), pDst, len, 0, pSrc);
}

template <class D>
Status divCRev(D val, D* pSrcDst, int len) {
  return divCRev(pSrcDst, val, pSrcDst, len);
}

}  // namespace

OVKS_EXPORT(ovksDiv_16s_ISfs, div);
OVKS_EXPORT(ovksDiv_16s_Sfs, div);
OVKS_EXPORT(ovksDiv_16sc_ISfs, div);
OVKS_EXPORT(ovksDiv_16sc_Sfs, div);
OVKS_EXPORT(ovksDiv_16u_ISfs, div);
OVKS_EXPORT(ovksDiv_16u_Sfs, div);
OVKS_EXPORT(ovksDiv_32f, div);
OVKS_EXPORT(ovksDiv_32f_I, div);
OVKS_EXPORT(ovksDiv_32fc, div);
OVKS_EXPORT(ovksDiv_32fc_I, div);
OVKS_EXPORT(ovksDiv_32s16s_Sfs, div);
OVKS_EXPORT(ovksDiv_32s_ISfs, div);
OVKS_EXPORT(ovksDiv_32s_Sfs, div);
OVKS_EXPORT(ovksDiv_64f, div);
OVKS_EXPORT(ovksDiv_64f_I, div);
OVKS_EXPORT(ovksDiv_64fc, div);
OVKS_EXPORT(ovksDiv_64fc_I, div);
OVKS_EXPORT(ovksDiv_8u_ISfs, div);
OVKS_EXPORT(ovksDiv_8u_Sfs, div);
OVKS_EXPORT(ovksDiv_Round_16s_ISfs, divRound);
OVKS_EXPORT(ovksDiv_Round_16s_Sfs, divRound);
OVKS_EXPORT(ovksDiv_Round_16u_ISfs, divRound);
OVKS_EXPORT(ovksDiv_Round_16u_Sfs, divRound);
OVKS_EXPORT(ovksDiv_Round_8u_ISfs, divRound);
OVKS_EXPORT(ovksDiv_Round_8u_Sfs, divRound);

OVKS_EXPORT(ovksDivC_16s_ISfs, divC);
OVKS_EXPORT(ovksDivC_16s_Sfs, divC);
OVKS_EXPORT(ovksDivC_16sc_ISfs, divC);
OVKS_EXPORT(ovksDivC_16sc_Sfs, divC);
OVKS_EXPORT(ovksDivC_16u_ISfs, divC);
OVKS_EXPORT(ovksDivC_16u_Sfs, divC);
OVKS_EXPORT(ovksDivC_32f, divC);
OVKS_EXPORT(ovksDivC_32f_I, divC);
OVKS_EXPORT(ovksDivC_32fc, divC);
OVKS_EXPORT(ovksDivC_32fc_I, divC);
OVKS_EXPORT(ovksDivC_64f, divC);
OVKS_EXPORT(ovksDivC_64f_I, divC);
OVKS_EXPORT(ovksDivC_64fc, divC);
OVKS_EXPORT(ovksDivC_64fc_I, divC);
OVKS_EXPORT(ovksDivC_64s_ISfs, divC);
OVKS_EXPORT(ovksDivC_8u_ISfs, divC);
OVKS_EXPORT(ovksDivC_8u_Sfs, divC);

OVKS_EXPORT(ovksDivCRev_16u, divCRev);
OVKS_EXPORT(ovksDivCRev_16u_I, divCRev);
OVKS_EXPORT(ovksDivCRev_32f, divCRev);
OVKS_EXPORT(ovksDivCRev_32f_I, divCRev);
