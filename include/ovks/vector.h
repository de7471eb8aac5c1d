/* SPDX-License-Identifier: MIT */
/** @file
 *  Element-wise operations on vectors: arithmetic, data movement, conversion.
 *
 *  Unless a group says otherwise:
 *  - Vectors hold @p len elements at any address. A destination may be one of the sources, but not overlap it otherwise.
 *  - Floating-point members follow IEEE 754 in the caller's rounding mode.
 *  - An integer result is exact until it is rounded once and saturated to the destination's range. Members with
 *    @p scaleFactor, any value, multiply the exact result by 2^-scaleFactor and round to nearest, ties to even.
 *  - The `_I` forms work in place: the last source is also the destination.
 *  - Statuses, in the order of checking: StatusNullPtr for a null pointer, StatusBadSize for len <= 0; then StatusOk.
 *    Nothing is written on an error. */
#ifndef OVKS_VECTOR_H
#define OVKS_VECTOR_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Abs
 *  pDst[n] = |pSrc[n]|. The smallest integer, which has no positive counterpart, maps to itself. @{ */
Status ovksAbs_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksAbs_16s_I(int16_t* pSrcDst, int len);
Status ovksAbs_32f(const float* pSrc, float* pDst, int len);
Status ovksAbs_32f_I(float* pSrcDst, int len);
Status ovksAbs_32s(const int32_t* pSrc, int32_t* pDst, int len);
Status ovksAbs_32s_I(int32_t* pSrcDst, int len);
Status ovksAbs_64f(const double* pSrc, double* pDst, int len);
Status ovksAbs_64f_I(double* pSrcDst, int len);
/** @} */

/** @name Add
 *  pDst[n] = pSrc1[n] + pSrc2[n]; in place pSrcDst[n] = pSrcDst[n] + pSrc[n]. @{ */
Status ovksAdd_16s(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len);
Status ovksAdd_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, float* pDst, int len);
Status ovksAdd_16s32s_I(const int16_t* pSrc, int32_t* pSrcDst, int len);
Status ovksAdd_16s_I(const int16_t* pSrc, int16_t* pSrcDst, int len);
Status ovksAdd_16s_ISfs(const int16_t* pSrc, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksAdd_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksAdd_16sc_ISfs(const Complex16s* pSrc, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksAdd_16sc_Sfs(const Complex16s* pSrc1, const Complex16s* pSrc2, Complex16s* pDst, int len, int scaleFactor);
Status ovksAdd_16u(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst, int len);
Status ovksAdd_16u_ISfs(const uint16_t* pSrc, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksAdd_16u_Sfs(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst, int len, int scaleFactor);
Status ovksAdd_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksAdd_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksAdd_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, Complex32f* pDst, int len);
Status ovksAdd_32fc_I(const Complex32f* pSrc, Complex32f* pSrcDst, int len);
Status ovksAdd_32s_ISfs(const int32_t* pSrc, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksAdd_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pDst, int len, int scaleFactor);
Status ovksAdd_32sc_ISfs(const Complex32s* pSrc, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksAdd_32sc_Sfs(const Complex32s* pSrc1, const Complex32s* pSrc2, Complex32s* pDst, int len, int scaleFactor);
Status ovksAdd_32u(const uint32_t* pSrc1, const uint32_t* pSrc2, uint32_t* pDst, int len);
Status ovksAdd_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksAdd_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksAdd_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, Complex64f* pDst, int len);
Status ovksAdd_64fc_I(const Complex64f* pSrc, Complex64f* pSrcDst, int len);
Status ovksAdd_64s_Sfs(const int64_t* pSrc1, const int64_t* pSrc2, int64_t* pDst, int len, int scaleFactor);
Status ovksAdd_8u16u(const uint8_t* pSrc1, const uint8_t* pSrc2, uint16_t* pDst, int len);
Status ovksAdd_8u_ISfs(const uint8_t* pSrc, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksAdd_8u_Sfs(const uint8_t* pSrc1, const uint8_t* pSrc2, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name AddC
 *  pDst[n] = pSrc[n] + val. @{ */
Status ovksAddC_16s_I(int16_t val, int16_t* pSrcDst, int len);
Status ovksAddC_16s_ISfs(int16_t val, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksAddC_16s_Sfs(const int16_t* pSrc, int16_t val, int16_t* pDst, int len, int scaleFactor);
Status ovksAddC_16sc_ISfs(Complex16s val, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksAddC_16sc_Sfs(const Complex16s* pSrc, Complex16s val, Complex16s* pDst, int len, int scaleFactor);
Status ovksAddC_16u_ISfs(uint16_t val, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksAddC_16u_Sfs(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len, int scaleFactor);
Status ovksAddC_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksAddC_32f_I(float val, float* pSrcDst, int len);
Status ovksAddC_32fc(const Complex32f* pSrc, Complex32f val, Complex32f* pDst, int len);
Status ovksAddC_32fc_I(Complex32f val, Complex32f* pSrcDst, int len);
Status ovksAddC_32s_ISfs(int32_t val, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksAddC_32s_Sfs(const int32_t* pSrc, int32_t val, int32_t* pDst, int len, int scaleFactor);
Status ovksAddC_32sc_ISfs(Complex32s val, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksAddC_32sc_Sfs(const Complex32s* pSrc, Complex32s val, Complex32s* pDst, int len, int scaleFactor);
Status ovksAddC_64f(const double* pSrc, double val, double* pDst, int len);
Status ovksAddC_64f_I(double val, double* pSrcDst, int len);
Status ovksAddC_64fc(const Complex64f* pSrc, Complex64f val, Complex64f* pDst, int len);
Status ovksAddC_64fc_I(Complex64f val, Complex64f* pSrcDst, int len);
Status ovksAddC_64s_Sfs(const int64_t* pSrc, int64_t val, int64_t* pDst, int len, int scaleFactor);
Status ovksAddC_64u_Sfs(const uint64_t* pSrc, uint64_t val, uint64_t* pDst, int len, int scaleFactor);
Status ovksAddC_8u_ISfs(uint8_t val, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksAddC_8u_Sfs(const uint8_t* pSrc, uint8_t val, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name AddProduct
 *  pSrcDst[n] = pSrcDst[n] + pSrc1[n] * pSrc2[n]. Floating-point members fuse the product with the sum (one rounding;
 *  complex: one for each product). Scaled members scale the whole. @{ */
Status ovksAddProduct_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int32_t* pSrcDst,
                                 int len, int scaleFactor);
Status ovksAddProduct_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksAddProduct_32f(const float* pSrc1, const float* pSrc2, float* pSrcDst, int len);
Status ovksAddProduct_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, Complex32f* pSrcDst, int len);
Status ovksAddProduct_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksAddProduct_64f(const double* pSrc1, const double* pSrc2, double* pSrcDst, int len);
Status ovksAddProduct_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, Complex64f* pSrcDst, int len);
/** @} */

/** @name AddProductC
 *  pSrcDst[n] = pSrcDst[n] + pSrc[n] * val, fused. @{ */
Status ovksAddProductC_32f(const float* pSrc, float val, float* pSrcDst, int len);
/** @} */

/** @name Sub
 *  pDst[n] = pSrc2[n] - pSrc1[n], the second source minus the first; in place pSrcDst[n] = pSrcDst[n] - pSrc[n]. @{ */
Status ovksSub_16s(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len);
Status ovksSub_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, float* pDst, int len);
Status ovksSub_16s_I(const int16_t* pSrc, int16_t* pSrcDst, int len);
Status ovksSub_16s_ISfs(const int16_t* pSrc, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksSub_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksSub_16sc_ISfs(const Complex16s* pSrc, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksSub_16sc_Sfs(const Complex16s* pSrc1, const Complex16s* pSrc2, Complex16s* pDst, int len, int scaleFactor);
Status ovksSub_16u_ISfs(const uint16_t* pSrc, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksSub_16u_Sfs(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst, int len, int scaleFactor);
Status ovksSub_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksSub_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksSub_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, Complex32f* pDst, int len);
Status ovksSub_32fc_I(const Complex32f* pSrc, Complex32f* pSrcDst, int len);
Status ovksSub_32s_ISfs(const int32_t* pSrc, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksSub_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pDst, int len, int scaleFactor);
Status ovksSub_32sc_ISfs(const Complex32s* pSrc, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksSub_32sc_Sfs(const Complex32s* pSrc1, const Complex32s* pSrc2, Complex32s* pDst, int len, int scaleFactor);
Status ovksSub_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksSub_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksSub_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, Complex64f* pDst, int len);
Status ovksSub_64fc_I(const Complex64f* pSrc, Complex64f* pSrcDst, int len);
Status ovksSub_8u_ISfs(const uint8_t* pSrc, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksSub_8u_Sfs(const uint8_t* pSrc1, const uint8_t* pSrc2, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name SubC
 *  pDst[n] = pSrc[n] - val. @{ */
Status ovksSubC_16s_I(int16_t val, int16_t* pSrcDst, int len);
Status ovksSubC_16s_ISfs(int16_t val, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksSubC_16s_Sfs(const int16_t* pSrc, int16_t val, int16_t* pDst, int len, int scaleFactor);
Status ovksSubC_16sc_ISfs(Complex16s val, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksSubC_16sc_Sfs(const Complex16s* pSrc, Complex16s val, Complex16s* pDst, int len, int scaleFactor);
Status ovksSubC_16u_ISfs(uint16_t val, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksSubC_16u_Sfs(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len, int scaleFactor);
Status ovksSubC_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksSubC_32f_I(float val, float* pSrcDst, int len);
Status ovksSubC_32fc(const Complex32f* pSrc, Complex32f val, Complex32f* pDst, int len);
Status ovksSubC_32fc_I(Complex32f val, Complex32f* pSrcDst, int len);
Status ovksSubC_32s_ISfs(int32_t val, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksSubC_32s_Sfs(const int32_t* pSrc, int32_t val, int32_t* pDst, int len, int scaleFactor);
Status ovksSubC_32sc_ISfs(Complex32s val, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksSubC_32sc_Sfs(const Complex32s* pSrc, Complex32s val, Complex32s* pDst, int len, int scaleFactor);
Status ovksSubC_64f(const double* pSrc, double val, double* pDst, int len);
Status ovksSubC_64f_I(double val, double* pSrcDst, int len);
Status ovksSubC_64fc(const Complex64f* pSrc, Complex64f val, Complex64f* pDst, int len);
Status ovksSubC_64fc_I(Complex64f val, Complex64f* pSrcDst, int len);
Status ovksSubC_8u_ISfs(uint8_t val, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksSubC_8u_Sfs(const uint8_t* pSrc, uint8_t val, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name SubCRev
 *  pDst[n] = val - pSrc[n]. @{ */
Status ovksSubCRev_16s_ISfs(int16_t val, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_16s_Sfs(const int16_t* pSrc, int16_t val, int16_t* pDst, int len, int scaleFactor);
Status ovksSubCRev_16sc_ISfs(Complex16s val, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_16sc_Sfs(const Complex16s* pSrc, Complex16s val, Complex16s* pDst, int len, int scaleFactor);
Status ovksSubCRev_16u_ISfs(uint16_t val, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_16u_Sfs(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len, int scaleFactor);
Status ovksSubCRev_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksSubCRev_32f_I(float val, float* pSrcDst, int len);
Status ovksSubCRev_32fc(const Complex32f* pSrc, Complex32f val, Complex32f* pDst, int len);
Status ovksSubCRev_32fc_I(Complex32f val, Complex32f* pSrcDst, int len);
Status ovksSubCRev_32s_ISfs(int32_t val, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_32s_Sfs(const int32_t* pSrc, int32_t val, int32_t* pDst, int len, int scaleFactor);
Status ovksSubCRev_32sc_ISfs(Complex32s val, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_32sc_Sfs(const Complex32s* pSrc, Complex32s val, Complex32s* pDst, int len, int scaleFactor);
Status ovksSubCRev_64f(const double* pSrc, double val, double* pDst, int len);
Status ovksSubCRev_64f_I(double val, double* pSrcDst, int len);
Status ovksSubCRev_64fc(const Complex64f* pSrc, Complex64f val, Complex64f* pDst, int len);
Status ovksSubCRev_64fc_I(Complex64f val, Complex64f* pSrcDst, int len);
Status ovksSubCRev_8u_ISfs(uint8_t val, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksSubCRev_8u_Sfs(const uint8_t* pSrc, uint8_t val, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name Mul
 *  pDst[n] = pSrc1[n] * pSrc2[n]; in place pSrcDst[n] = pSrcDst[n] * pSrc[n]. A complex floating-point product rounds
 *  one inner product and fuses the other. `Mul_32f32fc` and `Mul_16u16s`: the first source has the first type, second
 *  source and destination have the second. Other mixed members: both sources have the first type. @{ */
Status ovksMul_16s(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len);
Status ovksMul_16s32f(const int16_t* pSrc1, const int16_t* pSrc2, float* pDst, int len);
Status ovksMul_16s32s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int32_t* pDst, int len, int scaleFactor);
Status ovksMul_16s_I(const int16_t* pSrc, int16_t* pSrcDst, int len);
Status ovksMul_16s_ISfs(const int16_t* pSrc, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksMul_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksMul_16sc_ISfs(const Complex16s* pSrc, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksMul_16sc_Sfs(const Complex16s* pSrc1, const Complex16s* pSrc2, Complex16s* pDst, int len, int scaleFactor);
Status ovksMul_16u16s_Sfs(const uint16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksMul_16u_ISfs(const uint16_t* pSrc, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksMul_16u_Sfs(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst, int len, int scaleFactor);
Status ovksMul_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksMul_32f32fc(const float* pSrc1, const Complex32f* pSrc2, Complex32f* pDst, int len);
Status ovksMul_32f32fc_I(const float* pSrc, Complex32f* pSrcDst, int len);
Status ovksMul_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksMul_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, Complex32f* pDst, int len);
Status ovksMul_32fc_I(const Complex32f* pSrc, Complex32f* pSrcDst, int len);
Status ovksMul_32s_ISfs(const int32_t* pSrc, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksMul_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pDst, int len, int scaleFactor);
Status ovksMul_32sc_ISfs(const Complex32s* pSrc, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksMul_32sc_Sfs(const Complex32s* pSrc1, const Complex32s* pSrc2, Complex32s* pDst, int len, int scaleFactor);
Status ovksMul_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksMul_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksMul_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, Complex64f* pDst, int len);
Status ovksMul_64fc_I(const Complex64f* pSrc, Complex64f* pSrcDst, int len);
Status ovksMul_8u16u(const uint8_t* pSrc1, const uint8_t* pSrc2, uint16_t* pDst, int len);
Status ovksMul_8u_ISfs(const uint8_t* pSrc, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksMul_8u_Sfs(const uint8_t* pSrc1, const uint8_t* pSrc2, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name MulC
 *  pDst[n] = pSrc[n] * val. Members of floating-point and integer type multiply in floating point, then scale, round to
 *  nearest with ties to even, and saturate; NaN becomes 0. `Low` may be less accurate than `_Sfs` with factor 0. @{ */
Status ovksMulC_16s_I(int16_t val, int16_t* pSrcDst, int len);
Status ovksMulC_16s_ISfs(int16_t val, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_16s_Sfs(const int16_t* pSrc, int16_t val, int16_t* pDst, int len, int scaleFactor);
Status ovksMulC_16sc_ISfs(Complex16s val, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksMulC_16sc_Sfs(const Complex16s* pSrc, Complex16s val, Complex16s* pDst, int len, int scaleFactor);
Status ovksMulC_16u_ISfs(uint16_t val, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_16u_Sfs(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len, int scaleFactor);
Status ovksMulC_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksMulC_32f16s_Sfs(const float* pSrc, float val, int16_t* pDst, int len, int scaleFactor);
Status ovksMulC_32f_I(float val, float* pSrcDst, int len);
Status ovksMulC_32fc(const Complex32f* pSrc, Complex32f val, Complex32f* pDst, int len);
Status ovksMulC_32fc_I(Complex32f val, Complex32f* pSrcDst, int len);
Status ovksMulC_32s_ISfs(int32_t val, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_32s_Sfs(const int32_t* pSrc, int32_t val, int32_t* pDst, int len, int scaleFactor);
Status ovksMulC_32sc_ISfs(Complex32s val, Complex32s* pSrcDst, int len, int scaleFactor);
Status ovksMulC_32sc_Sfs(const Complex32s* pSrc, Complex32s val, Complex32s* pDst, int len, int scaleFactor);
Status ovksMulC_64f(const double* pSrc, double val, double* pDst, int len);
Status ovksMulC_64f64s_ISfs(double val, int64_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_64f_I(double val, double* pSrcDst, int len);
Status ovksMulC_64fc(const Complex64f* pSrc, Complex64f val, Complex64f* pDst, int len);
Status ovksMulC_64fc_I(Complex64f val, Complex64f* pSrcDst, int len);
Status ovksMulC_64s_ISfs(int64_t val, int64_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_8u_ISfs(uint8_t val, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksMulC_8u_Sfs(const uint8_t* pSrc, uint8_t val, uint8_t* pDst, int len, int scaleFactor);
Status ovksMulC_Low_32f16s(const float* pSrc, float val, int16_t* pDst, int len);
/** @} */

/** @name Div
 *  pDst[n] = pSrc2[n] / pSrc1[n], the first source being the divisor; in place pSrcDst[n] = pSrcDst[n] / pSrc[n].
 *
 *  Integers: the exact quotient times 2^-scaleFactor, rounded once to nearest, ties to even, or as @p rndMode says. A
 *  quotient other than 0 saturates at factors below -30; one of 16s is 0 from factors of 16 on. With a zero divisor the
 *  largest, smallest or zero value, by the dividend's sign. Complex: the divisor is zero when both parts are, and each
 *  part follows its own dividend part.
 *
 *  Floating point: with a zero divisor of either sign, infinity with the dividend's sign, or for a zero or NaN dividend
 *  the NaN 0x7FBFFFFF (0x7FF7FFFFFFFFFFFF in double precision); complex part by part. Complex quotients are formed in
 *  double precision, `64fc` after scaling of the divisor to unit magnitude.
 *
 *  `Div_32s16s_Sfs` divides 32s by 16s. Further statuses: StatusBadRoundMode when @p rndMode is not 0, 1 or 2;
 *  the warning StatusDivByZero when a divisor was zero, with all elements written. @{ */
Status ovksDiv_16s_ISfs(const int16_t* pSrc, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksDiv_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksDiv_16sc_ISfs(const Complex16s* pSrc, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksDiv_16sc_Sfs(const Complex16s* pSrc1, const Complex16s* pSrc2, Complex16s* pDst, int len, int scaleFactor);
Status ovksDiv_16u_ISfs(const uint16_t* pSrc, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksDiv_16u_Sfs(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst, int len, int scaleFactor);
Status ovksDiv_32f(const float* pSrc1, const float* pSrc2, float* pDst, int len);
Status ovksDiv_32f_I(const float* pSrc, float* pSrcDst, int len);
Status ovksDiv_32fc(const Complex32f* pSrc1, const Complex32f* pSrc2, Complex32f* pDst, int len);
Status ovksDiv_32fc_I(const Complex32f* pSrc, Complex32f* pSrcDst, int len);
Status ovksDiv_32s16s_Sfs(const int16_t* pSrc1, const int32_t* pSrc2, int16_t* pDst, int len, int scaleFactor);
Status ovksDiv_32s_ISfs(const int32_t* pSrc, int32_t* pSrcDst, int len, int scaleFactor);
Status ovksDiv_32s_Sfs(const int32_t* pSrc1, const int32_t* pSrc2, int32_t* pDst, int len, int scaleFactor);
Status ovksDiv_64f(const double* pSrc1, const double* pSrc2, double* pDst, int len);
Status ovksDiv_64f_I(const double* pSrc, double* pSrcDst, int len);
Status ovksDiv_64fc(const Complex64f* pSrc1, const Complex64f* pSrc2, Complex64f* pDst, int len);
Status ovksDiv_64fc_I(const Complex64f* pSrc, Complex64f* pSrcDst, int len);
Status ovksDiv_8u_ISfs(const uint8_t* pSrc, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksDiv_8u_Sfs(const uint8_t* pSrc1, const uint8_t* pSrc2, uint8_t* pDst, int len, int scaleFactor);
Status ovksDiv_Round_16s_ISfs(const int16_t* pSrc, int16_t* pSrcDst, int len, RoundMode rndMode, int scaleFactor);
Status ovksDiv_Round_16s_Sfs(const int16_t* pSrc1, const int16_t* pSrc2, int16_t* pDst,
                             int len, RoundMode rndMode, int scaleFactor);
Status ovksDiv_Round_16u_ISfs(const uint16_t* pSrc, uint16_t* pSrcDst, int len, RoundMode rndMode, int scaleFactor);
Status ovksDiv_Round_16u_Sfs(const uint16_t* pSrc1, const uint16_t* pSrc2, uint16_t* pDst,
                             int len, RoundMode rndMode, int scaleFactor);
Status ovksDiv_Round_8u_ISfs(const uint8_t* pSrc, uint8_t* pSrcDst, int len, RoundMode rndMode, int scaleFactor);
Status ovksDiv_Round_8u_Sfs(const uint8_t* pSrc1, const uint8_t* pSrc2, uint8_t* pDst,
                            int len, RoundMode rndMode, int scaleFactor);
/** @} */

/** @name DivC
 *  pDst[n] = pSrc[n] / val, as Div. Further status, after the length: StatusDivByZeroErr when val is zero, with nothing
 *  written. @{ */
Status ovksDivC_16s_ISfs(int16_t val, int16_t* pSrcDst, int len, int scaleFactor);
Status ovksDivC_16s_Sfs(const int16_t* pSrc, int16_t val, int16_t* pDst, int len, int scaleFactor);
Status ovksDivC_16sc_ISfs(Complex16s val, Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksDivC_16sc_Sfs(const Complex16s* pSrc, Complex16s val, Complex16s* pDst, int len, int scaleFactor);
Status ovksDivC_16u_ISfs(uint16_t val, uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksDivC_16u_Sfs(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len, int scaleFactor);
Status ovksDivC_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksDivC_32f_I(float val, float* pSrcDst, int len);
Status ovksDivC_32fc(const Complex32f* pSrc, Complex32f val, Complex32f* pDst, int len);
Status ovksDivC_32fc_I(Complex32f val, Complex32f* pSrcDst, int len);
Status ovksDivC_64f(const double* pSrc, double val, double* pDst, int len);
Status ovksDivC_64f_I(double val, double* pSrcDst, int len);
Status ovksDivC_64fc(const Complex64f* pSrc, Complex64f val, Complex64f* pDst, int len);
Status ovksDivC_64fc_I(Complex64f val, Complex64f* pSrcDst, int len);
Status ovksDivC_64s_ISfs(int64_t val, int64_t* pSrcDst, int len, int scaleFactor);
Status ovksDivC_8u_ISfs(uint8_t val, uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksDivC_8u_Sfs(const uint8_t* pSrc, uint8_t val, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name DivCRev
 *  pDst[n] = val / pSrc[n], as Div with factor 0; StatusDivByZero warns of zero divisors. @{ */
Status ovksDivCRev_16u(const uint16_t* pSrc, uint16_t val, uint16_t* pDst, int len);
Status ovksDivCRev_16u_I(uint16_t val, uint16_t* pSrcDst, int len);
Status ovksDivCRev_32f(const float* pSrc, float val, float* pDst, int len);
Status ovksDivCRev_32f_I(float val, float* pSrcDst, int len);
/** @} */

/** @name Sqr
 *  pDst[n] = pSrc[n]^2. @{ */
Status ovksSqr_16s_ISfs(int16_t* pSrcDst, int len, int scaleFactor);
Status ovksSqr_16s_Sfs(const int16_t* pSrc, int16_t* pDst, int len, int scaleFactor);
Status ovksSqr_16sc_ISfs(Complex16s* pSrcDst, int len, int scaleFactor);
Status ovksSqr_16sc_Sfs(const Complex16s* pSrc, Complex16s* pDst, int len, int scaleFactor);
Status ovksSqr_16u_ISfs(uint16_t* pSrcDst, int len, int scaleFactor);
Status ovksSqr_16u_Sfs(const uint16_t* pSrc, uint16_t* pDst, int len, int scaleFactor);
Status ovksSqr_32f(const float* pSrc, float* pDst, int len);
Status ovksSqr_32f_I(float* pSrcDst, int len);
Status ovksSqr_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksSqr_32fc_I(Complex32f* pSrcDst, int len);
Status ovksSqr_64f(const double* pSrc, double* pDst, int len);
Status ovksSqr_64f_I(double* pSrcDst, int len);
Status ovksSqr_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksSqr_64fc_I(Complex64f* pSrcDst, int len);
Status ovksSqr_8u_ISfs(uint8_t* pSrcDst, int len, int scaleFactor);
Status ovksSqr_8u_Sfs(const uint8_t* pSrc, uint8_t* pDst, int len, int scaleFactor);
/** @} */

/** @name Copy
 *  pDst[n] = pSrc[n], bit for bit. Vectors that exceed the caches are written past them. @{ */
Status ovksCopy_8u(const uint8_t* pSrc, uint8_t* pDst, int len);
Status ovksCopy_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksCopy_32s(const int32_t* pSrc, int32_t* pDst, int len);
Status ovksCopy_32f(const float* pSrc, float* pDst, int len);
Status ovksCopy_64s(const int64_t* pSrc, int64_t* pDst, int len);
Status ovksCopy_64f(const double* pSrc, double* pDst, int len);
Status ovksCopy_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksCopy_32sc(const Complex32s* pSrc, Complex32s* pDst, int len);
Status ovksCopy_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksCopy_64sc(const Complex64s* pSrc, Complex64s* pDst, int len);
Status ovksCopy_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
/** @} */

/** @name Zero
 *  pDst[n] = 0. @{ */
Status ovksZero_8u(uint8_t* pDst, int len);
Status ovksZero_16s(int16_t* pDst, int len);
Status ovksZero_32s(int32_t* pDst, int len);
Status ovksZero_32f(float* pDst, int len);
Status ovksZero_64s(int64_t* pDst, int len);
Status ovksZero_64f(double* pDst, int len);
Status ovksZero_16sc(Complex16s* pDst, int len);
Status ovksZero_32sc(Complex32s* pDst, int len);
Status ovksZero_32fc(Complex32f* pDst, int len);
Status ovksZero_64sc(Complex64s* pDst, int len);
Status ovksZero_64fc(Complex64f* pDst, int len);
/** @} */

/** @name Set
 *  pDst[n] = val. @{ */
Status ovksSet_8u(uint8_t val, uint8_t* pDst, int len);
Status ovksSet_16s(int16_t val, int16_t* pDst, int len);
Status ovksSet_32s(int32_t val, int32_t* pDst, int len);
Status ovksSet_32f(float val, float* pDst, int len);
Status ovksSet_64s(int64_t val, int64_t* pDst, int len);
Status ovksSet_64f(double val, double* pDst, int len);
Status ovksSet_16sc(Complex16s val, Complex16s* pDst, int len);
Status ovksSet_32sc(Complex32s val, Complex32s* pDst, int len);
Status ovksSet_32fc(Complex32f val, Complex32f* pDst, int len);
Status ovksSet_64sc(Complex64s val, Complex64s* pDst, int len);
Status ovksSet_64fc(Complex64f val, Complex64f* pDst, int len);
/** @} */

/** pDst[n] = pSrc[n] as a float, exact. Complex data convert as 2 * len reals. */
Status ovksConvert_16s32f(const int16_t* pSrc, float* pDst, int len);

/** pDst[n] = pSrc[n] * 2^-scaleFactor, rounded by @p rndMode (every value but 0 and 1 rounds ties away from zero) and
 *  saturated; NaN becomes 0. The caller's floating-point control neither changes the result nor is changed. */
Status ovksConvert_32f16s_Sfs(const float* pSrc, int16_t* pDst, int len, RoundMode rndMode, int scaleFactor);

#ifdef __cplusplus
}
#endif

#endif
