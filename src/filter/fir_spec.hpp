// SPDX-License-Identifier: MIT
// The specification of a FIR filter and the layout of its memory. One layout answers the size query and drives Init.
//
//   aligned start   header, 128 bytes
//                   taps for the time domain
//                   FFT specification
//                   temporary room of its Init, then work buffer of the taps' transform
//                   transformed taps, N elements
#pragma once

#include <bit>

#include "filter/memory.hpp"
#include "filter/transforms.hpp"
#include "ovks/filter.h"

namespace ovks {

// The fields in this order fill the first part of the header.
template <class T>
struct FirHeader {
  int32_t tapsLen;
  T* taps;
  int32_t isLong;  // of 32f: 32 taps or more
  int32_t algType;
  typename Transforms<T>::Spec* fft;
  uint8_t* scratch;
  T* spectrum;
  int32_t length;
};

inline constexpr int kFirHeaderBytes = 128;
static_assert(sizeof(FirHeader<float>) <= kFirHeaderBytes);

template <class T>
inline const FirHeader<T>* firHeader(const void* pSpec) {
  const auto address = (reinterpret_cast<std::uintptr_t>(pSpec) + 63) & ~std::uintptr_t{63};
  return reinterpret_cast<const FirHeader<T>*>(address);
}

// The work buffer: history and the inputs that follow it, a delay line, a chunk, then the FFT's areas.
template <class T>
struct FirBuffer {
  static constexpr int64_t E = sizeof(T);
  static constexpr int64_t kChunkBytes = 32768;

  int64_t tapsLen;

  int64_t delayOffset() const { return roundUp64(2 * tapsLen * E); }
  int64_t chunkOffset() const {
    constexpr int64_t slack = std::is_same_v<T, float> ? 55 : std::is_same_v<T, Complex64f> ? 31 : 47;
    return delayOffset() + ((2 * tapsLen * E + slack) & ~int64_t{63});
  }
  int64_t blockOffset() const { return chunkOffset() + kChunkBytes; }
  int64_t workOffset(int64_t length) const { return blockOffset() + length * E; }
};

template <class T>
struct FirLayout {
  static constexpr int64_t E = sizeof(T);

  int64_t tapsLen;
  int order;
  TransformSizes fft;

  explicit FirLayout(int taps) : tapsLen(taps), order(std::bit_width(static_cast<unsigned>(taps)) + 1) {
    transformSizes<T>(order, fft);
  }

  int64_t length() const { return int64_t{1} << order; }

  int64_t fftOffset() const { return kFirHeaderBytes + tapsBytes(); }
  int64_t scratchOffset() const { return fftOffset() + fft.spec; }
  int64_t spectrumOffset() const { return scratchOffset() + (fft.init > fft.work ? fft.init : fft.work); }

  // 63 bytes for alignment of the start.
  int64_t specBytes() const { return spectrumOffset() + length() * E + 63; }
  int64_t bufferBytes() const { return FirBuffer<T>{tapsLen}.workOffset(length()) + fft.work; }

 private:
  // Room for the taps, beyond what their plain order takes.
  int64_t tapsBytes() const {
    const int64_t L = tapsLen, plain = roundUp64(E * L);
    int64_t bytes = roundUp64(32 * L);
    if constexpr (std::is_same_v<T, float>) bytes = larger(bytes, 32 * ((L + 16) & ~int64_t{7}));
    if constexpr (std::is_same_v<T, double>) bytes = larger(bytes, roundUp64(16 * ((L + 2) & ~int64_t{1})));
    if constexpr (std::is_same_v<T, Complex64f>) bytes = 64 * L;
    return larger(plain, bytes);
  }

  static int64_t larger(int64_t a, int64_t b) { return a > b ? a : b; }
};

}  // namespace ovks
