// SPDX-License-Identifier: MIT
// The specification object: a header in the caller's memory and the tables behind it.
#pragma once

#include <limits>

#include "ovks/types.h"
#include "transform/plan.hpp"

namespace ovks::fft {

inline constexpr int kAlignment = 64;
inline constexpr int kHeaderBytes = 144;

constexpr int64_t aligned(int64_t bytes) { return (bytes + kAlignment - 1) & -int64_t{kAlignment}; }

template <class P>
P* aligned(P* p) {
  return reinterpret_cast<P*>(aligned(static_cast<int64_t>(reinterpret_cast<uintptr_t>(p))));
}

enum class Kind { interleaved, split, real };

// The mark of a specification of T's transforms of one kind.
template <class T>
constexpr int32_t contextOf(Kind kind) {
  return (sizeof(T) == 4 ? 4 : 7) + static_cast<int32_t>(kind);
}

template <class T>
struct Spec {
  int32_t contextId;  // 0 until Init has accepted the flag
  int32_t order;
  int32_t scaleForward, scaleInverse;  // whether results are multiplied by factor
  T factor;
  int32_t hint;
  int32_t bufferSize;  // bytes of work buffer, without those for its alignment
  int32_t reserved;
  const int32_t* bitReversal;
  const T* twiddles;
  const T* splitTwiddles;  // of real transforms
  const T* realTiles;      // of those whose passes include the split
};
static_assert(sizeof(Spec<double>) <= kHeaderBytes);

// Bytes of each area behind the header, of the buffer that Init needs, and of the work buffer. The size queries add
// them up, Init lays the tables out by them.
//
// An area has its own alignment inside; 64 bytes more let it begin anywhere.
struct Sizes {
  int64_t bitReversal = 0;  // N/4 + 1 int32
  int64_t twiddles = 0;     // of the complex transform
  int64_t split = 0;        // real transforms: splitTwiddles and realTiles, this size each
  int64_t quarterWave = 0;  // N/4 + 1 sines
  int64_t work = 0;

  constexpr int64_t spec() const {
    const int64_t tables = bitReversal + twiddles + 2 * split;
    return kAlignment + (tables ? aligned(kHeaderBytes) + tables : kHeaderBytes);
  }
  constexpr int64_t specBuffer() const { return quarterWave ? quarterWave + kAlignment : 0; }
  constexpr int64_t workBuffer() const { return work ? work + kAlignment : 0; }
};

// Twiddles and work of a complex transform.
//
// A large one leaves inner transforms of 2^(order - outerBits) points. It counts theirs, which may again be large ones,
// N/2 twiddles between the levels, a block of 4160 bytes and N/1024 bytes for 8-byte points, twice as many for 16-byte
// points, and works in at least 2^10 points, or 2^14 above the first four large orders, and 64 KB. The largest, 64f at
// order 27, comes to 1.2e9 bytes.
template <class T>
constexpr void addComplexTables(Sizes& s, int order) {
  constexpr int64_t point = 2 * sizeof(T);
  const int64_t n = int64_t{1} << order;
  if (order <= kMaxInCacheOrder<T>) {
    s.twiddles += aligned(point * n + point);
    s.work = s.work > aligned(point * n) ? s.work : aligned(point * n);
    return;
  }
  const int outer = outerBits<T>(order);
  s.twiddles += point * n / 2 + 520 * point + n / 1024 * (point / 8);
  addComplexTables<T>(s, order - outer);
  const int64_t block = point << (outer == 4 ? 10 : 14), atLeast = block > 65536 ? block : 65536;
  s.work = s.work > atLeast ? s.work : atLeast;
}

template <class T>
constexpr int64_t quarterWaveBytes(int order) {
  const int64_t n = int64_t{1} << order;
  return order <= 10 ? 0 : aligned((n / 4 + 1) * int64_t{sizeof(T)});
}

template <class T>
constexpr Sizes complexSizes(int order) {
  Sizes s;
  if (order <= kMaxSmallOrder) return s;
  s.bitReversal = aligned((int64_t{1} << order) + 4);
  s.quarterWave = quarterWaveBytes<T>(order);
  addComplexTables<T>(s, order);
  return s;
}

inline constexpr int kMaxSmallRealOrder = 4;

// From the first order whose half transform fills the in-cache range, the split's twiddles are products of one of
// 2^(order - 12) and one of 1024.
template <class T>
constexpr bool splitInTwoLevels(int order) {
  return order > kMaxInCacheOrder<T>;
}

template <class T>
constexpr Sizes realSizes(int order) {
  constexpr int64_t point = 2 * sizeof(T);
  if (order <= kMaxSmallRealOrder) return {};
  Sizes s = complexSizes<T>(order - 1);
  s.quarterWave = quarterWaveBytes<T>(order);
  const int64_t points = splitInTwoLevels<T>(order) ? (int64_t{1} << (order - 12)) + 1024 : (int64_t{1} << order) / 4;
  s.split = aligned(point * points);
  return s;
}

template <class T>
constexpr Sizes sizesOf(Kind kind, int order) {
  return kind == Kind::real ? realSizes<T>(order) : complexSizes<T>(order);
}

template <class T>
constexpr int maxOrder(Kind kind) {
  return (sizeof(T) == 4 ? 28 : 27) + (kind == Kind::real ? 1 : 0);
}

static_assert(complexSizes<float>(19).spec() == 2888640 && complexSizes<float>(28).spec() == 1347167744);
static_assert(realSizes<float>(20).spec() == 2909120);
static_assert(complexSizes<double>(27).spec() <= std::numeric_limits<int32_t>::max());
static_assert(realSizes<double>(28).spec() <= std::numeric_limits<int32_t>::max());

}  // namespace ovks::fft
