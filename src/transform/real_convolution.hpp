// SPDX-License-Identifier: MIT
// Convolution of two real sequences by transforms that fit the caches: between reading the sequences and writing the
// results, nothing but the passes of three transforms and one loop over pairs of points, with few tables.
#pragma once

#include "transform/spec.hpp"

namespace ovks::fft {

// Whether it takes N = 2^order reals.
template <class T>
constexpr bool convolvesReals(int order) {
  return order - 1 >= kMinPassesOrder<T> && order - 1 <= kMaxInCacheOrder<T>;
}

template <class T>
struct Sequence {
  const T* elements;
  int64_t length;
};

// Where it works: N elements, 2 N elements, and as many bytes as the specification and its Init take.
template <class T>
struct ConvolutionMemory {
  T *work, *spectra;
  uint8_t* tables;
};

// dst[0 .. results - 1] of the cyclic convolution of a and b, zeros behind them up to N elements. dst may be one of
// them. Bits do not depend on which is which.
template <class T>
void convolveReals(int order, Sequence<T> a, Sequence<T> b, T* dst, int64_t results,
                   const ConvolutionMemory<T>& memory);

}  // namespace ovks::fft
