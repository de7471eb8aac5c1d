/* SPDX-License-Identifier: MIT */
/** @file
 *  Block FIR filtering and linear convolution.
 *
 *  A FIR filter is used in three steps: ovksFIRSRGetSize() tells the sizes of a specification and of a work buffer, an
 *  Init function builds the specification from the taps in memory of the caller's, and then any number of calls filter
 *  blocks. The specification is only read from then on: threads may share it, each with a work buffer and delay lines
 *  of its own. It holds pointers into itself, so it must not be moved. No memory needs any alignment. */
#ifndef OVKS_FILTER_H
#define OVKS_FILTER_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct FIRSRSpec_32f FIRSRSpec_32f;   /**< filter of 32f, and of 16s data by 32f taps */
typedef struct FIRSRSpec_64f FIRSRSpec_64f;   /**< filter of 64f */
typedef struct FIRSRSpec_32fc FIRSRSpec_32fc; /**< filter of 32fc, and of 16sc data by 32fc taps */
typedef struct FIRSRSpec_64fc FIRSRSpec_64fc; /**< filter of 64fc */

/** Writes the sizes in bytes of a filter's specification and work buffer. @p tapsType is the type of the taps:
 *  DataType32f, DataType32fc, DataType64f or DataType64fc. The sizes serve every algorithm.
 *  Statuses: StatusBadSize for tapsLen < 1, StatusBadDataType, StatusNullPtr, StatusBadSize for a size beyond 2^31 - 1. */
Status ovksFIRSRGetSize(int tapsLen, DataType tapsType, int* pSpecSize, int* pBufSize);

/** @name FIRSRInit
 *  Builds a filter's specification from @p tapsLen taps, the first of which multiplies the newest sample.
 *  @param algType FilterAlgDirect filters in the time domain, FilterAlgFFT by overlap-save; FilterAlgAuto takes the FFT
 *  for blocks and filters long enough: 256 samples by 52 taps for 32f, 512 by 34 for 64f, 128 by 18 for 32fc, 256 by 21
 *  for 64fc. 16-bit data are always filtered in the time domain.
 *  Statuses: StatusBadSize for tapsLen < 1, StatusNullPtr, StatusBadAlgType; then StatusOk. @{ */
Status ovksFIRSRInit_32f(const float* pTaps, int tapsLen, FilterAlg algType, FIRSRSpec_32f* pSpec);
Status ovksFIRSRInit_64f(const double* pTaps, int tapsLen, FilterAlg algType, FIRSRSpec_64f* pSpec);
Status ovksFIRSRInit_32fc(const Complex32f* pTaps, int tapsLen, FilterAlg algType, FIRSRSpec_32fc* pSpec);
Status ovksFIRSRInit_64fc(const Complex64f* pTaps, int tapsLen, FilterAlg algType, FIRSRSpec_64fc* pSpec);
/** @} */

/** @name FIRSR
 *  pDst[n] = sum of taps[k] * x[n - k], 0 <= k < tapsLen, x being the source delay line followed by the source.
 *  @param pDlySrc the tapsLen - 1 samples before pSrc[0], oldest first; zeros when null.
 *  @param pDlyDst receives the last tapsLen - 1 samples of x, the source delay line of the next call; may be null.
 *  @param pBuf    scratch memory of the queried size.
 *
 *  pDst may be pSrc or pDlySrc, and pDlyDst may be pDlySrc. Sums are formed by fused multiply-adds in the data's
 *  precision. In the time domain a stream may be cut into blocks of any lengths without changing a bit; the FFT gives
 *  the same up to rounding. 16-bit samples are filtered in single precision, rounded to nearest with ties to even, and
 *  saturated; the delay lines hold the samples themselves.
 *  Statuses: StatusNullPtr for pSpec, pSrc, pDst, pBuf; StatusBadSize for numIters < 1; then StatusOk. @{ */
Status ovksFIRSR_32f(const float* pSrc, float* pDst, int numIters, const FIRSRSpec_32f* pSpec, const float* pDlySrc,
                     float* pDlyDst, uint8_t* pBuf);
Status ovksFIRSR_64f(const double* pSrc, double* pDst, int numIters, const FIRSRSpec_64f* pSpec, const double* pDlySrc,
                     double* pDlyDst, uint8_t* pBuf);
Status ovksFIRSR_32fc(const Complex32f* pSrc, Complex32f* pDst, int numIters, const FIRSRSpec_32fc* pSpec,
                      const Complex32f* pDlySrc, Complex32f* pDlyDst, uint8_t* pBuf);
Status ovksFIRSR_64fc(const Complex64f* pSrc, Complex64f* pDst, int numIters, const FIRSRSpec_64fc* pSpec,
                      const Complex64f* pDlySrc, Complex64f* pDlyDst, uint8_t* pBuf);
Status ovksFIRSR_16s(const int16_t* pSrc, int16_t* pDst, int numIters, const FIRSRSpec_32f* pSpec,
                     const int16_t* pDlySrc, int16_t* pDlyDst, uint8_t* pBuf);
Status ovksFIRSR_16sc(const Complex16s* pSrc, Complex16s* pDst, int numIters, const FIRSRSpec_32fc* pSpec,
                      const Complex16s* pDlySrc, Complex16s* pDlyDst, uint8_t* pBuf);
/** @} */

/** Writes the size in bytes of the work buffer of a convolution. Of @p algType only the low 8 bits count; FilterAlgAuto
 *  takes the FFT when the result has at least 512 elements and the shorter source at least 64.
 *  Statuses: StatusNullPtr, StatusBadSize for a length < 1, StatusBadAlgType; then, with 0 written, StatusBadDataType for
 *  other types than DataType32f and 64f, failures of ovksFFTGetSize_R_32f(), StatusBadSize beyond 2^31 - 1; StatusOk. */
Status ovksConvolveGetBufferSize(int src1Len, int src2Len, DataType dataType, FilterAlg algType, int* pBufferSize);

/** @name Convolve
 *  pDst[n] = sum over k of pSrc1[k] * pSrc2[n - k], for 0 <= n < src1Len + src2Len - 1. The destination must not overlap
 *  the sources. Exchanging the sources does not change the result. Of @p algType only the low 8 bits count.
 *  Statuses: StatusNullPtr for pSrc1, pSrc2, pDst, pBuffer; StatusBadSize for a length < 1; StatusBadAlgType; then
 *  StatusOk. @{ */
Status ovksConvolve_32f(const float* pSrc1, int src1Len, const float* pSrc2, int src2Len, float* pDst,
                        FilterAlg algType, uint8_t* pBuffer);
Status ovksConvolve_64f(const double* pSrc1, int src1Len, const double* pSrc2, int src2Len, double* pDst,
                        FilterAlg algType, uint8_t* pBuffer);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
