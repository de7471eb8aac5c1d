/* SPDX-License-Identifier: MIT */
/** @file
 *  Sorting in place, with or without the positions before the sort, by comparison or by digits.
 *
 *  Throughout the family:
 *  - NaNs come last in ascending and first in descending order; -0.0 and 0.0 count as equal. Every element keeps its bits.
 *  - Equal elements come out in no promised order of positions, except where a group says so.
 *  - No input takes quadratic time, no call allocates memory, and none needs more than 70 KiB of stack.
 *  - Vectors hold @p len elements and must not overlap each other; a work buffer may stand at any address.
 *  - Statuses, in the order of checking: StatusNullPtr for a null pointer, StatusBadSize for len <= 0; then StatusOk.
 *    Nothing is written on an error. */
#ifndef OVKS_SORT_H
#define OVKS_SORT_H

#include "types.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @name Sort
 *  Sorts pSrcDst in place. @{ */
Status ovksSortAscend_16s_I(int16_t* pSrcDst, int len);
Status ovksSortAscend_16u_I(uint16_t* pSrcDst, int len);
Status ovksSortAscend_32f_I(float* pSrcDst, int len);
Status ovksSortAscend_32s_I(int32_t* pSrcDst, int len);
Status ovksSortAscend_32u_I(uint32_t* pSrcDst, int len);
Status ovksSortAscend_64f_I(double* pSrcDst, int len);
Status ovksSortAscend_8u_I(uint8_t* pSrcDst, int len);
Status ovksSortDescend_16s_I(int16_t* pSrcDst, int len);
Status ovksSortDescend_16u_I(uint16_t* pSrcDst, int len);
Status ovksSortDescend_32f_I(float* pSrcDst, int len);
Status ovksSortDescend_32s_I(int32_t* pSrcDst, int len);
Status ovksSortDescend_32u_I(uint32_t* pSrcDst, int len);
Status ovksSortDescend_64f_I(double* pSrcDst, int len);
Status ovksSortDescend_8u_I(uint8_t* pSrcDst, int len);
/** @} */

/** @name SortIndex
 *  Sorts pSrcDst in place; pDstIdx[n] is the position that pSrcDst[n] had before.
 *  8u, 16u and 16s: positions of equal elements ascend, for len up to 2^24 in the 16-bit members. @{ */
Status ovksSortIndexAscend_16s_I(int16_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_16u_I(uint16_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_32f_I(float* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_32s_I(int32_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_32u_I(uint32_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_64f_I(double* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexAscend_8u_I(uint8_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_16s_I(int16_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_16u_I(uint16_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_32f_I(float* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_32s_I(int32_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_32u_I(uint32_t* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_64f_I(double* pSrcDst, int32_t* pDstIdx, int len);
Status ovksSortIndexDescend_8u_I(uint8_t* pSrcDst, int32_t* pDstIdx, int len);
/** @} */

/** Writes to @p pBufSize the bytes that the radix sorts of @p len elements need of a work buffer.
 *  @p dataType names the elements: DataType8u, 16u, 16s, 32u, 32s, 32f or 64f; for any other the size is 0 and the status
 *  StatusBadDataType. A size beyond 2^31 - 1 gives 0 and StatusBadSize. */
Status ovksSortRadixGetBufferSize(int len, DataType dataType, int* pBufSize);

/** @name SortRadix
 *  Sorts pSrcDst in place as the Sort members do, with a work buffer of the queried size. Where the elements differ in
 *  few digits, each of those takes one pass and the others none. @{ */
Status ovksSortRadixAscend_16s_I(int16_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_16u_I(uint16_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_32f_I(float* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_32s_I(int32_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_32u_I(uint32_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_64f_I(double* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixAscend_8u_I(uint8_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_16s_I(int16_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_16u_I(uint16_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_32f_I(float* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_32s_I(int32_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_32u_I(uint32_t* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_64f_I(double* pSrcDst, int len, uint8_t* pBuffer);
Status ovksSortRadixDescend_8u_I(uint8_t* pSrcDst, int len, uint8_t* pBuffer);
/** @} */

/** @name SortRadixIndex
 *  pDstIdx[n] is the position in pSrc of the n-th element in sorted order; pSrc stays as it is.
 *  8u, 16u and 16s: positions of equal elements ascend, for len up to 2^24 in the 16-bit members. @{ */
Status ovksSortRadixIndexAscend_16s(const int16_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_16u(const uint16_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_32f(const float* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_32s(const int32_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_32u(const uint32_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_64f(const double* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexAscend_8u(const uint8_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_16s(const int16_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_16u(const uint16_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_32f(const float* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_32s(const int32_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_32u(const uint32_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_64f(const double* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
Status ovksSortRadixIndexDescend_8u(const uint8_t* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer);
/** @} */

#ifdef __cplusplus
}
#endif

#endif
