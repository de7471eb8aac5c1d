// SPDX-License-Identifier: MIT
// Sizes and initialisation of FFT specifications.
#include "core/export.hpp"
#include "ovks/transform.h"
#include "transform/complex_transform.hpp"
#include "transform/real_split.hpp"
#include "transform/spec.hpp"
#include "transform/unit_circle.hpp"

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
  int32_t reversed = 0;
  for (int32_t i = 0; i < entries; ++i) {
    table[i] = 2 * reversed;
    int32_t bit = entries / 2;
    for (; reversed & bit; bit /= 2) reversed -= bit;
    reversed += bit;
  }
  table[entries] = 0;
}

template <class T>
T* append(T* p, Complex<T> w) {
  p[0] = w.re;
  p[1] = w.im;
  return p + 2;
}

// Vectors of `lanes` twiddles for rows row ... row + lanes - 1 of the closing pass, for lanes 1 ... lanes - 1.
template <class T>
void makeTile(T* p, const UnitCircle<T>& circle, int64_t row, int lanes) {
  for (int l = 1; l < lanes; ++l, p += 2 * lanes) {
    for (int r = 0; r < lanes; ++r) {
      const Complex<T> w = circle(l * (row + r));
      p[r] = w.re;
      p[lanes + r] = w.im;
    }
  }
}

// Twiddles of the passes over columns: see passes.hpp.
template <class T>
void makeColumns(T* p, const T* sine, int sineOrder, const Passes& passes) {
  int blockBits = passes.bits[0];
  for (int s = 1; s < passes.count; ++s) {
    const int bits = passes.bits[s];
    const UnitCircle<T> circle(sine, sineOrder, blockBits + bits);
    for (int64_t b = 0; b < int64_t{1} << blockBits; ++b) {
      const int64_t c = bitReversed(static_cast<int>(b), blockBits);
      for (int j = 1; j < 1 << bits; ++j) p = append(p, circle(c * j));
    }
    blockBits += bits;
  }
}

template <class T>
void makeTwiddles(T* table, const T* sine, int sineOrder, int order) {
  const int lanes = rowLanes<T>(order);
  const int64_t rows = (int64_t{1} << order) / lanes;
  const TwiddleLayout<T> layout(order);
  const UnitCircle<T> circle(sine, sineOrder, order);
  if (order > kMaxInCacheOrder<T>) {
    makeTile(table + layout.tileRows, circle, 0, lanes);
    T* p = table + layout.tiles;
    for (int64_t k = 0; k < rows; k += lanes)
      for (int l = 1; l < lanes; ++l) p = append(p, circle(l * k));
  } else {
    for (int64_t k = 0; k < rows; k += lanes) makeTile(table + k * 2 * (lanes - 1), circle, k, lanes);
  }
  makeColumns(table + layout.columns, sine, sineOrder, passesOf<T>(order));
}

// See real_split.hpp.
template <class T>
void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  const UnitCircle<T> circle(sine, sineOrder, order);
  const bool twoLevels = splitInTwoLevels<T>(order);
  const int64_t pairs = twoLevels ? 1024 : (int64_t{1} << order) / 4;
  const int lanes = splitLanes<T>(order);
  for (int64_t i = 0; i < pairs; ++i) {
    const Complex<T> w = circle(i + 1);
    T* p = table + i / lanes * 2 * lanes + i % lanes;
    p[0] = w.im;
    p[lanes] = -w.re;
  }
  if (!twoLevels) return;
  T* coarse = table + 2 * 1024;
  for (int64_t j = 0; j < int64_t{1} << (order - 12); ++j) coarse = append(coarse, circle(1024 * j));
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
void makeTables(Spec<T>& spec, const Sizes& sizes, Kind kind, const T* sine, int sineOrder) {
  const int order = spec.order - (kind == Kind::real);
  auto* p = reinterpret_cast<uint8_t*>(&spec) + aligned(int64_t{kHeaderBytes});
  if (sizes.twiddles > 0) {
    auto* bitReversal = reinterpret_cast<int32_t*>(p);
    auto* twiddles = reinterpret_cast<T*>(p + sizes.bitReversal);
    makeBitReversal(bitReversal, order);
    makeTwiddles(twiddles, sine, sineOrder, order);
    spec.bitReversal = bitReversal;
    spec.twiddles = twiddles;
    p += sizes.bitReversal + sizes.twiddles;
  }
  if (sizes.split > 0) {
    auto* split = reinterpret_cast<T*>(p);
    makeSplitTwiddles(split, sine, sineOrder, spec.order);
    spec.splitTwiddles = split;
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
  const T* sine = kQuarterWave<T>.sine;
  if (sizes.quarterWave > 0) {
    if (!pSpecBuffer) return StatusNullPtr;
    T* table = reinterpret_cast<T*>(aligned(pSpecBuffer));
    computeQuarterWave(table, order);
    sine = table;
  }
  makeTables(spec, sizes, kind, sine, sizes.quarterWave > 0 ? order : kConstantOrder);
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
