// SPDX-License-Identifier: MIT
// Entries of the transforms: checks, then the kernel of the order.
#pragma once

#include "ovks/transform.h"
#include "transform/real_transform.hpp"
#include "transform/small_real_transform.hpp"

namespace ovks::fft {

template <class Object>
struct ObjectTraits;
template <class Real, Kind k>
struct Traits {
  using T = Real;
  static constexpr Kind kind = k;
};
template <>
struct ObjectTraits<FFTSpec_C_32fc> : Traits<float, Kind::interleaved> {};
template <>
struct ObjectTraits<FFTSpec_C_32f> : Traits<float, Kind::split> {};
template <>
struct ObjectTraits<FFTSpec_R_32f> : Traits<float, Kind::real> {};
template <>
struct ObjectTraits<FFTSpec_C_64fc> : Traits<double, Kind::interleaved> {};
template <>
struct ObjectTraits<FFTSpec_C_64f> : Traits<double, Kind::split> {};
template <>
struct ObjectTraits<FFTSpec_R_64f> : Traits<double, Kind::real> {};

template <class Object>
const auto& specOf(const Object* p) {
  return *reinterpret_cast<const Spec<typename ObjectTraits<Object>::T>*>(p);
}

template <class Object, class... P>
OVKS_INLINE Status checkCall(const Object* pSpec, const uint8_t* pBuffer, const P*... data) {
  using O = ObjectTraits<Object>;
  if (!pSpec) return StatusNullPtr;
  const auto& spec = specOf(pSpec);
  if (spec.contextId != contextOf<typename O::T>(O::kind)) return StatusContextMismatch;
  if (((data == nullptr) | ...)) return StatusNullPtr;
  if (!pBuffer && spec.bufferSize > 0) return StatusNullPtr;
  return StatusOk;
}

template <Direction D, class T, class Points>
void transformComplex(const Spec<T>& spec, Points src, Points dst, uint8_t* pBuffer) {
  const bool scale = D == Direction::forward ? spec.scaleForward : spec.scaleInverse;
  if (spec.order > kMaxShortOrder<T>) {
    T* work = reinterpret_cast<T*>(aligned(pBuffer));
    return transformLong<D>(Job<T>{spec.order, spec.twiddles, spec.bitReversal, work, scale, spec.factor}, src, dst);
  }
  transformShort<D>(spec.order, src, dst, scale, spec.factor);
}

template <Direction D, class C, class Object>
Status complexTransform(const C* pSrc, C* pDst, const Object* pSpec, uint8_t* pBuffer) {
  using T = typename ObjectTraits<Object>::T;
  if (const Status s = checkCall(pSpec, pBuffer, pSrc, pDst)) return s;
  const Interleaved<T> src = {reinterpret_cast<T*>(const_cast<C*>(pSrc))}, dst = {reinterpret_cast<T*>(pDst)};
  transformComplex<D>(specOf(pSpec), src, dst, pBuffer);
  return StatusOk;
}

template <Direction D, class C, class Object>
Status complexTransform(C* pSrcDst, const Object* pSpec, uint8_t* pBuffer) {
  return complexTransform<D>(static_cast<const C*>(pSrcDst), pSrcDst, pSpec, pBuffer);
}

template <Direction D, class T, class Object>
Status complexTransform(const T* pSrcRe, const T* pSrcIm, T* pDstRe, T* pDstIm, const Object* pSpec, uint8_t* pBuffer) {
  if (const Status s = checkCall(pSpec, pBuffer, pSrcRe, pSrcIm, pDstRe, pDstIm)) return s;
  const Split<T> src = {const_cast<T*>(pSrcRe), const_cast<T*>(pSrcIm)}, dst = {pDstRe, pDstIm};
  transformComplex<D>(specOf(pSpec), src, dst, pBuffer);
  return StatusOk;
}

template <Direction D, class T, class Object>
Status splitTransform(T* pSrcDstRe, T* pSrcDstIm, const Object* pSpec, uint8_t* pBuffer) {
  return complexTransform<D>(pSrcDstRe, pSrcDstIm, pSrcDstRe, pSrcDstIm, pSpec, pBuffer);
}

template <Direction D, class Layout, class T, class Object>
Status realTransform(const T* pSrc, T* pDst, const Object* pSpec, uint8_t* pBuffer) {
  if (const Status s = checkCall(pSpec, pBuffer, pSrc, pDst)) return s;
  const Spec<T>& spec = specOf(pSpec);
  T* work = reinterpret_cast<T*>(aligned(pBuffer));
  constexpr bool forward = D == Direction::forward;
  if (spec.order > kMaxSmallRealOrder) {
    if constexpr (forward) realForward<Layout>(spec, pSrc, pDst, work);
    else realInverse<Layout>(spec, pSrc, pDst, work);
  } else if (forward ? spec.scaleForward : spec.scaleInverse) {
    using Kernels = ShortRealTransforms<Layout, true, T>;
    (forward ? Kernels::kForward : Kernels::kInverse)[spec.order](pSrc, pDst, spec.factor);
  } else {
    using Kernels = ShortRealTransforms<Layout, false, T>;
    (forward ? Kernels::kForward : Kernels::kInverse)[spec.order](pSrc, pDst, spec.factor);
  }
  return StatusOk;
}

template <Direction D, class Layout, class T, class Object>
Status realTransform(T* pSrcDst, const Object* pSpec, uint8_t* pBuffer) {
  return realTransform<D, Layout>(static_cast<const T*>(pSrcDst), pSrcDst, pSpec, pBuffer);
}

}  // namespace ovks::fft
