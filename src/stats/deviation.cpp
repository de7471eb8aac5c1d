// SPDX-License-Identifier: MIT
// Sample standard deviations, alone and together with means.
#include "core/check.hpp"
#include "core/export.hpp"
#include "ovks/stats.h"
#include "stats/sum.hpp"
#include "stats/wide_sum.hpp"

namespace {

using namespace ovks;

// The sums of x and of x^2 of integers; of floats they stay in a register's lanes.
struct ShortTotals {
  int64_t sum, squares;

  OVKS_INLINE void operator+=(const ShortTotals& o) {
    sum += o.sum;
    squares += o.squares;
  }
};
using FloatTotals = Vec<double, 2>;

// Floats in lanes of F.
template <class F>
struct FloatMoments {
  // Conversions take long enough for four chains to hide the latency.
  static constexpr int kElements = kTaken<F>, kChains = kAvx512 && sizeof(F) == 4 ? 8 : 4;
  using V = Vec<F, kElements>;
  V sum{}, squares{};

  OVKS_INLINE void add(Vec<float, kElements> v) {
    if constexpr (sizeof(F) == 4) v = inRegister(v);  // the conversion happens once anyway
    const V x = convert<F>(v);
    sum += x;
    squares = fma(x, x, squares);
  }
  // Half of the additions go to the multiplier: the adder converts as well.
  OVKS_INLINE void addOdd(Vec<float, kElements> v) requires(sizeof(F) == 8) {
    const V x = convert<F>(v);
    sum = plusWidened(sum, v);
    squares = fma(x, x, squares);
  }
  OVKS_INLINE void merge(const FloatMoments& o) {
    sum += o.sum;
    squares += o.squares;
  }
  OVKS_INLINE FloatTotals parts() const {
    const auto p = evenAndOdd(sum, squares);
    return convert<double>(foldLanes(p.first + p.second, kPlus));
  }
};

// Doubles, as their differences from a pivot.
struct ShiftedMoments {
  static constexpr int kElements = kVectorBytes / 8, kChains = kAvx512 ? 8 : 4;
  using V = Vec<double, kElements>;
  double pivot;
  V sum{}, squares{};

  OVKS_INLINE double fill() const { return pivot; }
  OVKS_INLINE void add(V v) {
    const V x = v - broadcast<V>(pivot);
    sum += x;
    squares = fma(x, x, squares);
  }
  OVKS_INLINE void merge(const ShiftedMoments& o) {
    sum += o.sum;
    squares += o.squares;
  }
};

// 16-bit integers, exactly.
struct ShortMoments {
  static constexpr int kElements = ShortSum<int16_t>::kElements, kChains = 4;
  static constexpr std::ptrdiff_t kBlock = ShortSum<int16_t>::kBlock;
  using V = Vec<int16_t, kElements>;
  ShortSum<int16_t> sum;
  WideSum<WideVec<V>> squares;

  OVKS_INLINE void add(V v) {
    sum.add(v);
    squares.add(detail::multiplyNeighbours(v, v));
  }
  OVKS_INLINE void merge(const ShortMoments& o) {
    sum.merge(o.sum);
    squares.merge(o.squares);
  }
  OVKS_INLINE ShortTotals parts() const { return {sum.parts().re, squares.total()}; }
};

// How elements lie about their mean: how many, their mean (from a common origin), and the sum of the squares of their
// distances from it.
struct Spread {
  double count, mean, squares;

