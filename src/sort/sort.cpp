// SPDX-License-Identifier: MIT
// The family's entries.
#include "ovks/sort.h"

#include "core/check.hpp"
#include "core/export.hpp"
#include "sort/radix.hpp"
#include "sort/sort.hpp"

namespace {

using namespace ovks;
using namespace ovks::sort;

enum class Direction : bool { ascending, descending };
using enum Direction;

template <Direction d, class T>
inline constexpr Order<KeyOf<T>> order = orderOf<T, d == descending>;

template <class T>
KeyOf<T>* keys(T* p) {
  return reinterpret_cast<KeyOf<T>*>(p);
}
template <class T>
const KeyOf<T>* keys(const T* p) {
  return reinterpret_cast<const KeyOf<T>*>(p);
}

template <Direction d, class T>
Status values(T* pSrcDst, int len) {
  const Status status = check(len, pSrcDst);
  if (status != StatusOk || len == 1) return status;
  sortValues(keys(pSrcDst), len, order<d, T>);
  return StatusOk;
}

template <Direction d, class T>
Status index(T* pSrcDst, int32_t* pDstIdx, int len) {
  const Status status = check(len, pSrcDst, pDstIdx);
  if (status == StatusOk) sortTagged(keys(pSrcDst), pDstIdx, len, order<d, T>);
  return status;
}

template <Direction d, class T>
Status radix(T* pSrcDst, int len, uint8_t* pBuffer) {
  const Status status = check(len, pSrcDst, pBuffer);
  if (status == StatusOk) radixSort(keys(pSrcDst), len, order<d, T>, pBuffer);
  return status;
}

template <Direction d, class T>
Status radixIndex(const T* pSrc, int32_t* pDstIdx, int len, uint8_t* pBuffer) {
  const Status status = check(len, pSrc, pDstIdx, pBuffer);
  if (status == StatusOk) radixPositions(keys(pSrc), pDstIdx, len, order<d, T>, pBuffer);
  return status;
}

Status bufferSize(int len, DataType dataType, int* pBufSize) {
  const Status status = check(len, pBufSize);
  if (status != StatusOk) return status;
  *pBufSize = 0;
  const int64_t size = radixBufferSize(len, dataType);
  if (size == 0) return StatusBadDataType;
  if (size > INT32_MAX) return StatusBadSize;
  *pBufSize = static_cast<int>(size);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksSortRadixGetBufferSize, bufferSize);

OVKS_EXPORT(ovksSortAscend_16s_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_16u_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_32f_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_32s_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_32u_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_64f_I, values<ascending>);
OVKS_EXPORT(ovksSortAscend_8u_I, values<ascending>);
OVKS_EXPORT(ovksSortDescend_16s_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_16u_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_32f_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_32s_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_32u_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_64f_I, values<descending>);
OVKS_EXPORT(ovksSortDescend_8u_I, values<descending>);

OVKS_EXPORT(ovksSortIndexAscend_16s_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_16u_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_32f_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_32s_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_32u_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_64f_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexAscend_8u_I, index<ascending>);
OVKS_EXPORT(ovksSortIndexDescend_16s_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_16u_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_32f_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_32s_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_32u_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_64f_I, index<descending>);
OVKS_EXPORT(ovksSortIndexDescend_8u_I, index<descending>);

OVKS_EXPORT(ovksSortRadixAscend_16s_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_16u_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_32f_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_32s_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_32u_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_64f_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixAscend_8u_I, radix<ascending>);
OVKS_EXPORT(ovksSortRadixDescend_16s_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_16u_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_32f_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_32s_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_32u_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_64f_I, radix<descending>);
OVKS_EXPORT(ovksSortRadixDescend_8u_I, radix<descending>);

OVKS_EXPORT(ovksSortRadixIndexAscend_16s, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_16u, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_32f, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_32s, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_32u, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_64f, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexAscend_8u, radixIndex<ascending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_16s, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_16u, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_32f, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_32s, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_32u, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_64f, radixIndex<descending>);
OVKS_EXPORT(ovksSortRadixIndexDescend_8u, radixIndex<descending>);
