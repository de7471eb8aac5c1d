// SPDX-License-Identifier: MIT
/// @file
/// Element-wise operations, as vector.h describes them. Operands come in the order of the C functions, the destination
/// last; without it the last operand is the destination, too. The letter C stands for a constant.
#ifndef OVKS_CPP_VECTOR_HPP
#define OVKS_CPP_VECTOR_HPP

#include "../vector.h"
#include "elementwise.hpp"

namespace ovks {

/// pDst[n] = |pSrc[n]|.
inline constexpr Elementwise<ovksAbs_16s, ovksAbs_16s_I, ovksAbs_32f, ovksAbs_32f_I, ovksAbs_32s, ovksAbs_32s_I,
                             ovksAbs_64f, ovksAbs_64f_I>
    abs{};

/// pDst[n] = pSrc1[n] + pSrc2[n]; in place pSrcDst[n] += pSrc[n].
inline constexpr Elementwise<ovksAdd_16s, ovksAdd_16s32f, ovksAdd_16s32s_I, ovksAdd_16s_I, ovksAdd_16u, ovksAdd_32f,
                             ovksAdd_32f_I, ovksAdd_32fc, ovksAdd_32fc_I, ovksAdd_32u, ovksAdd_64f, ovksAdd_64f_I,
                             ovksAdd_64fc, ovksAdd_64fc_I, ovksAdd_8u16u>
    add{};

/// Like add(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksAdd_16s_ISfs, ovksAdd_16s_Sfs, ovksAdd_16sc_ISfs, ovksAdd_16sc_Sfs, ovksAdd_16u_ISfs,
                             ovksAdd_16u_Sfs, ovksAdd_32s_ISfs, ovksAdd_32s_Sfs, ovksAdd_32sc_ISfs, ovksAdd_32sc_Sfs,
                             ovksAdd_64s_Sfs, ovksAdd_8u_ISfs, ovksAdd_8u_Sfs>
    addScaled{};

/// pDst[n] = pSrc[n] + val.
inline constexpr Elementwise<ovksAddC_16s_I, ovksAddC_32f, ovksAddC_32f_I, ovksAddC_32fc, ovksAddC_32fc_I, ovksAddC_64f,
                             ovksAddC_64f_I, ovksAddC_64fc, ovksAddC_64fc_I>
    addC{};

/// Like addC(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksAddC_16s_ISfs, ovksAddC_16s_Sfs, ovksAddC_16sc_ISfs, ovksAddC_16sc_Sfs,
                             ovksAddC_16u_ISfs, ovksAddC_16u_Sfs, ovksAddC_32s_ISfs, ovksAddC_32s_Sfs,
                             ovksAddC_32sc_ISfs, ovksAddC_32sc_Sfs, ovksAddC_64s_Sfs, ovksAddC_64u_Sfs,
                             ovksAddC_8u_ISfs, ovksAddC_8u_Sfs>
    addCScaled{};

/// Like addProduct(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksAddProduct_16s32s_Sfs, ovksAddProduct_16s_Sfs, ovksAddProduct_32s_Sfs>
    addProductScaled{};

/// pSrcDst[n] += pSrc1[n] * pSrc2[n].
inline constexpr Elementwise<ovksAddProduct_32f, ovksAddProduct_32fc, ovksAddProduct_64f, ovksAddProduct_64fc>
    addProduct{};

/// pSrcDst[n] += pSrc[n] * val.
inline constexpr Elementwise<ovksAddProductC_32f> addProductC{};

/// pDst[n] = pSrc2[n] - pSrc1[n], the second minus the first; in place pSrcDst[n] -= pSrc[n].
inline constexpr Elementwise<ovksSub_16s, ovksSub_16s32f, ovksSub_16s_I, ovksSub_32f, ovksSub_32f_I, ovksSub_32fc,
                             ovksSub_32fc_I, ovksSub_64f, ovksSub_64f_I, ovksSub_64fc, ovksSub_64fc_I>
    sub{};

/// Like sub(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksSub_16s_ISfs, ovksSub_16s_Sfs, ovksSub_16sc_ISfs, ovksSub_16sc_Sfs, ovksSub_16u_ISfs,
                             ovksSub_16u_Sfs, ovksSub_32s_ISfs, ovksSub_32s_Sfs, ovksSub_32sc_ISfs, ovksSub_32sc_Sfs,
                             ovksSub_8u_ISfs, ovksSub_8u_Sfs>
    subScaled{};

/// pDst[n] = pSrc[n] - val.
inline constexpr Elementwise<ovksSubC_16s_I, ovksSubC_32f, ovksSubC_32f_I, ovksSubC_32fc, ovksSubC_32fc_I, ovksSubC_64f,
                             ovksSubC_64f_I, ovksSubC_64fc, ovksSubC_64fc_I>
    subC{};

/// Like subC(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksSubC_16s_ISfs, ovksSubC_16s_Sfs, ovksSubC_16sc_ISfs, ovksSubC_16sc_Sfs,
                             ovksSubC_16u_ISfs, ovksSubC_16u_Sfs, ovksSubC_32s_ISfs, ovksSubC_32s_Sfs,
                             ovksSubC_32sc_ISfs, ovksSubC_32sc_Sfs, ovksSubC_8u_ISfs, ovksSubC_8u_Sfs>
    subCScaled{};

/// Like subCRev(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksSubCRev_16s_ISfs, ovksSubCRev_16s_Sfs, ovksSubCRev_16sc_ISfs, ovksSubCRev_16sc_Sfs,
                             ovksSubCRev_16u_ISfs, ovksSubCRev_16u_Sfs, ovksSubCRev_32s_ISfs, ovksSubCRev_32s_Sfs,
                             ovksSubCRev_32sc_ISfs, ovksSubCRev_32sc_Sfs, ovksSubCRev_8u_ISfs, ovksSubCRev_8u_Sfs>
    subCRevScaled{};

/// pDst[n] = val - pSrc[n].
inline constexpr Elementwise<ovksSubCRev_32f, ovksSubCRev_32f_I, ovksSubCRev_32fc, ovksSubCRev_32fc_I, ovksSubCRev_64f,
                             ovksSubCRev_64f_I, ovksSubCRev_64fc, ovksSubCRev_64fc_I>
    subCRev{};

/// pDst[n] = pSrc1[n] * pSrc2[n]; in place pSrcDst[n] *= pSrc[n].
inline constexpr Elementwise<ovksMul_16s, ovksMul_16s32f, ovksMul_16s_I, ovksMul_32f, ovksMul_32f32fc,
                             ovksMul_32f32fc_I, ovksMul_32f_I, ovksMul_32fc, ovksMul_32fc_I, ovksMul_64f, ovksMul_64f_I,
                             ovksMul_64fc, ovksMul_64fc_I, ovksMul_8u16u>
    mul{};

/// Like mul(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksMul_16s32s_Sfs, ovksMul_16s_ISfs, ovksMul_16s_Sfs, ovksMul_16sc_ISfs, ovksMul_16sc_Sfs,
                             ovksMul_16u16s_Sfs, ovksMul_16u_ISfs, ovksMul_16u_Sfs, ovksMul_32s_ISfs, ovksMul_32s_Sfs,
                             ovksMul_32sc_ISfs, ovksMul_32sc_Sfs, ovksMul_8u_ISfs, ovksMul_8u_Sfs>
    mulScaled{};

/// pDst[n] = pSrc[n] * val.
inline constexpr Elementwise<ovksMulC_16s_I, ovksMulC_32f, ovksMulC_32f_I, ovksMulC_32fc, ovksMulC_32fc_I, ovksMulC_64f,
                             ovksMulC_64f_I, ovksMulC_64fc, ovksMulC_64fc_I>
    mulC{};

/// Like mulC(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksMulC_16s_ISfs, ovksMulC_16s_Sfs, ovksMulC_16sc_ISfs, ovksMulC_16sc_Sfs,
                             ovksMulC_16u_ISfs, ovksMulC_16u_Sfs, ovksMulC_32f16s_Sfs, ovksMulC_32s_ISfs,
                             ovksMulC_32s_Sfs, ovksMulC_32sc_ISfs, ovksMulC_32sc_Sfs, ovksMulC_64f64s_ISfs,
                             ovksMulC_64s_ISfs, ovksMulC_8u_ISfs, ovksMulC_8u_Sfs>
    mulCScaled{};

/// Like mulCScaled() with factor 0, possibly less accurate.
inline constexpr Elementwise<ovksMulC_Low_32f16s> mulCLow{};

/// Like div(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksDiv_16s_ISfs, ovksDiv_16s_Sfs, ovksDiv_16sc_ISfs, ovksDiv_16sc_Sfs, ovksDiv_16u_ISfs,
                             ovksDiv_16u_Sfs, ovksDiv_32s16s_Sfs, ovksDiv_32s_ISfs, ovksDiv_32s_Sfs, ovksDiv_8u_ISfs,
                             ovksDiv_8u_Sfs>
    divScaled{};

/// pDst[n] = pSrc2[n] / pSrc1[n], the second by the first; in place pSrcDst[n] /= pSrc[n].
inline constexpr Elementwise<ovksDiv_32f, ovksDiv_32f_I, ovksDiv_32fc, ovksDiv_32fc_I, ovksDiv_64f, ovksDiv_64f_I,
                             ovksDiv_64fc, ovksDiv_64fc_I>
    div{};

/// Like divScaled(), rounded as the RoundMode before the factor says.
inline constexpr Elementwise<ovksDiv_Round_16s_ISfs, ovksDiv_Round_16s_Sfs, ovksDiv_Round_16u_ISfs,
                             ovksDiv_Round_16u_Sfs, ovksDiv_Round_8u_ISfs, ovksDiv_Round_8u_Sfs>
    divRoundScaled{};

/// Like divC(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksDivC_16s_ISfs, ovksDivC_16s_Sfs, ovksDivC_16sc_ISfs, ovksDivC_16sc_Sfs,
                             ovksDivC_16u_ISfs, ovksDivC_16u_Sfs, ovksDivC_64s_ISfs, ovksDivC_8u_ISfs, ovksDivC_8u_Sfs>
    divCScaled{};

/// pDst[n] = pSrc[n] / val.
inline constexpr Elementwise<ovksDivC_32f, ovksDivC_32f_I, ovksDivC_32fc, ovksDivC_32fc_I, ovksDivC_64f, ovksDivC_64f_I,
                             ovksDivC_64fc, ovksDivC_64fc_I>
    divC{};

/// pDst[n] = val / pSrc[n].
inline constexpr Elementwise<ovksDivCRev_16u, ovksDivCRev_16u_I, ovksDivCRev_32f, ovksDivCRev_32f_I> divCRev{};

/// Like sqr(), times 2^-scaleFactor.
inline constexpr Elementwise<ovksSqr_16s_ISfs, ovksSqr_16s_Sfs, ovksSqr_16sc_ISfs, ovksSqr_16sc_Sfs, ovksSqr_16u_ISfs,
                             ovksSqr_16u_Sfs, ovksSqr_8u_ISfs, ovksSqr_8u_Sfs>
    sqrScaled{};

/// pDst[n] = pSrc[n]^2.
inline constexpr Elementwise<ovksSqr_32f, ovksSqr_32f_I, ovksSqr_32fc, ovksSqr_32fc_I, ovksSqr_64f, ovksSqr_64f_I,
                             ovksSqr_64fc, ovksSqr_64fc_I>
    sqr{};

/// pDst[n] = pSrc[n].
inline constexpr Elementwise<ovksCopy_8u, ovksCopy_16s, ovksCopy_32s, ovksCopy_32f, ovksCopy_64s, ovksCopy_64f,
                             ovksCopy_16sc, ovksCopy_32sc, ovksCopy_32fc, ovksCopy_64sc, ovksCopy_64fc>
    copy{};

/// pDst[n] = 0.
inline constexpr Elementwise<ovksZero_8u, ovksZero_16s, ovksZero_32s, ovksZero_32f, ovksZero_64s, ovksZero_64f,
                             ovksZero_16sc, ovksZero_32sc, ovksZero_32fc, ovksZero_64sc, ovksZero_64fc>
    zero{};

/// pDst[n] = val.
inline constexpr Elementwise<ovksSet_8u, ovksSet_16s, ovksSet_32s, ovksSet_32f, ovksSet_64s, ovksSet_64f, ovksSet_16sc,
                             ovksSet_32sc, ovksSet_32fc, ovksSet_64sc, ovksSet_64fc>
    set{};

/// pDst[n] = pSrc[n], in the destination's type.
inline constexpr Elementwise<ovksConvert_16s32f> convert{};

/// pDst[n] = pSrc[n] * 2^-scaleFactor, rounded as the RoundMode before the factor says.
inline constexpr Elementwise<ovksConvert_32f16s_Sfs> convertScaled{};

}  // namespace ovks

#endif
