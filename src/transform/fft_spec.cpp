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
  using V = Vec<int32_t, 8>;
  const int bits = order - 2;
  V lane;
  for (int i = 0; i < 8; ++i) lane[i] = 2 * (bitReversed(i, 3) << (bits - 3));
  const int32_t groups = 1 << (bits - 3);
  int32_t reversed = 0;
  for (int32_t i = 0; i < groups; ++i) {
    store(table + 8 * i, lane + 2 * reversed);
    int32_t bit = groups / 2;
    for (; reversed & bit; bit /= 2) reversed -= bit;
    reversed += bit;
  }
  table[8 * groups] = 0;
}

template <class T>
T* append(T* p, Complex<T> w) {
  p[0] = w.re;
  p[1] = w.im;
  return p + 2;
}

// The points in V's lanes.
template <class V, class Order>
OVKS_INLINE auto pointNumbers() {
  Vec<int32_t, lanes<V>> n;
  for (int i = 0; i < lanes<V>; ++i) n[i] = Order::template lane<V>(i);
  return n;
}

// Points step, 2 step ... (n - 1) step of the circle.
template <class T>
T* appendMultiples(T* p, const UnitCircle<T>& circle, int32_t step, int n) {
  using V = Vec<T>;
  for (int j = 1; j < n; j += lanes<V>) {
    T points[2 * lanes<V>];
    Interleaved<T>{points}.put(0, circle.template points<V>((j + pointNumbers<V, ByChunks>()) * step));
    const int count = 2 * (n - j < lanes<V> ? n - j : lanes<V>);
    for (int i = 0; i < count; i += 2) p = append(p, {points[i], points[i + 1]});
  }
  return p;
}

// Vectors of twiddles for rows row ... row + lanes - 1 of the closing pass, for their points 1 ... lanes - 1.
template <class V, class Order, class T>
void makeTile(T* p, const UnitCircle<T>& circle, int32_t row) {
  const auto rows = row + pointNumbers<V, Order>();
  for (int l = 1; l < lanes<V>; ++l, p += 2 * lanes<V>) {
    const Complex<V> w = circle.template points<V>(l * rows);
    store(p, w.re);
    store(p + lanes<V>, w.im);
  }
}

// Twiddles of the passes over columns: see passes.hpp.
template <class T>
void makeColumns(T* p, const T* sine, int sineOrder, const Passes& passes) {
  int blockBits = passes.bits[0];
  for (int s = 1; s < passes.count; ++s) {
    const int bits = passes.bits[s];
    const UnitCircle<T> circle(sine, sineOrder, blockBits + bits);
    for (int32_t b = 0; b < 1 << blockBits; ++b) p = appendMultiples(p, circle, bitReversed(b, blockBits), 1 << bits);
    blockBits += bits;
  }
}

template <class Order, class T>
void makeTwiddles(T* table, const T* sine, int sineOrder, int order) {
  using V = Vec<T>;
  constexpr int L = lanes<V>;
  const int32_t rows = (1 << order) / L;
  const TwiddleLayout<T> layout(order);
  const UnitCircle<T> circle(sine, sineOrder, order);
  if (order > kMaxInCacheOrder<T>) {
    makeTile<V, Order>(table + layout.tileRows, circle, 0);
    T* p = table + layout.tiles;
    for (int32_t k = 0; k < rows; k += L) p = appendMultiples(p, circle, k, L);
  } else {
    for (int32_t k = 0; k < rows; k += L) makeTile<V, Order>(table + k * 2 * (L - 1), circle, k);
  }
  makeColumns(table + layout.columns, sine, sineOrder, passesOf<T>(order));
}

// See real_split.hpp.
template <class V, class T>
void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  const UnitCircle<T> circle(sine, sineOrder, order);
  const bool twoLevels = splitInTwoLevels<T>(order);
  const int32_t pairs = twoLevels ? 1024 : (1 << order) / 4;
  for (int32_t i = 0; i < pairs; i += lanes<V>, table += 2 * lanes<V>) {
    const Complex<V> w = circle.template points<V>(i + 1 + pointNumbers<V, ByChunks>());
    store(table, w.im);
    store(table + lanes<V>, -w.re);
  }
  if (!twoLevels) return;
  for (int32_t j = 0; j < 1 << (order - 12); ++j) table = append(table, circle(1024 * j));
}

template <class T>
void makeSplitTwiddles(T* table, const T* sine, int sineOrder, int order) {
  if (splitLanes<T>(order) == kLanes<T>) makeSplitTwiddles<Vec<T>>(table, sine, sineOrder, order);
  else if constexpr (kAvx512 && sizeof(T) == 4) makeSplitTwiddles<Vec<T, kLanes<T> / 2>>(table, sine, sineOrder, order);
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
    if (order > kMaxShortOrder<T>) {
      if (kind == Kind::split) makeTwiddles<InOrder>(twiddles, sine, sineOrder, order);
      else makeTwiddles<ByChunks>(twiddles, sine, sineOrder, order);
    }
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
