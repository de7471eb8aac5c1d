// SPDX-License-Identifier: MIT
/// @file
/// FIR filters that own their specification, delay line and work buffer; convolution.
#ifndef OVKS_CPP_FILTER_HPP
#define OVKS_CPP_FILTER_HPP

#include <algorithm>

#include "../filter.h"
#include "call.hpp"
#include "memory.hpp"

namespace ovks {
namespace detail {

template <auto initFunction, auto runFunction>
struct FIRBinding {
  using Tap = Pointee<initFunction, 0>;
  using Specification = Pointee<initFunction, 3>;
  static constexpr auto init = initFunction;
  static constexpr auto run = runFunction;
};

template <class Sample>
struct FIROf;
template <>
struct FIROf<float> : FIRBinding<ovksFIRSRInit_32f, ovksFIRSR_32f> {};
template <>
struct FIROf<double> : FIRBinding<ovksFIRSRInit_64f, ovksFIRSR_64f> {};
template <>
struct FIROf<Complex32f> : FIRBinding<ovksFIRSRInit_32fc, ovksFIRSR_32fc> {};
template <>
struct FIROf<Complex64f> : FIRBinding<ovksFIRSRInit_64fc, ovksFIRSR_64fc> {};
template <>
struct FIROf<int16_t> : FIRBinding<ovksFIRSRInit_32f, ovksFIRSR_16s> {};
template <>
struct FIROf<Complex16s> : FIRBinding<ovksFIRSRInit_32fc, ovksFIRSR_16sc> {};

}  // namespace detail

/// A filter of a stream of samples, block by block. It can be moved, not copied.
///
/// @p Sample is float, double, Complex32f, Complex64f, int16_t or Complex16s.
template <class Sample>
class FIR {
  using Binding = detail::FIROf<Sample>;

 public:
  using Tap = typename Binding::Tap;  ///< float for int16_t, Complex32f for Complex16s, else the sample's type

  /// A filter of these taps, the first of which multiplies the newest sample, with zeros before the stream.
  explicit FIR(std::span<const Tap> taps, FilterAlg algType = FilterAlgAuto) {
    const int len = detail::lengthOf(taps.size(), detail::kNameOf<Binding::init>);
    int bytes, workBytes;
    detail::checked<ovksFIRSRGetSize>(ovksFIRSRGetSize(len, detail::DataTypeOf<Tap>::value, &bytes, &workBytes));
    area_.require(bytes);
    work_.require(workBytes);
    detail::checked<Binding::init>(Binding::init(taps.data(), len, algType, specification()));
    delay_.resize(taps.size() - 1);
  }

  /// Filters the next block; @p dst may be @p src.
  void filter(std::span<const Sample> src, std::span<Sample> dst) {
    const int len = detail::commonLength<Binding::run>(src, dst);
    detail::checked<Binding::run>(
        Binding::run(src.data(), dst.data(), len, specification(), delay_.data(), delay_.data(), work_.data()));
  }
  /// In place.
  void filter(std::span<Sample> srcDst) { filter(srcDst, srcDst); }

  /// The samples before the next block, oldest first: one less than there are taps.
  std::span<Sample> delay() { return delay_; }

  /// Begins a new stream.
  void reset() { std::fill(delay_.begin(), delay_.end(), Sample{}); }

 private:
  typename Binding::Specification* specification() {
    return reinterpret_cast<typename Binding::Specification*>(area_.data());
  }

  Buffer area_, work_;
  Vector<Sample> delay_;
};

namespace detail {

template <auto function, class T = Pointee<function, 0>>
struct ConvolveCall {
  void operator()(std::span<const T> src1, std::span<const T> src2, std::span<T> dst, FilterAlg algType,
                  Buffer& buffer) const {
    const int len1 = lengthOf(src1.size(), kNameOf<function>), len2 = lengthOf(src2.size(), kNameOf<function>);
    T* const result = exactly(src1.size() + src2.size() - 1, dst, kNameOf<function>);
    int bytes;
    checked<ovksConvolveGetBufferSize>(ovksConvolveGetBufferSize(len1, len2, DataTypeOf<T>::value, algType, &bytes));
    checked<function>(function(src1.data(), len1, src2.data(), len2, result, algType, buffer.require(bytes)));
  }
  void operator()(std::span<const T> src1, std::span<const T> src2, std::span<T> dst,
                  FilterAlg algType = FilterAlgAuto) const {
    Buffer buffer;
    (*this)(src1, src2, dst, algType, buffer);
  }
};

}  // namespace detail

/// Convolution of two sources into a destination of src1Len + src2Len - 1 elements. The algorithm may follow, and then
/// a Buffer to work in.
inline constexpr Overloads<detail::ConvolveCall<ovksConvolve_32f>, detail::ConvolveCall<ovksConvolve_64f>> convolve{};

}  // namespace ovks

#endif
