/* SPDX-License-Identifier: MIT */
/** @file
 *  Reductions of a vector, or of a pair of vectors, to one value: sums, means, deviations, norms, dot products.
 *
 *  Unless a group says otherwise:
 *  - Vectors hold @p len elements at any address; the result is one element, or two, of the type that ends the name.
 *  - Single-precision elements are accumulated in double precision and the total is rounded once. Where a member takes
 *    a @p hint, AlgHintFast adds in single precision in blocks of 8192 elements, whose totals are added in double
 *    precision; every other value means the accurate path.
 *  - Elements are added in an order of the library's own, which depends on @p len alone. NaN and infinities propagate.
 *  - Integer totals are exact at any length. Members with @p scaleFactor, any value, multiply the result by
 *    2^-scaleFactor, round to nearest, ties to even, and saturate to the result's range; 0 stays 0 at every factor.
 *  - Statuses, in the order of checking: StatusNullPtr for a null pointer, StatusBadSize for len <= 0; then StatusOk.
 *    Nothing is written on an error. */
#ifndef OVKS_STATS_H
#define OVKS_STATS_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Sum
 *  sum of pSrc[n]; complex members by parts. @{ */
Status ovksSum_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pSum, int scaleFactor);
Status ovksSum_16s_Sfs(const int16_t* pSrc, int len, int16_t* pSum, int scaleFactor);
Status ovksSum_16sc32sc_Sfs(const Complex16s* pSrc, int len, Complex32s* pSum, int scaleFactor);
Status ovksSum_16sc_Sfs(const Complex16s* pSrc, int len, Complex16s* pSum, int scaleFactor);
Status ovksSum_32f(const float* pSrc, int len, float* pSum, AlgHint hint);
Status ovksSum_32fc(const Complex32f* pSrc, int len, Complex32f* pSum, AlgHint hint);
Status ovksSum_32s_Sfs(const int32_t* pSrc, int len, int32_t* pSum, int scaleFactor);
Status ovksSum_64f(const double* pSrc, int len, double* pSum);
Status ovksSum_64fc(const Complex64f* pSrc, int len, Complex64f* pSum);
/** @} */

/** @name Mean
 *  sum of pSrc[n] / len; complex members by parts. `32f` and `32fc` divide the sum as their Sum member rounds it. @{ */
Status ovksMean_16s_Sfs(const int16_t* pSrc, int len, int16_t* pMean, int scaleFactor);
Status ovksMean_16sc_Sfs(const Complex16s* pSrc, int len, Complex16s* pMean, int scaleFactor);
Status ovksMean_32f(const float* pSrc, int len, float* pMean, AlgHint hint);
Status ovksMean_32fc(const Complex32f* pSrc, int len, Complex32f* pMean, AlgHint hint);
Status ovksMean_32s_Sfs(const int32_t* pSrc, int len, int32_t* pMean, int scaleFactor);
Status ovksMean_64f(const double* pSrc, int len, double* pMean);
Status ovksMean_64fc(const Complex64f* pSrc, int len, Complex64f* pMean);
/** @} */

/** @name StdDev
 *  Sample standard deviation: sqrt(sum of (pSrc[n] - mean)^2 / (len - 1)), len >= 2; a len of 1 gives StatusBadSize.
 *
 *  `32f` sums x and x^2 as Sum does and takes the root of (len sum x^2 - (sum x)^2) / (len (len - 1)), its last
 *  division and root in single precision: elements whose mean is large against their deviation lose digits, but the
 *  variance is never below 0. `64f` works on differences from elements of its own, block by block, and loses none.
 *  Integer members are exact up to the last division. Equal integers and equal `64f` give exactly 0. @{ */
Status ovksStdDev_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pStdDev, int scaleFactor);
Status ovksStdDev_16s_Sfs(const int16_t* pSrc, int len, int16_t* pStdDev, int scaleFactor);
Status ovksStdDev_32f(const float* pSrc, int len, float* pStdDev, AlgHint hint);
Status ovksStdDev_64f(const double* pSrc, int len, double* pStdDev);
/** @} */

/** @name MeanStdDev
 *  Mean and sample standard deviation in one pass, as Mean and StdDev give them; len >= 2. @{ */
