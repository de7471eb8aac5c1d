// SPDX-License-Identifier: MIT
// Sizes and initialisation of FFT specifications.
#include "core/export.hpp"
#include "ovks/transform.h"
#include "transform/constant_tables.hpp"
#include "transform/spec.hpp"
#include "transform/twiddle_tables.hpp"

namespace {

using namespace ovks;
using namespace ovks::fft;

bool isFlag(int flag) {
  return flag == FFTNoDiv || flag == FFTDivBySqrtN || flag == FFTDivFwdByN || flag == FFTDivInvByN;
}

template <class T, Kind kind>
Status getSize(int order, int flag, AlgHint, int* pSpecSize, int* pSpecBufferSize, int* pBufferSize) {
  if (static_cast<unsigned>(order) > 30) return StatusBadFFTOrder;
  if (!pSpecSize || !pSpecBufferSize || !pBufferSize) return StatusNullPtr;
  if (!isFlag(flag)) return StatusBadFFTFlag;
  if (order > maxOrder<T>(kind)) return StatusBadFFTOrder;
  const Sizes sizes = sizesOf<T>(kind, order);
  *pSpecSize = static_cast<int>(sizes.spec());
  *pSpecBufferSize = static_cast<int>(sizes.specBuffer());
  *pBufferSize = static_cast<int>(sizes.workBuffer());
  return StatusOk;
}

// Entry i is twice i with its order - 2 bits reversed; a zero follows the last.
void makeBitReversal(int32_t* table, int order) {
  const int32_t entries = 1 << (order - 2);
  fft::makeBitReversal(table, order, entries);
  table[entries] = 0;
}

template <class T>
void setFactor(Spec<T>& spec, int flag) {
  spec.scaleForward = flag == FFTDivFwdByN || flag == FFTDivBySqrtN;
  spec.scaleInverse = flag == FFTDivInvByN || flag == FFTDivBySqrtN;
  const double n = static_cast<double>(int64_t{1} << spec.order);
  if (flag == FFTDivBySqrtN) spec.factor = static_cast<T>(1 / __builtin_sqrt(n));
  else if (flag != FFTNoDiv) spec.factor = static_cast<T>(1 / n);
}

template <class T>
const T* twiddlesOf(T* area, Kind kind, const T* sine, int sineOrder, int order, const Passes& passes) {
  if (kind == Kind::split) {
    if (order <= kMaxShortOrder<T>) return nullptr;
    makeTwiddles<InOrder>(area, sine, sineOrder, order, passes);
  } else {
    if (order < kMinPassesOrder<T>) return nullptr;
    if (order <= kMaxConstantOrder) return constantTwiddles<T>(order);
    makeTwiddles<ByChunks>(area, sine, sineOrder, order, passes);
  }
  return area;
}

template <class T>
const T* splitTwiddlesOf(T* area, const T* sine, int sineOrder, int order) {
  if (order <= kMaxConstantSplitOrder) return constantSplitTwiddles<T>(order);
  makeSplitTwiddles(area, sine, sineOrder, order);
  return area;
}

template <class T>
const T* realTilesOf(T* area, const T* sine, int sineOrder, int order) {
  if (!splitInPasses<T>(order)) return nullptr;
  if (order <= kMaxConstantSplitOrder) return constantRealTiles<T>(order);
  makeRealTiles(area, sine, sineOrder, order);
  return area;
}

template <class T>
void makeTables(Spec<T>& spec, const Sizes& sizes, Kind kind, const T* sine, int sineOrder) {
  const int order = spec.order - (kind == Kind::real);
  auto* p = reinterpret_cast<uint8_t*>(&spec) + aligned(int64_t{kHeaderBytes});
  if (sizes.twiddles > 0) {
    auto* bitReversal = reinterpret_cast<int32_t*>(p);
    makeBitReversal(bitReversal, order);
    spec.bitReversal = bitReversal;
    const bool columnsFirst = kind == Kind::real && splitInPasses<T>(spec.order);
    const Passes& passes = columnsFirst ? passesOf<T>(order) : complexPassesOf<T>(order);
    spec.twiddles = twiddlesOf(reinterpret_cast<T*>(p + sizes.bitReversal), kind, sine, sineOrder, order, passes);
    p += sizes.bitReversal + sizes.twiddles;
  }
  if (sizes.split > 0) {
    spec.splitTwiddles = splitTwiddlesOf(reinterpret_cast<T*>(p), sine, sineOrder, spec.order);
    spec.realTiles = realTilesOf(reinterpret_cast<T*>(p + sizes.split), sine, sineOrder, spec.order);
  }
}

template <class T, Kind kind, class Object>
Status init(Object** ppSpec, int order, int flag, AlgHint hint, uint8_t* pSpec, uint8_t* pSpecBuffer) {
  if (!ppSpec) return StatusNullPtr;
  if (static_cast<unsigned>(order) > unsigned{maxOrder<T>(kind)}) return StatusBadFFTOrder;
  if (!pSpec) return StatusNullPtr;
  auto& spec = *reinterpret_cast<Spec<T>*>(aligned(pSpec));
  __builtin_memset(static_cast<void*>(&spec), 0, kHeaderBytes);
  spec.order = order;
  spec.hint = hint;
  if (!isFlag(flag)) return StatusBadFFTFlag;
  // A split specification is an interleaved one under another mark, which it gets when it is complete.
  spec.contextId = contextOf<T>(kind == Kind::split ? Kind::interleaved : kind);
  setFactor(spec, flag);
  const Sizes sizes = sizesOf<T>(kind, order);
  if (sizes.quarterWave > 0 && !pSpecBuffer) return StatusNullPtr;
  if (order > kConstantOrder) {
    T* table = reinterpret_cast<T*>(aligned(pSpecBuffer));
    computeQuarterWave(table, order);
    makeTables<T>(spec, sizes, kind, table, order);
  } else {
    makeTables(spec, sizes, kind, kQuarterWave<T>.sine, kConstantOrder);
  }
  spec.bufferSize = static_cast<int32_t>(sizes.work);
  spec.contextId = contextOf<T>(kind);
  *ppSpec = reinterpret_cast<Object*>(&spec);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksFFTGetSize_C_32fc, getSize<float, Kind::interleaved>);
OVKS_EXPORT(ovksFFTGetSize_C_32f, getSize<float, Kind::split>);
OVKS_EXPORT(ovksFFTGetSize_R_32f, getSize<float, Kind::real>);
OVKS_EXPORT(ovksFFTGetSize_C_64fc, getSize<double, Kind::interleaved>);
OVKS_EXPORT(ovksFFTGetSize_C_64f, getSize<double, Kind::split>);
OVKS_EXPORT(ovksFFTGetSize_R_64f, getSize<double, Kind::real>);

OVKS_EXPORT(ovksFFTInit_C_32fc, init<float, Kind::interleaved>);
OVKS_EXPORT(ovksFFTInit_C_32f, init<float, Kind::split>);
OVKS_EXPORT(ovksFFTInit_R_32f, init<float, Kind::real>);
OVKS_EXPORT(ovksFFTInit_C_64fc, init<double, Kind::interleaved>);
OVKS_EXPORT(ovksFFTInit_C_64f, init<double, Kind::split>);
OVKS_EXPORT(ovksFFTInit_R_64f, init<double, Kind::real>);
