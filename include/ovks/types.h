/* SPDX-License-Identifier: MIT */
/** @file
 *  Element types, status codes and enumerations shared by every family of the library.
 *
 *  Real elements are the language's own types; the suffixes of the exported names stand for them:
 *  `8u` uint8_t, `8s` int8_t, `16u` uint16_t, `16s` int16_t, `32u` uint32_t, `32s` int32_t, `64u` uint64_t,
 *  `64s` int64_t, `32f` float, `64f` double. Complex elements are pairs, real part first. */
#ifndef OVKS_TYPES_H
#define OVKS_TYPES_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct { int8_t re, im; } Complex8s;    /**< suffix `8sc` */
typedef struct { int16_t re, im; } Complex16s;  /**< suffix `16sc` */
typedef struct { int32_t re, im; } Complex32s;  /**< suffix `32sc` */
typedef struct { int64_t re, im; } Complex64s;  /**< suffix `64sc` */
typedef struct { float re, im; } Complex32f;    /**< suffix `32fc` */
typedef struct { double re, im; } Complex64f;   /**< suffix `64fc` */

/** Outcome of a call: 0 is success, a negative value an error after which no output has been written, a positive value
 *  a warning after which every output has been written. */
typedef int32_t Status;

enum {
  StatusDivByZero = 6,         /**< warning: at least one divisor was zero; every element was written */
  StatusOk = 0,                /**< success */
  StatusBadArg = -5,           /**< an enumerated argument has a value outside its set */
  StatusBadSize = -6,          /**< a length or size is out of range, mostly zero or below */
  StatusNullPtr = -8,          /**< a required pointer is null */
  StatusDivByZeroErr = -10,    /**< the constant divisor is zero; nothing was written */
  StatusBadDataType = -12,     /**< a `DataType` that the call does not accept */
  StatusBadFFTOrder = -15,     /**< an FFT order out of range */
  StatusBadFFTFlag = -16,      /**< an FFT normalisation flag that is not one of 1, 2, 4, 8 */
  StatusContextMismatch = -17, /**< the specification or state object is of another kind, or not initialised */
  StatusBadThresholdPair = -18,/**< the lower threshold lies above the upper one */
  StatusBadThreshold = -19,    /**< a negative magnitude threshold */
  StatusBadPhase = -30,        /**< a phase below 0 or not below its factor */
  StatusBadShift = -32,        /**< a shift count below 0 */
  StatusHugeWin = -39,         /**< the Kaiser window's parameter is too large for the length */
  StatusBadRoundMode = -213,   /**< a rounding mode that is not 0, 1 or 2 */
  StatusBadAlgType = -228      /**< a `FilterAlg` that is not 0, 1 or 2 */
};

/** Rounding of a scaled value to an integer. */
typedef int32_t RoundMode;
enum {
  RoundZero = 0,    /**< toward zero */
  RoundNear = 1,    /**< to nearest, ties to even */
  RoundHalfAway = 2 /**< to nearest, ties away from zero */
};

/** Speed or accuracy hint. Only `AlgHintFast` ever selects another path; no value is rejected. */
typedef int32_t AlgHint;
enum { AlgHintNone = 0, AlgHintFast = 1, AlgHintAccurate = 2 };

/** Element type code, for calls that serve several types. */
typedef int32_t DataType;
enum {
  DataType8u = 1,
  DataType16u = 5,
  DataType16s = 7,
  DataType32u = 9,
  DataType32s = 11,
  DataType32f = 13,
  DataType32fc = 14,
  DataType64f = 19,
  DataType64fc = 20
};

/** Algorithm of filtering and convolution. */
typedef int32_t FilterAlg;
enum { FilterAlgAuto = 0, FilterAlgDirect = 1, FilterAlgFFT = 2 };

/** Normalisation of the FFT, N being the transform's length. */
typedef int32_t FFTFlag;
enum {
  FFTDivFwdByN = 1,   /**< the forward result is multiplied by 1/N */
  FFTDivInvByN = 2,   /**< the inverse result is multiplied by 1/N */
  FFTDivBySqrtN = 4,  /**< both results are multiplied by 1/sqrt(N) */
  FFTNoDiv = 8        /**< no factor in either direction */
};

/** What build of the library this is. */
typedef struct {
  int32_t major;         /**< first part of the version */
  int32_t minor;         /**< second part of the version */
  int32_t majorBuild;    /**< third part of the version */
  int32_t build;         /**< build number */
  char targetCpu[4];     /**< target code of the build, zero-padded */
  const char* Name;      /**< name of the module */
  const char* Version;   /**< the version as text */
  const char* BuildDate; /**< date of the build */
} LibraryVersion;

#ifdef __cplusplus
}
#endif

#endif
