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

template <class T>
struct Transforms;

template <>
struct Transforms<float> {
  using Spec = FFTSpec_R_32f;
  static constexpr auto kGetSize = ovksFFTGetSize_R_32f;
  static constexpr auto kInit = ovksFFTInit_R_32f;
  static constexpr auto kForward = ovksFFTFwd_RToPerm_32f;
  static constexpr auto kInverse = ovksFFTInv_PermToR_32f;
  static constexpr auto kMultiplyInPlace = ovksMulPerm_32f_I;
  static constexpr auto kMultiply = ovksMulPerm_32f;
};

template <>
struct Transforms<double> {
  using Spec = FFTSpec_R_64f;
  static constexpr auto kGetSize = ovksFFTGetSize_R_64f;
  static constexpr auto kInit = ovksFFTInit_R_64f;
  static constexpr auto kForward = ovksFFTFwd_RToPerm_64f;
  static constexpr auto kInverse = ovksFFTInv_PermToR_64f;
  static constexpr auto kMultiplyInPlace = ovksMulPerm_64f_I;
  static constexpr auto kMultiply = ovksMulPerm_64f;
};

template <>
struct Transforms<Complex32f> {
  using Spec = FFTSpec_C_32fc;
  static constexpr auto kGetSize = ovksFFTGetSize_C_32fc;
  static constexpr auto kInit = ovksFFTInit_C_32fc;
  static constexpr auto kForward = ovksFFTFwd_CToC_32fc;
  static constexpr auto kInverse = ovksFFTInv_CToC_32fc;
  static constexpr auto kMultiplyInPlace = ovksMul_32fc_I;
  static constexpr auto kMultiply = ovksMul_32fc;
};

template <>
struct Transforms<Complex64f> {
  using Spec = FFTSpec_C_64fc;
  static constexpr auto kGetSize = ovksFFTGetSize_C_64fc;
  static constexpr auto kInit = ovksFFTInit_C_64fc;
  static constexpr auto kForward = ovksFFTFwd_CToC_64fc;
  static constexpr auto kInverse = ovksFFTInv_CToC_64fc;
  static constexpr auto kMultiplyInPlace = ovksMul_64fc_I;
  static constexpr auto kMultiply = ovksMul_64fc;
};

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
