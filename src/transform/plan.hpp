// SPDX-License-Identifier: MIT
// How a transform of each order is cut into passes, and where the twiddles of each stand.
#pragma once

#include "transform/butterfly.hpp"

namespace ovks::fft {

inline constexpr int kMaxOrder = 28;

// Up to here one straight-line kernel each.
inline constexpr int kMaxSmallOrder = 6;
// Up to here in the caches, through the work buffer; above, in the destination itself.
template <class T>
inline constexpr int kMaxInCacheOrder = sizeof(T) == 4 ? 18 : 17;

template <class T>
inline constexpr int kLanes = kVectorBytes / int{sizeof(T)};

// Lanes of a row: a transform needs at least as many rows as lanes.
template <class T>
constexpr int rowLanes(int order) {
  return order >= 2 * log2OfPower(kLanes<T>) ? kLanes<T> : kLanes<T> / 2;
}

// The passes over the columns, as log2 of their radices, first to last.
struct Passes {
  int count = 0;
  int bits[8] = {};

  constexpr void add(int b) { bits[count++] = b; }
};

// The outer passes of large transforms take 2^outerBits blocks apart, each then transformed on its own.
template <class T>
constexpr int outerBits(int order) {
  if (order <= kMaxInCacheOrder<T>) return 0;
  return order <= kMaxInCacheOrder<T> + 4 ? 4 : 8;
}

template <class T>
constexpr Passes passesOf(int order) {
  Passes p;
  int bits = order - log2OfPower(rowLanes<T>(order));
  for (int outer = outerBits<T>(order); outer > 0; outer -= 4, bits -= 4) p.add(4);
  // As many of radix 8 as may be; AVX-512 has registers enough for radix 16.
  int rest = bits % 3;
  if (kAvx512 && rest == 2 && bits >= 8) rest = 8;
  else if (rest == 1 && bits >= 4) rest = 4;
  bits -= rest;
  const int step = kAvx512 && rest >= 4 ? 4 : 2;
  for (; rest > 0; rest -= rest < step ? rest : step) p.add(rest < step ? rest : step);
  for (; bits > 0; bits -= 3) p.add(3);
  return p;
}

// Twiddle sets of a pass that finds `blocks` blocks stand (blocks - R) complex numbers into the columns' table, R being
// the first pass's radix, which has none: a pass of radix r has (r - 1) for each block and leaves r times as many.
constexpr std::ptrdiff_t columnTwiddles(std::ptrdiff_t blocks, int firstBits) {
  return 2 * (blocks - (std::ptrdiff_t{1} << firstBits));
}

}  // namespace ovks::fft
