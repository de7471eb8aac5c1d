// SPDX-License-Identifier: MIT
// Filtering of blocks.
#include "core/check.hpp"
#include "core/export.hpp"
#include "filter/direct.hpp"
#include "filter/fir_spec.hpp"
#include "filter/overlap_save.hpp"

namespace {

using namespace ovks;

// From these lengths on a block is filtered by its transform, unless the caller decided.
struct Thresholds {
  int taps, samples;
};
template <class T>
constexpr Thresholds kThresholds = {52, 256};
template <>
constexpr Thresholds kThresholds<double> = {34, 512};
template <>
constexpr Thresholds kThresholds<Complex32f> = {18, 128};
template <>
constexpr Thresholds kThresholds<Complex64f> = {21, 256};

template <class T>
bool takesTransform(const FirHeader<T>& header, int n) {
  if (header.algType != FilterAlgAuto) return header.algType == FilterAlgFFT;
  return header.tapsLen >= kThresholds<T>.taps && n >= kThresholds<T>.samples;
}

// What filtering by transforms costs at least for each point of its blocks, in multiply-adds of the time domain.
template <class T>
constexpr int kAddsPerPoint = 24;
template <>
constexpr int kAddsPerPoint<Complex32f> = 14;
template <>
constexpr int kAddsPerPoint<Complex64f> = 11;

// One call's filter and its places in the work buffer.
template <class T>
struct Filtering {
  static constexpr int kChunk = FirBuffer<T>::kChunkBytes / sizeof(T);
  static constexpr int kShort = 4096 / sizeof(T);

  const FirHeader<T>& header;
  bool byTransform;
  T *joint, *delay, *chunk, *block;
  uint8_t* work;
  alignas(64) T shortJoint[kShort];

  Filtering(const void* pSpec, int n, uint8_t* pBuf, bool mayTransform = true)
      : header(*firHeader<T>(pSpec)), byTransform(mayTransform && takesTransform(header, n)) {
    const FirBuffer<T> buffer{header.tapsLen};
    joint = reinterpret_cast<T*>(pBuf);
    delay = reinterpret_cast<T*>(pBuf + buffer.delayOffset());
    chunk = reinterpret_cast<T*>(pBuf + buffer.chunkOffset());
    block = reinterpret_cast<T*>(pBuf + buffer.blockOffset());
    work = pBuf + buffer.workOffset(header.length);
  }

  int past() const { return header.tapsLen - 1; }

  // The history and the inputs that follow it into one place, before run(). The caller's history may then be replaced.
  void gather(const T* history, const T* src, int n) {
    if (byTransform) join(history, past(), src, n, block, header.length);
    else join(history, past(), src, n, directJoint(n), past() + directHead(n));
  }

  // n outputs; dst lies apart from src.
  Status run(const T* src, T* dst, int n) {
    if (byTransform) return transform(src, dst, n);
    const int head = directHead(n);
    convolveInTime(header.taps, header.tapsLen, directJoint(n) + past(), dst, head);
    convolveInTime(header.taps, header.tapsLen, src + head, dst + head, n - head);
    return StatusOk;
  }

  // The inputs up to the first that has its whole history before it go through a joint copy; so does all of a short
  // block, whose parts would each be too short for the kernels to be at their best.
  bool isShort(int n) const { return past() + int64_t{n} <= kShort; }
  T* directJoint(int n) { return isShort(n) ? shortJoint : joint; }
  int directHead(int n) const { return isShort(n) || n < past() ? n : past(); }

  // The last results in the time domain, if a whole turn of transforms would take longer. All their inputs are in src.
  Status transform(const T* src, T* dst, int n) const {
    const OverlapSave<T> blocks({header.fft, header.spectrum, header.length, work}, past());
    const int rest = n % static_cast<int>(blocks.results());
    const bool inTime = n > rest && int64_t{rest} * header.tapsLen < blocks.points() * kAddsPerPoint<T>;
    const int count = inTime ? n - rest : n, most = n - past();
    if (const Status s = blocks.run(src, n, block, dst, count)) return s;
    if (inTime) DirectFilter<T>(header.taps, header.tapsLen).run(src + past(), dst + past(), count - past(), most);
    return StatusOk;
  }

  // The last samples of history and src become the next history; next may be history.
  void advance(const T* history, const T* src, int n, T* next) const {
    const int kept = past() > n ? past() - n : 0;
    copyOrZero(history ? history + past() - kept : nullptr, next, kept);
    copyElements(src + n - (past() - kept), next + kept, past() - kept);
  }
};

template <class T, class Spec>
Status filter(const T* pSrc, T* pDst, int numIters, const Spec* pSpec, const T* pDlySrc, T* pDlyDst, uint8_t* pBuf) {
  if (const Status s = check(numIters, pSpec, pSrc, pDst, pBuf)) return s;
  Filtering<T> f(pSpec, numIters, pBuf);
  if (pDst != pSrc && pDst != pDlySrc) {
    f.gather(pDlySrc, pSrc, numIters);
    if (pDlyDst) f.advance(pDlySrc, pSrc, numIters, pDlyDst);
    return f.run(pSrc, pDst, numIters);
  }
  copyOrZero(pDlySrc, f.delay, f.past());
  for (int done = 0, n; done < numIters; done += n) {
    n = numIters - done < f.kChunk ? numIters - done : f.kChunk;
    copyElements(pSrc + done, f.chunk, n);
    f.gather(f.delay, f.chunk, n);
    if (const Status s = f.run(f.chunk, pDst + done, n)) return s;
    f.advance(f.delay, f.chunk, n, f.delay);
  }
  if (pDlyDst) copyElements(f.delay, pDlyDst, f.past());
  return StatusOk;
}

// 16-bit samples by floating-point taps, always in the time domain. The delay line of floats holds exact integers.
template <class T, class I, class Spec>
Status filterShort(const I* pSrc, I* pDst, int numIters, const Spec* pSpec, const I* pDlySrc, I* pDlyDst,
                   uint8_t* pBuf) {
  if (const Status s = check(numIters, pSpec, pSrc, pDst, pBuf)) return s;
  constexpr int P = parts<T>, kChunk = Filtering<T>::kChunk / 2;
  Filtering<T> f(pSpec, numIters, pBuf, false);
  const auto fromShort = [](const I* src, T* dst, int n) {
    if (n > 0) ovksConvert_16s32f(reals(src), reals(dst), n * P);
  };
  const auto toShort = [](const T* src, I* dst, int n) {
    if (n > 0) ovksConvert_32f16s_Sfs(reals(src), reals(dst), n * P, RoundNear, 0);
  };
  if (pDlySrc) fromShort(pDlySrc, f.delay, f.past());
  else zeroElements(f.delay, f.past());
  T* const filtered = f.chunk + kChunk;
  for (int done = 0, n; done < numIters; done += n) {
    n = numIters - done < kChunk ? numIters - done : kChunk;
    fromShort(pSrc + done, f.chunk, n);
    f.gather(f.delay, f.chunk, n);
    f.run(f.chunk, filtered, n);
    f.advance(f.delay, f.chunk, n, f.delay);
    toShort(filtered, pDst + done, n);
  }
  if (pDlyDst) toShort(f.delay, pDlyDst, f.past());
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksFIRSR_32f, filter);
OVKS_EXPORT(ovksFIRSR_64f, filter);
OVKS_EXPORT(ovksFIRSR_32fc, filter);
OVKS_EXPORT(ovksFIRSR_64fc, filter);
OVKS_EXPORT(ovksFIRSR_16s, filterShort<float>);
OVKS_EXPORT(ovksFIRSR_16sc, filterShort<Complex32f>);