  OVKS_INLINE void operator+=(Spread o) {
    const double n = count + o.count, distance = o.mean - mean;
    squares += o.squares + distance * distance * (count * o.count / n);
    mean += distance * (o.count / n);
    count = n;
  }
};

OVKS_INLINE FloatTotals moments(const float* src, std::ptrdiff_t n, AlgHint hint) {
  return hint == AlgHintFast ? total<Fast<FloatMoments<float>>>(n, src) : total<FloatMoments<double>>(n, src);
}

// The arithmetic is fixed: sums in double precision, quotient and root in single.
OVKS_INLINE float deviation(FloatTotals m, int len) {
  const double n = len, difference = n * m[1] - m[0] * m[0];
  const double numerator = difference < 0 ? 0 : difference, denominator = n * (n - 1);
  return root(static_cast<float>(numerator) / static_cast<float>(denominator));
}

// Blocks near to each other in memory mostly lie near in value, so the first element of a block is pivot enough: its
// squares lose no digits, equal elements have none at all, and the blocks' spreads add without cancellation.
OVKS_INLINE Spread spread(const double* src, std::ptrdiff_t n, double origin) {
  const ShiftedMoments m = fold(ShiftedMoments{src[0]}, n, src);
  const double count = static_cast<double>(n);
  const double sum = foldAll(m.sum, kPlus);
  const double squares = foldAll(m.squares, kPlus) - sum * sum / count;
  return {count, m.pivot - origin + sum / count, squares < 0 ? 0 : squares};
}

template <class... Sum>
double deviation(const double* src, std::ptrdiff_t n, Sum&... sum) {
  constexpr std::ptrdiff_t kBlock = 1024;
  Spread all{};
  for (std::ptrdiff_t i = 0; i < n; i += kBlock) {
    const std::ptrdiff_t count = n - i < kBlock ? n - i : kBlock;
    ((sum += sumOf(src + i, count).re), ...);
    all += spread(src + i, count, src[0]);
  }
  return root(all.squares / (all.count - 1));
}

template <class D>
D deviation(ShortTotals m, int len, int scaleFactor) {
  const __int128 numerator = __int128{len} * m.squares - __int128{m.sum} * m.sum;
  return scaledRoot<D>(numerator, int64_t{len} * (len - 1), scaleFactor);
}

// A single element has no deviation.
template <class... P>
Status checkDeviation(int len, const P*... pointers) {
  return check(len < 2 ? 0 : len, pointers...);
}

Status stdDev(const float* pSrc, int len, float* pStdDev, AlgHint hint) {
  if (const Status s = checkDeviation(len, pSrc, pStdDev)) return s;
  *pStdDev = deviation(moments(pSrc, len, hint), len);
  return StatusOk;
}

Status stdDev(const double* pSrc, int len, double* pStdDev) {
  if (const Status s = checkDeviation(len, pSrc, pStdDev)) return s;
  *pStdDev = deviation(pSrc, len);
  return StatusOk;
}

template <class D>
Status stdDev(const int16_t* pSrc, int len, D* pStdDev, int scaleFactor) {
  if (const Status s = checkDeviation(len, pSrc, pStdDev)) return s;
  *pStdDev = deviation<D>(total<ShortMoments>(len, pSrc), len, scaleFactor);
  return StatusOk;
}

Status meanStdDev(const float* pSrc, int len, float* pMean, float* pStdDev, AlgHint hint) {
  if (const Status s = checkDeviation(len, pSrc, pMean, pStdDev)) return s;
  const FloatTotals m = moments(pSrc, len, hint);
  *pMean = static_cast<float>(double{static_cast<float>(m[0])} / len);
  *pStdDev = deviation(m, len);
  return StatusOk;
}

Status meanStdDev(const double* pSrc, int len, double* pMean, double* pStdDev) {
  if (const Status s = checkDeviation(len, pSrc, pMean, pStdDev)) return s;
  double sum = 0;
  *pStdDev = deviation(pSrc, len, sum);
  *pMean = sum / len;
  return StatusOk;
}

template <class D>
Status meanStdDev(const int16_t* pSrc, int len, D* pMean, D* pStdDev, int scaleFactor) {
  if (const Status s = checkDeviation(len, pSrc, pMean, pStdDev)) return s;
  const ShortTotals m = total<ShortMoments>(len, pSrc);
  *pMean = scaledMean<D>(m.sum, len, scaleFactor);
  *pStdDev = deviation<D>(m, len, scaleFactor);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksStdDev_16s32s_Sfs, stdDev);
OVKS_EXPORT(ovksStdDev_16s_Sfs, stdDev);
OVKS_EXPORT(ovksStdDev_32f, stdDev);
OVKS_EXPORT(ovksStdDev_64f, stdDev);
OVKS_EXPORT(ovksMeanStdDev_16s32s_Sfs, meanStdDev);
OVKS_EXPORT(ovksMeanStdDev_16s_Sfs, meanStdDev);
OVKS_EXPORT(ovksMeanStdDev_32f, meanStdDev);
OVKS_EXPORT(ovksMeanStdDev_64f, meanStdDev);
