// SPDX-License-Identifier: MIT
// Linear convolution of two sequences.
#include <bit>
#include <limits>

#include "core/check.hpp"
#include "core/export.hpp"
#include "filter/direct.hpp"
#include "filter/memory.hpp"
#include "filter/overlap_save.hpp"
#include "ovks/filter.h"
#include "transform/real_convolution.hpp"

namespace {

using namespace ovks;

// What both the size query and the convolution derive from the lengths.
struct Plan {
  int64_t longer, shorter;
  int algType;

  Plan(int src1Len, int src2Len, FilterAlg algorithm)
      : longer(src1Len < src2Len ? src2Len : src1Len),
        shorter(src1Len < src2Len ? src1Len : src2Len),
        algType(algorithm & 0xff) {}

  bool valid() const { return algType <= FilterAlgFFT; }
  int64_t results() const { return longer + shorter - 1; }
  bool byTransform() const {
    if (algType != FilterAlgAuto) return algType == FilterAlgFFT;
    return results() >= 512 && shorter >= 64;
  }
  bool inOneTransform() const { return longer < 3 * shorter; }
  int order() const {
    const auto ceilLog2 = [](int64_t n) { return static_cast<int>(std::bit_width(static_cast<uint64_t>(n - 1))); };
    return inOneTransform() ? ceilLog2(results()) : ceilLog2(2 * shorter) + 1;
  }
};

// The work buffer: the transform's areas, then two of N elements.
template <class T>
struct Areas {
  int64_t init, work, elements, end;

