// SPDX-License-Identifier: MIT
// Sums of logarithms.
#include "core/check.hpp"
#include "core/export.hpp"
#include "core/fold.hpp"
#include "core/log.hpp"
#include "ovks/stats.h"
#include "stats/total.hpp"

namespace {

using namespace ovks;

// The product of a vector's lanes, a register of doubles left.
template <class V>
OVKS_INLINE Vec<double> productOfLanes(V v) {
  constexpr int n = lanes<V>;
  if constexpr (n > lanes<Vec<double>>) {
    const auto h = halves(v);
    return productOfLanes(h.first) * productOfLanes(h.second);
  } else if constexpr (sizeof(Lane<V>) == 2) {
    return convert<double>(convert<int32_t>(v));
  } else {
    return convert<double>(v);
  }
}

struct LogTotal {
  double sum = 0;
  bool unusual = false;

  void operator+=(LogTotal o) {
    sum += o.sum;
    unusual |= o.unusual;
  }
};

// The logarithm of a product, in place of as many logarithms: mantissas are multiplied, exponents added. What each
// multiplication rounds off is carried along, so that operands near 1, whose logarithms are small, keep their digits.
// Operands that have no such form are told by unusual. Narrower ones come from two sources at once: four factors from
// 32f, or eight from 16s, stay in the range of double, and products of two are exact.
template <class T>
struct LogProduct {
  static constexpr int kElements = kVectorBytes / int{sizeof(T)}, kChains = 4;
  // Mantissas lie between sqrt(1/2) and sqrt(2).
  static constexpr std::ptrdiff_t kBlock = 1024 * kElements;
  static constexpr bool kDouble = sizeof(T) == 8;
  using V = Vec<double>;
  using I = Vec<int64_t>;
  using Bits = Unsigned<decltype(Vec<T, kElements>{} == Vec<T, kElements>{})>;

  V product = broadcast<V>(1), rest{};
  I exponent{};
  Bits highest{};

  OVKS_INLINE T fill() const { return 1; }

  template <class... W>
  OVKS_INLINE void add(W... v) {
    ((highest = kMax(highest, bits<Bits>(v) - broadcast<Bits>(kLeast))), ...);
    multiply((productOfLanes(v) * ...));
  }

  OVKS_INLINE void merge(const LogProduct& o) {
    const V p = product * o.product, rounded = fma(product, o.product, -p);
    rest = fma(rest, o.product, fma(o.rest, product, rounded));
    product = p;
    exponent += o.exponent;
    highest = kMax(highest, o.highest);
  }

  OVKS_INLINE LogTotal parts() const {
    const Scientific<V> p(product);
    V e;
    for (int i = 0; i < lanes<V>; ++i) e[i] = static_cast<double>(exponent[i]);
    const double sum = foldAll(logOfParts(p.mantissa, p.exponent() + e) + rest / product, kPlus);
    return {sum, foldAll(highest, kMax) >= kEnd};
  }

 private:
  using B = Lane<Bits>;
  // As bits: the least usual operand, and how far above it infinity or the first negative lies.
  static constexpr B kLeast = kDouble ? static_cast<B>(uint64_t{1} << 52) : 1;
  static constexpr B kEnd = kDouble          ? static_cast<B>(uint64_t{0x7fe} << 52)
                            : sizeof(T) == 4 ? static_cast<B>(0x7f7fffff)
                                             : 0x7fff;

  OVKS_INLINE void multiply(V x) {
    const Scientific<V> parts(x);
    exponent += bits<I>(parts.biased) - broadcast<I>(detail::LogTraits<double>::kBias);
    const V p = product * parts.mantissa;
    rest = fma(rest, parts.mantissa, fma(product, parts.mantissa, -p));
    product = p;
  }
};

// One logarithm for each element.
template <class T>
struct LogSum {
  static constexpr int kElements = kVectorBytes / 8, kChains = 1;
  using V = Vec<double, kElements>;
  V sum{};

  OVKS_INLINE T fill() const { return 1; }
  OVKS_INLINE void add(Vec<T, kElements> v) {
    if constexpr (sizeof(T) == 2) sum += log(convert<double>(convert<int32_t>(v)));
    else sum += log(convert<double>(v));
  }
  OVKS_INLINE void merge(const LogSum& o) { sum += o.sum; }
  OVKS_INLINE Parts<double> parts() const { return sumOfLanes<double>(sum); }
};

template <class T>
LogTotal quickTotal(std::ptrdiff_t n, const T* src) {
  if constexpr (sizeof(T) == 8) {
    return total<LogProduct<T>>(n, src);
  } else {
    LogTotal sum = total<LogProduct<T>>(n / 2, src, src + n / 2);
    if (n % 2) sum.sum += total<LogSum<T>>(1, src + n - 1).re;
    return sum;
  }
}

template <class T, class D>
Status sumLn(const T* pSrc, int len, D* pSum) {
  if (const Status s = check(len, pSrc, pSum)) return s;
  const LogTotal quick = quickTotal(len, pSrc);
  *pSum = static_cast<D>(quick.unusual ? total<LogSum<T>>(len, pSrc).re : quick.sum);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksSumLn_16s32f, sumLn);
OVKS_EXPORT(ovksSumLn_32f, sumLn);
OVKS_EXPORT(ovksSumLn_32f64f, sumLn);
OVKS_EXPORT(ovksSumLn_64f, sumLn);
