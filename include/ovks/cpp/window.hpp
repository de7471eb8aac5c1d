// SPDX-License-Identifier: MIT
/// @file
/// Window functions, as generate.h describes them: `hann(x)` in place, `hann(x, out)` elsewhere.
#ifndef OVKS_CPP_WINDOW_HPP
#define OVKS_CPP_WINDOW_HPP

#include "../generate.h"
#include "elementwise.hpp"

namespace ovks {

/// A triangle with zero ends.
inline constexpr Elementwise<ovksWinBartlett_16s, ovksWinBartlett_16s_I, ovksWinBartlett_16sc, ovksWinBartlett_16sc_I,
                             ovksWinBartlett_32f, ovksWinBartlett_32f_I, ovksWinBartlett_32fc, ovksWinBartlett_32fc_I,
                             ovksWinBartlett_64f, ovksWinBartlett_64f_I, ovksWinBartlett_64fc, ovksWinBartlett_64fc_I>
    bartlett{};

/// 0.5 - 0.5 cos.
inline constexpr Elementwise<ovksWinHann_16s, ovksWinHann_16s_I, ovksWinHann_16sc, ovksWinHann_16sc_I, ovksWinHann_32f,
                             ovksWinHann_32f_I, ovksWinHann_32fc, ovksWinHann_32fc_I, ovksWinHann_64f,
                             ovksWinHann_64f_I, ovksWinHann_64fc, ovksWinHann_64fc_I>
    hann{};

/// 0.54 - 0.46 cos.
inline constexpr Elementwise<ovksWinHamming_16s, ovksWinHamming_16s_I, ovksWinHamming_16sc, ovksWinHamming_16sc_I,
                             ovksWinHamming_32f, ovksWinHamming_32f_I, ovksWinHamming_32fc, ovksWinHamming_32fc_I,
                             ovksWinHamming_64f, ovksWinHamming_64f_I, ovksWinHamming_64fc, ovksWinHamming_64fc_I>
    hamming{};

/// Blackman of a given alpha, the last argument.
inline constexpr Elementwise<ovksWinBlackman_16s, ovksWinBlackman_16s_I, ovksWinBlackman_16sc, ovksWinBlackman_16sc_I,
                             ovksWinBlackman_32f, ovksWinBlackman_32f_I, ovksWinBlackman_32fc, ovksWinBlackman_32fc_I,
                             ovksWinBlackman_64f, ovksWinBlackman_64f_I, ovksWinBlackman_64fc, ovksWinBlackman_64fc_I>
    blackman{};

/// Blackman of alpha -0.16.
inline constexpr Elementwise<ovksWinBlackmanStd_16s, ovksWinBlackmanStd_16s_I, ovksWinBlackmanStd_16sc,
                             ovksWinBlackmanStd_16sc_I, ovksWinBlackmanStd_32f, ovksWinBlackmanStd_32f_I,
                             ovksWinBlackmanStd_32fc, ovksWinBlackmanStd_32fc_I, ovksWinBlackmanStd_64f,
                             ovksWinBlackmanStd_64f_I, ovksWinBlackmanStd_64fc, ovksWinBlackmanStd_64fc_I>
    blackmanStd{};

/// Blackman of the alpha that suits the length.
inline constexpr Elementwise<ovksWinBlackmanOpt_16s, ovksWinBlackmanOpt_16s_I, ovksWinBlackmanOpt_16sc,
                             ovksWinBlackmanOpt_16sc_I, ovksWinBlackmanOpt_32f, ovksWinBlackmanOpt_32f_I,
                             ovksWinBlackmanOpt_32fc, ovksWinBlackmanOpt_32fc_I, ovksWinBlackmanOpt_64f,
                             ovksWinBlackmanOpt_64f_I, ovksWinBlackmanOpt_64fc, ovksWinBlackmanOpt_64fc_I>
    blackmanOpt{};

/// Kaiser of a given alpha, the last argument.
inline constexpr Elementwise<ovksWinKaiser_16s, ovksWinKaiser_16s_I, ovksWinKaiser_16sc, ovksWinKaiser_16sc_I,
                             ovksWinKaiser_32f, ovksWinKaiser_32f_I, ovksWinKaiser_32fc, ovksWinKaiser_32fc_I,
                             ovksWinKaiser_64f, ovksWinKaiser_64f_I, ovksWinKaiser_64fc, ovksWinKaiser_64fc_I>
    kaiser{};

}  // namespace ovks

#endif
