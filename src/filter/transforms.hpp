// SPDX-License-Identifier: MIT
// The library's transforms as filtering needs them, by element type: forward, product of spectra, inverse divided by N.
#pragma once

#include "core/element.hpp"
#include "ovks/transform.h"
#include "ovks/vector.h"

namespace ovks {

// Byte counts of the three areas of a transform.
struct TransformSizes {
  int spec = 0, init = 0, work = 0;
};

template <class SpecType, auto getSize, auto init, auto forward, auto inverse, auto multiplyInPlace>
struct TransformCalls {
  using Spec = SpecType;
  static constexpr auto kGetSize = getSize;
  static constexpr auto kInit = init;
  static constexpr auto kForward = forward;
  static constexpr auto kInverse = inverse;
  static constexpr auto kMultiplyInPlace = multiplyInPlace;
};

template <class T>
struct Transforms;
template <>
struct Transforms<float> : TransformCalls<FFTSpec_R_32f, ovksFFTGetSize_R_32f, ovksFFTInit_R_32f,
                                          ovksFFTFwd_RToPerm_32f, ovksFFTInv_PermToR_32f, ovksMulPerm_32f_I> {};
template <>
struct Transforms<double> : TransformCalls<FFTSpec_R_64f, ovksFFTGetSize_R_64f, ovksFFTInit_R_64f,
                                           ovksFFTFwd_RToPerm_64f, ovksFFTInv_PermToR_64f, ovksMulPerm_64f_I> {};
template <>
struct Transforms<Complex32f> : TransformCalls<FFTSpec_C_32fc, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc,
                                               ovksFFTFwd_CToC_32fc, ovksFFTInv_CToC_32fc, ovksMul_32fc_I> {};
template <>
struct Transforms<Complex64f> : TransformCalls<FFTSpec_C_64fc, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc,
                                               ovksFFTFwd_CToC_64fc, ovksFFTInv_CToC_64fc, ovksMul_64fc_I> {};

template <class T>
inline Status transformSizes(int order, TransformSizes& sizes) {
  return Transforms<T>::kGetSize(order, FFTDivInvByN, AlgHintNone, &sizes.spec, &sizes.init, &sizes.work);
}

// Filtering of blocks by a spectrum.
template <class T>
struct SpectralFilter {
  using F = Transforms<T>;

  const typename F::Spec* spec;
  const T* spectrum;
  int length;
  uint8_t* work;

  // block becomes its cyclic convolution with the filter.
  Status apply(T* block) const { return apply(block, block); }

  Status apply(const T* src, T* block) const {
    if (const Status s = F::kForward(src, block, spec, work)) return s;
    if (const Status s = F::kMultiplyInPlace(spectrum, block, length)) return s;
    return F::kInverse(block, block, spec, work);
  }
};

}  // namespace ovks
