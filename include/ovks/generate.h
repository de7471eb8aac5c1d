/* SPDX-License-Identifier: MIT */
/** @file
 *  Signal generation: window functions and pseudo-random generators.
 *
 *  Windows:
 *  - pDst[n] = pSrc[n] * w(n), n = 0 .. N-1, N being @p len; theta = 2 pi / (N-1). Every shape is symmetric.
 *    Vectors lie at any address; @p pDst may be @p pSrc, but not overlap it otherwise. The `_I` forms work in place.
 *  - A complex element's parts are multiplied by the same real weight.
 *  - 16s, 16sc: weights as for 32f; each exact product is rounded once to nearest, ties to even, and saturated.
 *  - Statuses, in the order of checking: StatusNullPtr, StatusBadSize for a length below the shape's shortest, and for
 *    Kaiser StatusHugeWin; then StatusOk. Nothing is written on an error.
 *
 *  Generators:
 *  - The state is a value in memory of the caller, at any address, of the size that GetSize tells. It may be copied,
 *    and needs no clean-up. The sequence follows from the seed alone, any number of calls continue it as one call would,
 *    and states share nothing. See docs/random.md for what the generator is good for.
 *  - Statuses of the working calls, in the order of checking: StatusNullPtr, StatusBadSize for len <= 0,
 *    StatusContextMismatch for a state of another kind or type; then StatusOk. Nothing is written on an error. */
