/* SPDX-License-Identifier: MIT */
/** @file
 *  Version record and aligned allocation. */
#ifndef OVKS_CORE_H
#define OVKS_CORE_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** Returns the library's constant version record, which the caller must neither free nor change; never fails. */
const LibraryVersion* ovksGetLibVersion(void);

/** @name Malloc
 *  Allocates memory for @p len elements of the suffix's type, 64-byte aligned and not initialised.
 *  Returns null when @p len is zero or below, when the byte count exceeds 2^31 - 1, and when memory is exhausted.
 *  Only ovksFree() releases the memory. Each large array that is used with others is best allocated by itself: see
 *  ovkMalloc(). @{ */
uint8_t* ovksMalloc_8u(int len);
int8_t* ovksMalloc_8s(int len);
uint16_t* ovksMalloc_16u(int len);
int16_t* ovksMalloc_16s(int len);
Complex8s* ovksMalloc_8sc(int len);
uint32_t* ovksMalloc_32u(int len);
int32_t* ovksMalloc_32s(int len);
float* ovksMalloc_32f(int len);
Complex16s* ovksMalloc_16sc(int len);
double* ovksMalloc_64f(int len);
int64_t* ovksMalloc_64s(int len);
Complex32f* ovksMalloc_32fc(int len);
Complex32s* ovksMalloc_32sc(int len);
Complex64f* ovksMalloc_64fc(int len);
Complex64s* ovksMalloc_64sc(int len);
/** @} */

/** Releases memory from the Malloc functions; a null pointer is ignored. */
void ovksFree(void* ptr);

#ifdef __cplusplus
}
#endif

#endif
