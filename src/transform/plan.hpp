// SPDX-License-Identifier: MIT
// How a transform of each order is cut into passes, and where the twiddles of each stand.
#pragma once

#include "transform/butterfly.hpp"

namespace ovks::fft {

inline constexpr int kMaxOrder = 28;

// Up to here specifications hold no tables.
inline constexpr int kMaxSmallOrder = 6;
// Up to here one straight-line kernel each.
template <class T>
inline constexpr int kMaxShortOrder = sizeof(T) == 4 ? 8 : 7;
// From here on there are passes and tables for them. Convolution takes them also where a kernel by itself is faster.
template <class T>
inline constexpr int kMinPassesOrder = (kAvx512 ? kMaxShortOrder<T> : kMaxSmallOrder) + 1;
// From here on real transforms' pairs take passes, which include the split; with AVX2, doubles where a complex
// transform has a kernel.
template <class T>
inline constexpr int kMinPairsPassesOrder = sizeof(T) == 8 ? kMinPassesOrder<T> : kMaxShortOrder<T> + 1;
// Up to here in the caches, through the work buffer.
template <class T>
inline constexpr int kMaxInCacheOrder = sizeof(T) == 4 ? 18 : 17;

// Whether the caches hold the points of a transform, and whether they hold its source beside its destination.
template <class T>
constexpr bool cachesHoldOne(int order) {
  return order <= kMaxInCacheOrder<T> + 2;
}
template <class T>
constexpr bool cachesHoldTwo(int order) {
  return order <= kMaxInCacheOrder<T> + 1;
}

template <class T>
inline constexpr int kLanes = kVectorBytes / int{sizeof(T)};

// From here on, up to kMaxInCacheOrder, complex transforms begin across the lanes and end with the columns.
template <class T>
inline constexpr int kMinLanesFirstOrder = kAvx512          ? kMaxInCacheOrder<T> + 1
                                           : sizeof(T) == 4 ? 11
                                                            : 10;

// From here on most twiddles of the closing pass are products.
template <class T>
inline constexpr int kMinProductsOrder = !kAvx512         ? kMaxInCacheOrder<T> + 1
                                         : sizeof(T) == 4 ? 18
                                                          : 10;

// Those of large transforms are.
static_assert(kMinProductsOrder<float> <= kMaxInCacheOrder<float> + 1);
static_assert(kMinProductsOrder<double> <= kMaxInCacheOrder<double> + 1);

// The passes over the columns, as log2 of their radices, first to last.
struct Passes {
  int count = 0;
  int bits[10] = {};

  constexpr void add(int b) { bits[count++] = b; }
  bool operator==(const Passes&) const = default;
};

// What the sizes of large transforms' tables go by.
template <class T>
constexpr int outerBits(int order) {
  if (order <= kMaxInCacheOrder<T>) return 0;
  return order <= kMaxInCacheOrder<T> + 4 ? 4 : 8;
}

// The outer passes of large transforms take 16, 64 or 256 parts apart, each then transformed on its own.
template <class T>
constexpr Passes outerPassesOf(int order) {
  if (order <= kMaxInCacheOrder<T>) return {};
  if (order <= kMaxInCacheOrder<T> + 4) return {2, {2, 2}};
  if (order <= kMaxInCacheOrder<T> + 6) return {3, {2, 2, 2}};
  return {3, {2, 3, 3}};
}
template <class T>
constexpr int partBits(int order) {
  const Passes p = outerPassesOf<T>(order);
  return p.bits[0] + p.bits[1] + p.bits[2];
}

// After the outer ones of radix 8 as far as may be. Where rows stand a page apart, their lines share a set of the first
// cache, so a first pass with such strides, which reads one array and writes another, is of radix 4. AVX-512 has
// registers enough for radix 16, which goes last for the same reason, as radix 4 does without. For 16 rows the first
// pass is of radix 4, too: a single butterfly of radix 16 would have to finish alone.
template <class T>
constexpr Passes choosePasses(int order, bool columnsFirst) {
  constexpr int kPageRows = 4096 / (2 * kVectorBytes);
  Passes p = outerPassesOf<T>(order);
  int bits = order - log2OfPower(kLanes<T>) - partBits<T>(order);
  const auto take = [&](int b) {
    p.add(b);
    bits -= b;
  };
  if (columnsFirst && p.count == 0 && (1 << bits) / 8 >= kPageRows) take(2);
  if (!kAvx512) {
    const int fours = bits % 3 == 0 ? 0 : bits % 3 == 2 ? 1 : 2;
    while (bits > 2 * fours) take(3);
    while (bits > 0) take(2);
    return p;
  }
  if (p.count == 0 && (bits == 4 || (bits == 5 && sizeof(T) == 4))) take(2);
  const int sixteens = bits == 4 || bits >= 7 ? bits % 3 : 0;
  while (bits - 4 * sixteens >= 3) take(3);
  while (bits >= 4) take(4);
  if (bits > 0) take(bits);
  return p;
}

template <class T>
struct PassTable {
  Passes ofOrder[kMaxOrder + 1];

  constexpr explicit PassTable(bool columnsFirst) : ofOrder{} {
    for (int order = kMaxSmallOrder + 1; order <= kMaxOrder; ++order)
      ofOrder[order] = choosePasses<T>(order, columnsFirst);
  }
};
template <class T, bool columnsFirst>
inline constexpr PassTable<T> kPassTable{columnsFirst};

// Whether a complex transform begins across the lanes.
template <class T>
constexpr bool lanesFirst(int order) {
  return order >= kMinLanesFirstOrder<T> && order <= kMaxInCacheOrder<T>;
}

// Of transforms that begin with them, and of real signals' both ways, which share a table.
template <class T>
constexpr const Passes& passesOf(int order) {
  return kPassTable<T, true>.ofOrder[order];
}
// Of complex transforms.
template <class T>
constexpr const Passes& complexPassesOf(int order) {
  return lanesFirst<T>(order) ? kPassTable<T, false>.ofOrder[order] : passesOf<T>(order);
}

// Whether first passes are of radix 4 or 8.
template <class T>
constexpr bool firstPassesAreShort() {
  for (int order = kMaxSmallOrder + 1; order <= kMaxOrder; ++order)
    if (passesOf<T>(order).bits[0] > 3 || complexPassesOf<T>(order).bits[0] > 3) return false;
  return true;
}
static_assert(firstPassesAreShort<float>() && firstPassesAreShort<double>());

// Twiddle sets of a pass that finds `blocks` blocks stand (blocks - R) complex numbers into the columns' table, R being
// the first pass's radix, which has none: a pass of radix r has (r - 1) for each block and leaves r times as many.
constexpr std::ptrdiff_t columnTwiddles(std::ptrdiff_t blocks, int firstBits) {
  return 2 * (blocks - (std::ptrdiff_t{1} << firstBits));
}

}  // namespace ovks::fft
