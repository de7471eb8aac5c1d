// SPDX-License-Identifier: MIT
/// @file
/// Reductions, as stats.h describes them. What the C functions write, these return.
#ifndef OVKS_CPP_STATS_HPP
#define OVKS_CPP_STATS_HPP

#include "../stats.h"
#include "reduction.hpp"

namespace ovks {

/// Like sum(), times 2^-scaleFactor.
inline constexpr Overloads<Reductions<ovksSum_16s_Sfs, ovksSum_16sc_Sfs, ovksSum_32s_Sfs>,
                           Tagged<ovksSum_16s32s_Sfs, ovksSum_16sc32sc_Sfs>>
    sumScaled{};

/// Sum of src[n].
inline constexpr Overloads<Reductions<ovksSum_64f, ovksSum_64fc>, Hinted<ovksSum_32f, ovksSum_32fc>> sum{};

/// Like mean(), times 2^-scaleFactor.
inline constexpr Reductions<ovksMean_16s_Sfs, ovksMean_16sc_Sfs, ovksMean_32s_Sfs> meanScaled{};

/// Mean of src[n].
inline constexpr Overloads<Reductions<ovksMean_64f, ovksMean_64fc>, Hinted<ovksMean_32f, ovksMean_32fc>> mean{};

/// Like stdDev(), times 2^-scaleFactor.
inline constexpr Overloads<Reductions<ovksStdDev_16s_Sfs>, Tagged<ovksStdDev_16s32s_Sfs>> stdDevScaled{};

/// Sample standard deviation.
inline constexpr Overloads<Reductions<ovksStdDev_64f>, Hinted<ovksStdDev_32f>> stdDev{};

/// Like meanStdDev(), times 2^-scaleFactor.
inline constexpr Overloads<Reductions<ovksMeanStdDev_16s_Sfs>, Tagged<ovksMeanStdDev_16s32s_Sfs>> meanStdDevScaled{};

/// Mean and sample standard deviation.
inline constexpr Overloads<Reductions<ovksMeanStdDev_64f>, Hinted<ovksMeanStdDev_32f>> meanStdDev{};

/// max |src[n]|.
inline constexpr Reductions<ovksNorm_Inf_16s32f, ovksNorm_Inf_32f, ovksNorm_Inf_32fc32f, ovksNorm_Inf_64f,
                            ovksNorm_Inf_64fc64f>
    normInf{};

/// Like normInf(), times 2^-scaleFactor.
inline constexpr Reductions<ovksNorm_Inf_16s32s_Sfs> normInfScaled{};

/// Sum of |src[n]|.
inline constexpr Reductions<ovksNorm_L1_16s32f, ovksNorm_L1_32f, ovksNorm_L1_32fc64f, ovksNorm_L1_64f,
                            ovksNorm_L1_64fc64f>
    normL1{};

/// Like normL1(), times 2^-scaleFactor.
inline constexpr Overloads<Reductions<ovksNorm_L1_16s32s_Sfs>, Tagged<ovksNorm_L1_16s64s_Sfs>> normL1Scaled{};

/// sqrt(sum of |src[n]|^2).
inline constexpr Reductions<ovksNorm_L2_16s32f, ovksNorm_L2_32f, ovksNorm_L2_32fc64f, ovksNorm_L2_64f,
                            ovksNorm_L2_64fc64f>
    normL2{};

/// Like normL2(), times 2^-scaleFactor.
inline constexpr Reductions<ovksNorm_L2_16s32s_Sfs> normL2Scaled{};

/// Sum of src[n]^2 times 2^-scaleFactor.
inline constexpr Reductions<ovksNorm_L2Sqr_16s64s_Sfs> normL2SqrScaled{};

/// max |src1[n] - src2[n]|.
inline constexpr Reductions<ovksNormDiff_Inf_16s32f, ovksNormDiff_Inf_32f, ovksNormDiff_Inf_32fc32f,
                            ovksNormDiff_Inf_64f, ovksNormDiff_Inf_64fc64f>
    normDiffInf{};

/// Like normDiffInf(), times 2^-scaleFactor.
inline constexpr Reductions<ovksNormDiff_Inf_16s32s_Sfs> normDiffInfScaled{};

/// Sum of |src1[n] - src2[n]|.
inline constexpr Reductions<ovksNormDiff_L1_16s32f, ovksNormDiff_L1_32f, ovksNormDiff_L1_32fc64f, ovksNormDiff_L1_64f,
                            ovksNormDiff_L1_64fc64f>
    normDiffL1{};

/// Like normDiffL1(), times 2^-scaleFactor.
inline constexpr Overloads<Reductions<ovksNormDiff_L1_16s32s_Sfs>, Tagged<ovksNormDiff_L1_16s64s_Sfs>>
    normDiffL1Scaled{};

/// sqrt(sum of |src1[n] - src2[n]|^2).
inline constexpr Reductions<ovksNormDiff_L2_16s32f, ovksNormDiff_L2_32f, ovksNormDiff_L2_32fc64f, ovksNormDiff_L2_64f,
                            ovksNormDiff_L2_64fc64f>
    normDiffL2{};

/// Like normDiffL2(), times 2^-scaleFactor.
inline constexpr Reductions<ovksNormDiff_L2_16s32s_Sfs> normDiffL2Scaled{};

/// Sum of (src1[n] - src2[n])^2 times 2^-scaleFactor.
inline constexpr Reductions<ovksNormDiff_L2Sqr_16s64s_Sfs> normDiffL2SqrScaled{};

/// Sum of src1[n] src2[n].
inline constexpr Overloads<
    Reductions<ovksDotProd_16s16sc64sc, ovksDotProd_16s64s, ovksDotProd_16sc64sc, ovksDotProd_32f, ovksDotProd_32f32fc,
               ovksDotProd_32fc, ovksDotProd_64f, ovksDotProd_64f64fc, ovksDotProd_64fc>,
    Tagged<ovksDotProd_16s32f, ovksDotProd_32f32fc64fc, ovksDotProd_32f64f, ovksDotProd_32fc64fc>>
    dotProd{};

/// Like dotProd(), times 2^-scaleFactor.
inline constexpr Reductions<ovksDotProd_16s32s32s_Sfs, ovksDotProd_16s32s_Sfs, ovksDotProd_32s_Sfs> dotProdScaled{};

/// Sum of ln(src[n]).
inline constexpr Overloads<Reductions<ovksSumLn_16s32f, ovksSumLn_32f, ovksSumLn_64f>, Tagged<ovksSumLn_32f64f>>
    sumLn{};

}  // namespace ovks

#endif
