// SPDX-License-Identifier: MIT
/// @file
/// Fast Fourier transforms that own their specification and their work buffer. They can be moved, not copied; threads
/// take one each. Arrays of another length than the transform's are an error. Without a destination the transform is
/// done in place.
#ifndef OVKS_CPP_FFT_HPP
#define OVKS_CPP_FFT_HPP

#include "../transform.h"
#include "call.hpp"
#include "memory.hpp"
#include "spectrum.hpp"

namespace ovks {
namespace detail {

// A specification and the room that its transforms work in.
template <auto getSize, auto init>
class FFTObject {
 public:
  /// N, the number of points.
  std::size_t length() const { return std::size_t{1} << order_; }

 protected:
  FFTObject(int order, FFTFlag flag, AlgHint hint) : order_(order) {
    int bytes, initBytes, workBytes;
    checked<getSize>(getSize(order, flag, hint, &bytes, &initBytes, &workBytes));
    Buffer initRoom(initBytes);
    area_.require(bytes);
    work_.require(workBytes);
    Specification* made;  // at the area's start, which is aligned
    checked<init>(init(&made, order, flag, hint, area_.data(), initRoom.data()));
  }

  // Calls with arrays of the right size.
  template <class Call, class... T>
  void run(Call call, T*... arrays) {
    call(arrays..., reinterpret_cast<const Specification*>(area_.data()), work_.data());
  }
  template <class T>
  T* points(std::span<T> array) const {
    return exactly(length(), array, kNameOf<init>);
  }
  template <class T>
  T* ccs(std::span<T> array) const {
    return exactly(ccsLength(length()), array, kNameOf<init>);
  }

 private:
  using Specification = std::remove_pointer_t<Pointee<init, 0>>;

  int order_;
  Buffer area_, work_;
};

template <class T>
struct FFTOf;
template <>
struct FFTOf<float> {
  using Complex = Complex32f;
  using Interleaved = FFTObject<ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc>;
  using Split = FFTObject<ovksFFTGetSize_C_32f, ovksFFTInit_C_32f>;
  using Real = FFTObject<ovksFFTGetSize_R_32f, ovksFFTInit_R_32f>;
};
template <>
struct FFTOf<double> {
  using Complex = Complex64f;
  using Interleaved = FFTObject<ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc>;
  using Split = FFTObject<ovksFFTGetSize_C_64f, ovksFFTInit_C_64f>;
  using Real = FFTObject<ovksFFTGetSize_R_64f, ovksFFTInit_R_64f>;
};

inline constexpr Plain<ovksFFTFwd_CToC_32fc, ovksFFTFwd_CToC_32fc_I, ovksFFTFwd_CToC_32f, ovksFFTFwd_CToC_32f_I,
                       ovksFFTFwd_CToC_64fc, ovksFFTFwd_CToC_64fc_I, ovksFFTFwd_CToC_64f, ovksFFTFwd_CToC_64f_I>
    cToC{};
inline constexpr Plain<ovksFFTInv_CToC_32fc, ovksFFTInv_CToC_32fc_I, ovksFFTInv_CToC_32f, ovksFFTInv_CToC_32f_I,
                       ovksFFTInv_CToC_64fc, ovksFFTInv_CToC_64fc_I, ovksFFTInv_CToC_64f, ovksFFTInv_CToC_64f_I>
    cFromC{};
inline constexpr Plain<ovksFFTFwd_RToCCS_32f, ovksFFTFwd_RToCCS_32f_I, ovksFFTFwd_RToCCS_64f, ovksFFTFwd_RToCCS_64f_I>
    rToCcs{};
inline constexpr Plain<ovksFFTInv_CCSToR_32f, ovksFFTInv_CCSToR_32f_I, ovksFFTInv_CCSToR_64f, ovksFFTInv_CCSToR_64f_I>
    ccsToR{};
inline constexpr Plain<ovksFFTFwd_RToPack_32f, ovksFFTFwd_RToPack_32f_I, ovksFFTFwd_RToPack_64f,
                       ovksFFTFwd_RToPack_64f_I>
    rToPack{};
inline constexpr Plain<ovksFFTInv_PackToR_32f, ovksFFTInv_PackToR_32f_I, ovksFFTInv_PackToR_64f,
                       ovksFFTInv_PackToR_64f_I>
    packToR{};
inline constexpr Plain<ovksFFTFwd_RToPerm_32f, ovksFFTFwd_RToPerm_32f_I, ovksFFTFwd_RToPerm_64f,
                       ovksFFTFwd_RToPerm_64f_I>
    rToPerm{};
inline constexpr Plain<ovksFFTInv_PermToR_32f, ovksFFTInv_PermToR_32f_I, ovksFFTInv_PermToR_64f,
                       ovksFFTInv_PermToR_64f_I>
    permToR{};

}  // namespace detail

/// Complex transform; @p T is float or double.
template <class T>
class ComplexFFT : public detail::FFTOf<T>::Interleaved {
 public:
  using Complex = typename detail::FFTOf<T>::Complex;  ///< its elements

