/* SPDX-License-Identifier: MIT */
/** @file
 *  Fast Fourier transforms of N = 2^order points and the packed spectra of real signals.
 *
 *      forward  X[k] = s sum x[n] exp(-2 pi i n k / N)        inverse  x[n] = s sum X[k] exp(+2 pi i n k / N)
 *
 *  The factors s are those of the specification's FFTFlag. A transform takes three calls:
 *  1. ovksFFTGetSize_*() tells the bytes of three areas,
 *  2. ovksFFTInit_*() makes a specification in the first of them, using the second as temporary room,
 *  3. any number of ovksFFTFwd_*() and ovksFFTInv_*() calls take it, each with the third as its work buffer.
 *
 *  Areas need no alignment. A specification stays where it was made, for as long as its area lives; transforms only
 *  read it, so that threads may share it, each with a work buffer of its own. Nothing needs to be released.
 *
 *  A destination may be the source; `_I` forms are just that, and give the same bits. Arrays may stand at any address;
 *  64-byte boundaries are fastest, and large arrays that begin in different lines of a page: see ovkMalloc(). */
#ifndef OVKS_TRANSFORM_H
#define OVKS_TRANSFORM_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct FFTSpec_C_32fc FFTSpec_C_32fc; /**< complex, interleaved, order 0 to 28 */
typedef struct FFTSpec_C_32f FFTSpec_C_32f;   /**< complex, real and imaginary parts in two arrays, order 0 to 28 */
typedef struct FFTSpec_R_32f FFTSpec_R_32f;   /**< real signal, packed spectrum, order 0 to 29 */
typedef struct FFTSpec_C_64fc FFTSpec_C_64fc; /**< complex, interleaved, order 0 to 27 */
typedef struct FFTSpec_C_64f FFTSpec_C_64f;   /**< complex, real and imaginary parts in two arrays, order 0 to 27 */
typedef struct FFTSpec_R_64f FFTSpec_R_64f;   /**< real signal, packed spectrum, order 0 to 28 */

/** @name FFTGetSize
 *  Tells how many bytes the areas need: @p pSpecSize for the specification, @p pSpecBufferSize for the temporary room of
 *  Init, @p pBufferSize for the work buffer of each transform call. 0 means that none is needed. The hint changes
 *  nothing.
 *
 *  Statuses, in this order: StatusBadFFTOrder for an order outside 0 to 30, StatusNullPtr, StatusBadFFTFlag,
 *  StatusBadFFTOrder for an order above the variant's. @{ */
