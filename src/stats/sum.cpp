// SPDX-License-Identifier: MIT
// Sums and means.
#include "stats/sum.hpp"

#include "core/check.hpp"
#include "core/export.hpp"
#include "ovks/stats.h"

namespace {

using namespace ovks;

// The last argument is a hint for floating-point elements, a scale factor for integers.
template <class T, class D>
Status sum(const T* pSrc, int len, D* pSum, int hintOrScale) {
  if (const Status s = check(len, pSrc, pSum)) return s;
  const auto total = sumOf(pSrc, len, hintOrScale);
  if constexpr (isInteger<T>) {
    *pSum = settle<D>(total, [=](int64_t v) { return scaled<Real<D>>(v, hintOrScale); });
  } else {
    *pSum = settle<D>(total, [](double v) { return v; });
  }
  return StatusOk;
}

template <class T>
Status sum(const T* pSrc, int len, T* pSum) {
  return sum(pSrc, len, pSum, AlgHintNone);
}

template <class T>
Status mean(const T* pSrc, int len, T* pMean, int hintOrScale) {
  if (const Status s = check(len, pSrc, pMean)) return s;
  const auto total = sumOf(pSrc, len, hintOrScale);
  if constexpr (isInteger<T>) {
    *pMean = settle<T>(total, [=](int64_t v) { return scaledMean<Real<T>>(v, len, hintOrScale); });
  } else {
    *pMean = settle<T>(total, [=](double v) { return double{static_cast<Real<T>>(v)} / len; });
  }
  return StatusOk;
}

template <class T>
Status mean(const T* pSrc, int len, T* pMean) {
  return mean(pSrc, len, pMean, AlgHintNone);
}

}  // namespace

OVKS_EXPORT(ovksSum_16s32s_Sfs, sum);
OVKS_EXPORT(ovksSum_16s_Sfs, sum);
OVKS_EXPORT(ovksSum_16sc32sc_Sfs, sum);
OVKS_EXPORT(ovksSum_16sc_Sfs, sum);
OVKS_EXPORT(ovksSum_32f, sum);
OVKS_EXPORT(ovksSum_32fc, sum);
OVKS_EXPORT(ovksSum_32s_Sfs, sum);
OVKS_EXPORT(ovksSum_64f, sum);
OVKS_EXPORT(ovksSum_64fc, sum);
OVKS_EXPORT(ovksMean_16s_Sfs, mean);
OVKS_EXPORT(ovksMean_16sc_Sfs, mean);
OVKS_EXPORT(ovksMean_32f, mean);
OVKS_EXPORT(ovksMean_32fc, mean);
OVKS_EXPORT(ovksMean_32s_Sfs, mean);
OVKS_EXPORT(ovksMean_64f, mean);
OVKS_EXPORT(ovksMean_64fc, mean);