Status ovksMeanStdDev_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pMean, int32_t* pStdDev, int scaleFactor);
Status ovksMeanStdDev_16s_Sfs(const int16_t* pSrc, int len, int16_t* pMean, int16_t* pStdDev, int scaleFactor);
Status ovksMeanStdDev_32f(const float* pSrc, int len, float* pMean, float* pStdDev, AlgHint hint);
Status ovksMeanStdDev_64f(const double* pSrc, int len, double* pMean, double* pStdDev);
/** @} */

/** @name Norm_Inf
 *  max |pSrc[n]|; complex elements count by their modulus. A NaN anywhere gives NaN. @{ */
Status ovksNorm_Inf_16s32f(const int16_t* pSrc, int len, float* pNorm);
Status ovksNorm_Inf_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pNorm, int scaleFactor);
Status ovksNorm_Inf_32f(const float* pSrc, int len, float* pNorm);
Status ovksNorm_Inf_32fc32f(const Complex32f* pSrc, int len, float* pNorm);
Status ovksNorm_Inf_64f(const double* pSrc, int len, double* pNorm);
Status ovksNorm_Inf_64fc64f(const Complex64f* pSrc, int len, double* pNorm);
/** @} */

/** @name Norm_L1
 *  sum of |pSrc[n]|; complex elements count by their modulus. @{ */
Status ovksNorm_L1_16s32f(const int16_t* pSrc, int len, float* pNorm);
Status ovksNorm_L1_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pNorm, int scaleFactor);
Status ovksNorm_L1_16s64s_Sfs(const int16_t* pSrc, int len, int64_t* pNorm, int scaleFactor);
Status ovksNorm_L1_32f(const float* pSrc, int len, float* pNorm);
Status ovksNorm_L1_32fc64f(const Complex32f* pSrc, int len, double* pNorm);
Status ovksNorm_L1_64f(const double* pSrc, int len, double* pNorm);
Status ovksNorm_L1_64fc64f(const Complex64f* pSrc, int len, double* pNorm);
/** @} */

/** @name Norm_L2
 *  sqrt(sum of |pSrc[n]|^2). @{ */
Status ovksNorm_L2_16s32f(const int16_t* pSrc, int len, float* pNorm);
Status ovksNorm_L2_16s32s_Sfs(const int16_t* pSrc, int len, int32_t* pNorm, int scaleFactor);
Status ovksNorm_L2_32f(const float* pSrc, int len, float* pNorm);
Status ovksNorm_L2_32fc64f(const Complex32f* pSrc, int len, double* pNorm);
Status ovksNorm_L2_64f(const double* pSrc, int len, double* pNorm);
Status ovksNorm_L2_64fc64f(const Complex64f* pSrc, int len, double* pNorm);
/** @} */

/** @name Norm_L2Sqr
 *  sum of pSrc[n]^2. @{ */
Status ovksNorm_L2Sqr_16s64s_Sfs(const int16_t* pSrc, int len, int64_t* pNorm, int scaleFactor);
/** @} */

/** @name NormDiff_Inf
 *  max |pSrc1[n] - pSrc2[n]|. A NaN anywhere gives NaN. @{ */
Status ovksNormDiff_Inf_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, int len, float* pNorm);
Status ovksNormDiff_Inf_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int32_t* pNorm,
                                   int scaleFactor);
Status ovksNormDiff_Inf_32f(const float* pSrc1, const float* pSrc2, int len, float* pNorm);
Status ovksNormDiff_Inf_32fc32f(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, float* pNorm);
Status ovksNormDiff_Inf_64f(const double* pSrc1, const double* pSrc2, int len, double* pNorm);
Status ovksNormDiff_Inf_64fc64f(const Complex64f* pSrc1, const Complex64f* pSrc2, int len, double* pNorm);
/** @} */

/** @name NormDiff_L1
 *  sum of |pSrc1[n] - pSrc2[n]|. Differences are taken in the accumulator's type. @{ */