Status ovksFFTGetSize_C_32fc(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
Status ovksFFTGetSize_C_32f(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
Status ovksFFTGetSize_R_32f(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
Status ovksFFTGetSize_C_64fc(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
Status ovksFFTGetSize_C_64f(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
Status ovksFFTGetSize_R_64f(int order, int flag, AlgHint hint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize);
/** @} */

/** @name FFTInit
 *  Makes a specification at the first 64-byte boundary of @p pSpec and tells its address in @p ppSpec. @p pSpecBuffer
 *  may be null where its size is 0, and is free again afterwards.
 *
 *  Statuses, in this order: StatusNullPtr for @p ppSpec, StatusBadFFTOrder, StatusNullPtr for @p pSpec,
 *  StatusBadFFTFlag, StatusNullPtr for a missing @p pSpecBuffer. @p ppSpec is set on success only; what Init made with a
 *  bad flag is rejected by every transform. @{ */
Status ovksFFTInit_C_32fc(FFTSpec_C_32fc** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
Status ovksFFTInit_C_32f(FFTSpec_C_32f** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
Status ovksFFTInit_R_32f(FFTSpec_R_32f** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
Status ovksFFTInit_C_64fc(FFTSpec_C_64fc** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
Status ovksFFTInit_C_64f(FFTSpec_C_64f** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
Status ovksFFTInit_R_64f(FFTSpec_R_64f** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec,
    uint8_t* pSpecBuffer);
/** @} */

/** @name FFTFwd_CToC, FFTInv_CToC
 *  Complex transforms, the spectrum in natural order k = 0 ... N - 1.
 *
 *  Statuses of these and of the real transforms, in this order: StatusNullPtr for @p pSpec, StatusContextMismatch for
 *  a specification of another variant or one that Init did not accept, StatusNullPtr for the arrays, StatusNullPtr for
 *  a missing work buffer. Nothing is written on an error. @{ */
Status ovksFFTFwd_CToC_32fc(const Complex32f* pSrc, Complex32f* pDst, const FFTSpec_C_32fc* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_32fc_I(Complex32f* pSrcDst, const FFTSpec_C_32fc* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_32f(const float* pSrcRe, const float* pSrcIm, float* pDstRe, float* pDstIm,
    const FFTSpec_C_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_32f_I(float* pSrcDstRe, float* pSrcDstIm, const FFTSpec_C_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_32fc(const Complex32f* pSrc, Complex32f* pDst, const FFTSpec_C_32fc* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_32fc_I(Complex32f* pSrcDst, const FFTSpec_C_32fc* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_32f(const float* pSrcRe, const float* pSrcIm, float* pDstRe, float* pDstIm,
    const FFTSpec_C_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_32f_I(float* pSrcDstRe, float* pSrcDstIm, const FFTSpec_C_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_64fc(const Complex64f* pSrc, Complex64f* pDst, const FFTSpec_C_64fc* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_64fc_I(Complex64f* pSrcDst, const FFTSpec_C_64fc* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_64f(const double* pSrcRe, const double* pSrcIm, double* pDstRe, double* pDstIm,
    const FFTSpec_C_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_CToC_64f_I(double* pSrcDstRe, double* pSrcDstIm, const FFTSpec_C_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_64fc(const Complex64f* pSrc, Complex64f* pDst, const FFTSpec_C_64fc* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_64fc_I(Complex64f* pSrcDst, const FFTSpec_C_64fc* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_64f(const double* pSrcRe, const double* pSrcIm, double* pDstRe, double* pDstIm,
    const FFTSpec_C_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CToC_64f_I(double* pSrcDstRe, double* pSrcDstIm, const FFTSpec_C_64f* pSpec, uint8_t* pBuffer);
/** @} */

/** @name FFTFwd_RTo, FFTInv_ToR
 *  Transforms of N reals into a packed spectrum and back. The CCS layout takes N + 2 reals, or 2 for N = 1; the other
 *  two take N. @{ */
Status ovksFFTFwd_RToPerm_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPerm_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PermToR_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PermToR_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPack_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPack_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PackToR_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PackToR_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToCCS_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToCCS_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CCSToR_32f(const float* pSrc, float* pDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CCSToR_32f_I(float* pSrcDst, const FFTSpec_R_32f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPerm_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPerm_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PermToR_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PermToR_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPack_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToPack_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PackToR_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_PackToR_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToCCS_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTFwd_RToCCS_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CCSToR_64f(const double* pSrc, double* pDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
Status ovksFFTInv_CCSToR_64f_I(double* pSrcDst, const FFTSpec_R_64f* pSpec, uint8_t* pBuffer);
/** @} */

/** @name Conj
 *  Expands the packed spectrum of @p len reals, any length from 1 on, into all @p len points: X[len - k] = conj X[k].
 *  In place, the array has room for @p len complex elements and the packed spectrum stands at its start. Members for the
 *  Pack and Perm layouts make X[0] and X[len/2] real, those for CCS take them as they are.
 *
 *  Statuses, in this order: StatusNullPtr, StatusBadSize for len < 1. @{ */
Status ovksConjCcs_32fc(const float* pSrc, Complex32f* pDst, int len);
Status ovksConjCcs_32fc_I(Complex32f* pSrcDst, int len);
Status ovksConjPack_32fc(const float* pSrc, Complex32f* pDst, int len);
Status ovksConjPack_32fc_I(Complex32f* pSrcDst, int len);
Status ovksConjPerm_32fc(const float* pSrc, Complex32f* pDst, int len);
Status ovksConjPerm_32fc_I(Complex32f* pSrcDst, int len);
Status ovksConjCcs_64fc(const double* pSrc, Complex64f* pDst, int len);
Status ovksConjCcs_64fc_I(Complex64f* pSrcDst, int len);
Status ovksConjPack_64fc(const double* pSrc, Complex64f* pDst, int len);
Status ovksConjPack_64fc_I(Complex64f* pSrcDst, int len);
Status ovksConjPerm_64fc(const double* pSrc, Complex64f* pDst, int len);
Status ovksConjPerm_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name MulPack, MulPerm, MulPackConj
 *  Products of two packed spectra of @p len reals, point by point: pDst[k] = pSrc1[k] pSrc2[k], in place
 *  pSrcDst[k] = pSrc[k] pSrcDst[k], and for MulPackConj pSrcDst[k] = pSrc[k] conj(pSrcDst[k]). Of the four products of
 *  two complex points two are fused with the sum.
 *
 *  Statuses, in this order: StatusNullPtr, StatusBadSize for len < 1. @{ */
Status ovksMulPack_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksMulPack_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksMulPack_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksMulPack_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksMulPerm_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksMulPerm_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksMulPerm_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksMulPerm_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksMulPackConj_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksMulPackConj_64f_I(const double* pSrc, double* pSrcDst, int len);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