#ifndef OVKS_GENERATE_H
#define OVKS_GENERATE_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name WinBartlett
 *  w(n) = 2 n / (N-1) up to the centre, 2 - 2 n / (N-1) above: a triangle with zero ends. N >= 3. @{ */
Status ovksWinBartlett_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksWinBartlett_16s_I(int16_t* pSrcDst, int len);
Status ovksWinBartlett_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksWinBartlett_16sc_I(Complex16s* pSrcDst, int len);
Status ovksWinBartlett_32f(const float* pSrc, float* pDst, int len);
Status ovksWinBartlett_32f_I(float* pSrcDst, int len);
Status ovksWinBartlett_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksWinBartlett_32fc_I(Complex32f* pSrcDst, int len);
Status ovksWinBartlett_64f(const double* pSrc, double* pDst, int len);
Status ovksWinBartlett_64f_I(double* pSrcDst, int len);
Status ovksWinBartlett_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksWinBartlett_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name WinHann
 *  w(n) = 0.5 - 0.5 cos(n theta). N >= 3. The centre of an odd length is copied. @{ */
Status ovksWinHann_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksWinHann_16s_I(int16_t* pSrcDst, int len);
Status ovksWinHann_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksWinHann_16sc_I(Complex16s* pSrcDst, int len);
Status ovksWinHann_32f(const float* pSrc, float* pDst, int len);
Status ovksWinHann_32f_I(float* pSrcDst, int len);
Status ovksWinHann_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksWinHann_32fc_I(Complex32f* pSrcDst, int len);
Status ovksWinHann_64f(const double* pSrc, double* pDst, int len);
Status ovksWinHann_64f_I(double* pSrcDst, int len);
Status ovksWinHann_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksWinHann_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name WinHamming
 *  w(n) = 0.54 - 0.46 cos(n theta). N >= 3. The centre of an odd length is copied. @{ */
Status ovksWinHamming_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksWinHamming_16s_I(int16_t* pSrcDst, int len);
Status ovksWinHamming_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksWinHamming_16sc_I(Complex16s* pSrcDst, int len);
Status ovksWinHamming_32f(const float* pSrc, float* pDst, int len);
Status ovksWinHamming_32f_I(float* pSrcDst, int len);
Status ovksWinHamming_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksWinHamming_32fc_I(Complex32f* pSrcDst, int len);
Status ovksWinHamming_64f(const double* pSrc, double* pDst, int len);
Status ovksWinHamming_64f_I(double* pSrcDst, int len);
Status ovksWinHamming_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksWinHamming_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name WinBlackman
 *  w(n) = (alpha + 1) / 2 - 0.5 cos(n theta) - (alpha / 2) cos(2 n theta). N >= 3; three elements give
 *  0, pSrc[1], 0. @{ */
Status ovksWinBlackman_16s(const int16_t* pSrc, int16_t* pDst, int len, float alpha);
Status ovksWinBlackman_16s_I(int16_t* pSrcDst, int len, float alpha);
Status ovksWinBlackman_16sc(const Complex16s* pSrc, Complex16s* pDst, int len, float alpha);
Status ovksWinBlackman_16sc_I(Complex16s* pSrcDst, int len, float alpha);
Status ovksWinBlackman_32f(const float* pSrc, float* pDst, int len, float alpha);
Status ovksWinBlackman_32f_I(float* pSrcDst, int len, float alpha);
Status ovksWinBlackman_32fc(const Complex32f* pSrc, Complex32f* pDst, int len, float alpha);
Status ovksWinBlackman_32fc_I(Complex32f* pSrcDst, int len, float alpha);
Status ovksWinBlackman_64f(const double* pSrc, double* pDst, int len, double alpha);
Status ovksWinBlackman_64f_I(double* pSrcDst, int len, double alpha);
Status ovksWinBlackman_64fc(const Complex64f* pSrc, Complex64f* pDst, int len, double alpha);
Status ovksWinBlackman_64fc_I(Complex64f* pSrcDst, int len, double alpha);
/** @} */

/** @name WinBlackmanStd
 *  Blackman with alpha = -0.16. N >= 3. @{ */
Status ovksWinBlackmanStd_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksWinBlackmanStd_16s_I(int16_t* pSrcDst, int len);
Status ovksWinBlackmanStd_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksWinBlackmanStd_16sc_I(Complex16s* pSrcDst, int len);
Status ovksWinBlackmanStd_32f(const float* pSrc, float* pDst, int len);
Status ovksWinBlackmanStd_32f_I(float* pSrcDst, int len);
Status ovksWinBlackmanStd_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksWinBlackmanStd_32fc_I(Complex32f* pSrcDst, int len);
Status ovksWinBlackmanStd_64f(const double* pSrc, double* pDst, int len);
Status ovksWinBlackmanStd_64f_I(double* pSrcDst, int len);
Status ovksWinBlackmanStd_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksWinBlackmanStd_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name WinBlackmanOpt
 *  Blackman with alpha = -(0.5 / cos(pi / (N-1)))^2. N >= 4; the length is checked ahead of the pointers. @{ */
Status ovksWinBlackmanOpt_16s(const int16_t* pSrc, int16_t* pDst, int len);
Status ovksWinBlackmanOpt_16s_I(int16_t* pSrcDst, int len);
Status ovksWinBlackmanOpt_16sc(const Complex16s* pSrc, Complex16s* pDst, int len);
Status ovksWinBlackmanOpt_16sc_I(Complex16s* pSrcDst, int len);
Status ovksWinBlackmanOpt_32f(const float* pSrc, float* pDst, int len);
Status ovksWinBlackmanOpt_32f_I(float* pSrcDst, int len);
Status ovksWinBlackmanOpt_32fc(const Complex32f* pSrc, Complex32f* pDst, int len);
Status ovksWinBlackmanOpt_32fc_I(Complex32f* pSrcDst, int len);
Status ovksWinBlackmanOpt_64f(const double* pSrc, double* pDst, int len);
Status ovksWinBlackmanOpt_64f_I(double* pSrcDst, int len);
Status ovksWinBlackmanOpt_64fc(const Complex64f* pSrc, Complex64f* pDst, int len);
Status ovksWinBlackmanOpt_64fc_I(Complex64f* pSrcDst, int len);
/** @} */

/** @name WinKaiser
 *  w(n) = I0(beta sqrt(1 - (1 - 2 n / (N-1))^2)) / I0(beta), beta = |alpha| (N-1) / 2, I0 the modified Bessel function.
 *  N >= 1; a single element is copied. StatusHugeWin when beta is above 38. @{ */
Status ovksWinKaiser_16s(const int16_t* pSrc, int16_t* pDst, int len, float alpha);
Status ovksWinKaiser_16s_I(int16_t* pSrcDst, int len, float alpha);
Status ovksWinKaiser_16sc(const Complex16s* pSrc, Complex16s* pDst, int len, float alpha);
Status ovksWinKaiser_16sc_I(Complex16s* pSrcDst, int len, float alpha);
Status ovksWinKaiser_32f(const float* pSrc, float* pDst, int len, float alpha);
Status ovksWinKaiser_32f_I(float* pSrcDst, int len, float alpha);
Status ovksWinKaiser_32fc(const Complex32f* pSrc, Complex32f* pDst, int len, float alpha);
Status ovksWinKaiser_32fc_I(Complex32f* pSrcDst, int len, float alpha);
Status ovksWinKaiser_64f(const double* pSrc, double* pDst, int len, double alpha);
Status ovksWinKaiser_64f_I(double* pSrcDst, int len, double alpha);
Status ovksWinKaiser_64fc(const Complex64f* pSrc, Complex64f* pDst, int len, double alpha);
Status ovksWinKaiser_64fc_I(Complex64f* pSrcDst, int len, double alpha);
/** @} */

/** @name States of the uniform generators
 *  @{ */
typedef struct RandUniformState_8u RandUniformState_8u;
typedef struct RandUniformState_16s RandUniformState_16s;
typedef struct RandUniformState_32f RandUniformState_32f;
typedef struct RandUniformState_64f RandUniformState_64f;
/** @} */

/** @name States of the Gaussian generators
 *  @{ */
typedef struct RandGaussState_8u RandGaussState_8u;
typedef struct RandGaussState_16s RandGaussState_16s;
typedef struct RandGaussState_32f RandGaussState_32f;
typedef struct RandGaussState_64f RandGaussState_64f;
/** @} */

/** @name RandUniformGetSize
 *  Writes the bytes that a state takes. StatusNullPtr or StatusOk. @{ */
Status ovksRandUniformGetSize_8u(int* pSize);
Status ovksRandUniformGetSize_16s(int* pSize);
Status ovksRandUniformGetSize_32f(int* pSize);
Status ovksRandUniformGetSize_64f(int* pSize);
/** @} */

/** @name RandUniformInit
 *  Starts a sequence of values between @p low and @p high from any @p seed. StatusNullPtr or StatusOk. @{ */
Status ovksRandUniformInit_8u(RandUniformState_8u* pState, uint8_t low, uint8_t high, uint32_t seed);
Status ovksRandUniformInit_16s(RandUniformState_16s* pState, int16_t low, int16_t high, uint32_t seed);
Status ovksRandUniformInit_32f(RandUniformState_32f* pState, float low, float high, uint32_t seed);
Status ovksRandUniformInit_64f(RandUniformState_64f* pState, double low, double high, uint32_t seed);
/** @} */

/** @name RandUniform
 *  Writes the next @p len values, evenly distributed: u * (high - low) / 2^32 + (low + high) / 2 for engine values u in
 *  [-2^31, 2^31), in 64f with one rounding. Values before rounding to the type cover [low, high); integers are rounded
 *  to nearest, ties to even, and lie in [low, high]. @{ */
Status ovksRandUniform_8u(uint8_t* pDst, int len, RandUniformState_8u* pState);
Status ovksRandUniform_16s(int16_t* pDst, int len, RandUniformState_16s* pState);
Status ovksRandUniform_32f(float* pDst, int len, RandUniformState_32f* pState);
Status ovksRandUniform_64f(double* pDst, int len, RandUniformState_64f* pState);
/** @} */

/** @name RandGaussGetSize
 *  Writes the bytes that a state takes. StatusNullPtr or StatusOk. @{ */
Status ovksRandGaussGetSize_8u(int* pSize);
Status ovksRandGaussGetSize_16s(int* pSize);
Status ovksRandGaussGetSize_32f(int* pSize);
Status ovksRandGaussGetSize_64f(int* pSize);
/** @} */

/** @name RandGaussInit
 *  Starts a normally distributed sequence from any @p seed. StatusNullPtr or StatusOk. @{ */
Status ovksRandGaussInit_8u(RandGaussState_8u* pState, uint8_t mean, uint8_t stdDev, uint32_t seed);
Status ovksRandGaussInit_16s(RandGaussState_16s* pState, int16_t mean, int16_t stdDev, uint32_t seed);
Status ovksRandGaussInit_32f(RandGaussState_32f* pState, float mean, float stdDev, uint32_t seed);
Status ovksRandGaussInit_64f(RandGaussState_64f* pState, double mean, double stdDev, uint32_t seed);
/** @} */

/** @name RandGauss
 *  Writes the next @p len values mean + stdDev * z, z being normal deviates of the polar method in 64f. Integers are
 *  rounded to nearest, ties to even, and saturated. @{ */
Status ovksRandGauss_8u(uint8_t* pDst, int len, RandGaussState_8u* pState);
Status ovksRandGauss_16s(int16_t* pDst, int len, RandGaussState_16s* pState);
Status ovksRandGauss_32f(float* pDst, int len, RandGaussState_32f* pState);
Status ovksRandGauss_64f(double* pDst, int len, RandGaussState_64f* pState);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