  /// A transform of length() = 2^order points. By default the inverse undoes the forward transform.
  explicit ComplexFFT(int order, FFTFlag flag = FFTDivInvByN, AlgHint hint = AlgHintNone)
      : detail::FFTOf<T>::Interleaved(order, flag, hint) {}

  /// From samples to the spectrum.
  void forward(std::span<const Complex> src, std::span<Complex> dst) {
    this->run(detail::cToC, this->points(src), this->points(dst));
  }
  void forward(std::span<Complex> srcDst) { this->run(detail::cToC, this->points(srcDst)); }  ///< in place

  /// From the spectrum to samples.
  void inverse(std::span<const Complex> src, std::span<Complex> dst) {
    this->run(detail::cFromC, this->points(src), this->points(dst));
  }
  void inverse(std::span<Complex> srcDst) { this->run(detail::cFromC, this->points(srcDst)); }  ///< in place
};

/// Complex transform of real and imaginary parts in two arrays; @p T is float or double.
template <class T>
class SplitFFT : public detail::FFTOf<T>::Split {
 public:
  /// A transform of length() = 2^order points. By default the inverse undoes the forward transform.
  explicit SplitFFT(int order, FFTFlag flag = FFTDivInvByN, AlgHint hint = AlgHintNone)
      : detail::FFTOf<T>::Split(order, flag, hint) {}

  /// From samples to the spectrum.
  void forward(std::span<const T> srcRe, std::span<const T> srcIm, std::span<T> dstRe, std::span<T> dstIm) {
    this->run(detail::cToC, this->points(srcRe), this->points(srcIm), this->points(dstRe), this->points(dstIm));
  }
  /// In place.
  void forward(std::span<T> re, std::span<T> im) { this->run(detail::cToC, this->points(re), this->points(im)); }

  /// From the spectrum to samples.
  void inverse(std::span<const T> srcRe, std::span<const T> srcIm, std::span<T> dstRe, std::span<T> dstIm) {
    this->run(detail::cFromC, this->points(srcRe), this->points(srcIm), this->points(dstRe), this->points(dstIm));
  }
  /// In place.
  void inverse(std::span<T> re, std::span<T> im) { this->run(detail::cFromC, this->points(re), this->points(im)); }
};

/// Transform of N real samples into a packed spectrum of N reals, or of ccsLength(N) in the CCS layout; @p T is float
/// or double.
template <class T>
class RealFFT : public detail::FFTOf<T>::Real {
 public:
  /// A transform of length() = 2^order points. By default the inverse undoes the forward transform.
  explicit RealFFT(int order, FFTFlag flag = FFTDivInvByN, AlgHint hint = AlgHintNone)
      : detail::FFTOf<T>::Real(order, flag, hint) {}

  /// From samples to the CCS layout.
  void toCcs(std::span<const T> src, std::span<T> dst) { this->run(detail::rToCcs, this->points(src), this->ccs(dst)); }
  void toCcs(std::span<T> srcDst) { this->run(detail::rToCcs, this->ccs(srcDst)); }  ///< in place
  /// From the CCS layout to samples.
  void fromCcs(std::span<const T> src, std::span<T> dst) {
    this->run(detail::ccsToR, this->ccs(src), this->points(dst));
  }
  void fromCcs(std::span<T> srcDst) { this->run(detail::ccsToR, this->ccs(srcDst)); }  ///< in place

  /// From samples to the Pack layout.
  void toPack(std::span<const T> src, std::span<T> dst) {
    this->run(detail::rToPack, this->points(src), this->points(dst));
  }
  void toPack(std::span<T> srcDst) { this->run(detail::rToPack, this->points(srcDst)); }  ///< in place
  /// From the Pack layout to samples.
  void fromPack(std::span<const T> src, std::span<T> dst) {
    this->run(detail::packToR, this->points(src), this->points(dst));
  }
  void fromPack(std::span<T> srcDst) { this->run(detail::packToR, this->points(srcDst)); }  ///< in place

  /// From samples to the Perm layout.
  void toPerm(std::span<const T> src, std::span<T> dst) {
    this->run(detail::rToPerm, this->points(src), this->points(dst));
  }
  void toPerm(std::span<T> srcDst) { this->run(detail::rToPerm, this->points(srcDst)); }  ///< in place
  /// From the Perm layout to samples.
  void fromPerm(std::span<const T> src, std::span<T> dst) {
    this->run(detail::permToR, this->points(src), this->points(dst));
  }
  void fromPerm(std::span<T> srcDst) { this->run(detail::permToR, this->points(srcDst)); }  ///< in place
};

}  // namespace ovks

#endif