  Areas(const TransformSizes& sizes, int order)
      : init(roundUp64(sizes.spec)),
        work(init + roundUp64(sizes.init)),
        elements(work + roundUp64(sizes.work)),
        end(elements + roundUp64(2 * (int64_t{1} << order) * int64_t{sizeof(T)})) {}
};

template <class T>
Status bufferSize(const Plan& plan, int* pBufferSize) {
  constexpr int kAlignment = 64;
  *pBufferSize = plan.byTransform() ? 0 : kAlignment;
  if (!plan.byTransform()) return StatusOk;
  TransformSizes sizes;
  if (const Status s = transformSizes<T>(plan.order(), sizes)) return s;
  const int64_t bytes = Areas<T>(sizes, plan.order()).end + kAlignment;
  if (bytes > std::numeric_limits<int>::max()) return StatusBadSize;
  *pBufferSize = static_cast<int>(bytes);
  return StatusOk;
}

Status getBufferSize(int src1Len, int src2Len, DataType dataType, FilterAlg algType, int* pBufferSize) {
  if (!pBufferSize) return StatusNullPtr;
  if (src1Len < 1 || src2Len < 1) return StatusBadSize;
  const Plan plan(src1Len, src2Len, algType);
  if (!plan.valid()) return StatusBadAlgType;
  if (dataType == DataType32f) return bufferSize<float>(plan, pBufferSize);
  if (dataType == DataType64f) return bufferSize<double>(plan, pBufferSize);
  *pBufferSize = 0;
  return StatusBadDataType;
}

// So many taps, and their zeros on either side, stay on the stack and in L1.
constexpr int kMostTaps = 512;

// The convolution of n samples by few taps. Where taps reach beyond the samples, zeros stand beside these in a copy.
template <class T>
void convolveFew(const T* x, int64_t n, const T* taps, int tapsLen, T* y) {
  constexpr int64_t kRoom = 3 * kMostTaps;
  const int64_t past = tapsLen - 1;
  constexpr int64_t kWhole = kVectorBytes / sizeof(T);
  T joint[kRoom + kWhole];
  zeroElements(joint, past);
  if (n + 2 * past <= kRoom) {
    // Whole vectors of results: a few too many take no longer.
    const int64_t whole = (n + past + kWhole - 1) & -kWhole;
    T results[kRoom + kWhole];
    copyElements(x, joint + past, n);
    zeroElements(joint + past + n, whole - n);
    DirectFilter<T>(taps, tapsLen).runAmongZeros(joint + past, n, results, whole);
    return copyElements(results, y, n + past);
  }
  const int64_t head = past < n ? past : n;
  copyElements(x, joint + past, head);
  convolveInTime(taps, tapsLen, joint + past, y, head);
  convolveInTime(taps, tapsLen, x + head, y + head, n - head);
  copyElements(x + n - past, joint, past);
  zeroElements(joint + past, past);
  convolveInTime(taps, tapsLen, joint + past, y + n, past);
}

// y[0 .. n - 1] += the convolution of joint, which holds tapsLen - 1 earlier samples, too.
template <class T>
void addShort(const T* joint, const T* taps, int tapsLen, T* y, int n) {
  T sums[kMostTaps];
  convolveInTime(taps, tapsLen, joint + tapsLen - 1, sums, n);
  for (int i = 0; i < n; ++i) y[i] += sums[i];
}

// The convolution of n samples by no more, but many taps. Results whose taps reach beyond the samples are formed in
// tiles: taps that stay inside for the whole tile, then those that leave within it, fewer than the tile has results.
template <class T>
void convolveMany(const T* x, int64_t n, const T* taps, int tapsLen, T* y) {
  constexpr int kTile = kMostTaps;
  const int past = tapsLen - 1;
  T joint[2 * kTile];
  convolveInTime(taps, tapsLen, x + past, y + past, n - past);
  for (int first = 0; first < past; first += kTile) {
    const int count = past - first < kTile ? past - first : kTile, leaving = count < kTile ? count : kTile - 1;
    T* const head = y + first;
    convolveInTime(taps, first + 1, x + first, head, count);
    zeroElements(joint, leaving);
    copyElements(x, joint + leaving, count - 1);
    addShort(joint, taps + first + 1, leaving, head, count);

    T* const tail = y + n + first;
    const int inside = tapsLen - first - kTile;
    if (inside > 0) convolveInTime(taps + first + kTile, inside, x + n - kTile, tail, count);
    else zeroElements(tail, count);
    copyElements(x + n - leaving, joint, leaving);
    zeroElements(joint + leaving, count - 1);
    addShort(joint, taps + first + 1, leaving, tail, count);
  }
}

// In one transform that fits the caches.
template <class T>
void convolveInCaches(const Plan& plan, const Areas<T>& areas, const T* longer, const T* shorter, T* pDst,
                      uint8_t* start) {
  const fft::ConvolutionMemory<T> memory = {reinterpret_cast<T*>(start + areas.work),
                                            reinterpret_cast<T*>(start + areas.elements), start};
  fft::convolveReals<T>(plan.order(), {longer, plan.longer}, {shorter, plan.shorter}, pDst, plan.results(), memory);
}

template <class T>
Status convolveByTransform(const Plan& plan, const T* longer, const T* shorter, T* pDst, uint8_t* pBuffer) {
  using F = Transforms<T>;
  const int order = plan.order();
  const int64_t N = int64_t{1} << order;
  TransformSizes sizes;
  if (const Status s = transformSizes<T>(order, sizes)) return s;
  const Areas<T> areas(sizes, order);
  uint8_t* const start = alignUp64(pBuffer);
  if (plan.inOneTransform() && fft::convolvesReals<T>(order)) {
    convolveInCaches(plan, areas, longer, shorter, pDst, start);
    return StatusOk;
  }
  const auto spectrum = reinterpret_cast<T*>(start + areas.elements), block = spectrum + N;
  typename F::Spec* spec;
  if (const Status s = F::kInit(&spec, order, FFTDivInvByN, AlgHintNone, start, start + areas.init)) return s;
  copyElements(shorter, spectrum, plan.shorter);
  zeroElements(spectrum + plan.shorter, N - plan.shorter);
  if (const Status s = F::kForward(spectrum, spectrum, spec, start + areas.work)) return s;
  const SpectralFilter<T> filter{spec, spectrum, static_cast<int>(N), start + areas.work};
  if (!plan.inOneTransform()) {
    const int64_t past = plan.shorter - 1;
    join<T>(nullptr, past, longer, plan.longer, block, N);
    return OverlapSave<T>(filter, past).run(longer, plan.longer, block, pDst, plan.results());
  }
  copyElements(longer, block, plan.longer);
  zeroElements(block + plan.longer, N - plan.longer);
  if (const Status s = filter.apply(block)) return s;
  copyElements(block, pDst, plan.results());
  return StatusOk;
}

template <class T>
Status convolve(const T* pSrc1, int src1Len, const T* pSrc2, int src2Len, T* pDst, FilterAlg algType,
                uint8_t* pBuffer) {
  if (const Status s = check(src1Len < src2Len ? src1Len : src2Len, pSrc1, pSrc2, pDst, pBuffer)) return s;
  const Plan plan(src1Len, src2Len, algType);
  if (!plan.valid()) return StatusBadAlgType;
  const T* const longer = src1Len < src2Len ? pSrc2 : pSrc1;
  const T* const shorter = src1Len < src2Len ? pSrc1 : pSrc2;
  if (plan.byTransform()) return convolveByTransform(plan, longer, shorter, pDst, pBuffer);
  const int taps = static_cast<int>(plan.shorter);
  if (taps <= kMostTaps) convolveFew(longer, plan.longer, shorter, taps, pDst);
  else convolveMany(longer, plan.longer, shorter, taps, pDst);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksConvolveGetBufferSize, getBufferSize);
OVKS_EXPORT(ovksConvolve_32f, convolve);
OVKS_EXPORT(ovksConvolve_64f, convolve);