Status ovksNormDiff_L1_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, int len, float* pNorm);
Status ovksNormDiff_L1_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int32_t* pNorm, int scaleFactor);
Status ovksNormDiff_L1_16s64s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int64_t* pNorm, int scaleFactor);
Status ovksNormDiff_L1_32f(const float* pSrc1, const float* pSrc2, int len, float* pNorm);
Status ovksNormDiff_L1_32fc64f(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, double* pNorm);
Status ovksNormDiff_L1_64f(const double* pSrc1, const double* pSrc2, int len, double* pNorm);
Status ovksNormDiff_L1_64fc64f(const Complex64f* pSrc1, const Complex64f* pSrc2, int len, double* pNorm);
/** @} */

/** @name NormDiff_L2
 *  sqrt(sum of |pSrc1[n] - pSrc2[n]|^2). Differences are taken in the accumulator's type. @{ */
Status ovksNormDiff_L2_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, int len, float* pNorm);
Status ovksNormDiff_L2_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int32_t* pNorm, int scaleFactor);
Status ovksNormDiff_L2_32f(const float* pSrc1, const float* pSrc2, int len, float* pNorm);
Status ovksNormDiff_L2_32fc64f(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, double* pNorm);
Status ovksNormDiff_L2_64f(const double* pSrc1, const double* pSrc2, int len, double* pNorm);
Status ovksNormDiff_L2_64fc64f(const Complex64f* pSrc1, const Complex64f* pSrc2, int len, double* pNorm);
/** @} */

/** @name NormDiff_L2Sqr
 *  sum of (pSrc1[n] - pSrc2[n])^2. @{ */
Status ovksNormDiff_L2Sqr_16s64s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int64_t* pNorm,
                                     int scaleFactor);
/** @} */

/** @name DotProd
 *  sum of pSrc1[n] pSrc2[n]. No operand is conjugated; a real operand scales the complex one. Floating-point data are
 *  summed in double precision, but 32fc with a result of 32fc in single precision for runs of 512 elements. @{ */
Status ovksDotProd_16s16sc64sc(const int16_t* pSrc1, const Complex16s* pSrc2, int len, Complex64s* pDp);
Status ovksDotProd_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, int len, float* pDp);
Status ovksDotProd_16s32s32s_Sfs(const int16_t* pSrc1, const int32_t* pSrc2, int len, int32_t* pDp, int scaleFactor);
Status ovksDotProd_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int len, int32_t* pDp, int scaleFactor);
Status ovksDotProd_16s64s(const int16_t* pSrc1, const int16_t* pSrc2, int len, int64_t* pDp);
Status ovksDotProd_16sc64sc(const Complex16s* pSrc1, const Complex16s* pSrc2, int len, Complex64s* pDp);
Status ovksDotProd_32f(const float* pSrc1, const float* pSrc2, int len, float* pDp);
Status ovksDotProd_32f32fc(const float* pSrc1, const Complex32f* pSrc2, int len, Complex32f* pDp);
Status ovksDotProd_32f32fc64fc(const float* pSrc1, const Complex32f* pSrc2, int len, Complex64f* pDp);
Status ovksDotProd_32f64f(const float* pSrc1, const float* pSrc2, int len, double* pDp);
Status ovksDotProd_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, Complex32f* pDp);
Status ovksDotProd_32fc64fc(const Complex32f* pSrc1, const Complex32f* pSrc2, int len, Complex64f* pDp);
Status ovksDotProd_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int len, int32_t* pDp, int scaleFactor);
Status ovksDotProd_64f(const double* pSrc1, const double* pSrc2, int len, double* pDp);
Status ovksDotProd_64f64fc(const double* pSrc1, const Complex64f* pSrc2, int len, Complex64f* pDp);
Status ovksDotProd_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, int len, Complex64f* pDp);
/** @} */

/** @name SumLn
 *  sum of ln(pSrc[n]). A zero gives -infinity, an element below zero NaN. The error is at most len 2^-52 before the
 *  result is rounded (see docs/numerics.md). @{ */
Status ovksSumLn_16s32f(const int16_t* pSrc, int len, float* pSum);
Status ovksSumLn_32f(const float* pSrc, int len, float* pSum);
Status ovksSumLn_32f64f(const float* pSrc, int len, double* pSum);
Status ovksSumLn_64f(const double* pSrc, int len, double* pSum);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
