// SPDX-License-Identifier: MIT
// The library's filters as the benchmarks call them.
#pragma once

#include <ovks.h>

#include <complex>
#include <cstdint>
#include <memory>

namespace bench {

struct Free {
  void operator()(void* p) const { ovksFree(p); }
};
using Bytes = std::shared_ptr<uint8_t>;

inline Bytes bytes(int64_t n) { return Bytes(n > 0 ? ovksMalloc_8u(static_cast<int>(n)) : nullptr, Free{}); }

// n elements, small and not all the same.
template <class T>
std::shared_ptr<T> vector(int n) {
  const Bytes memory = bytes(n * int64_t{sizeof(T)});
  T* p = reinterpret_cast<T*>(memory.get());
  for (int i = 0; i < n; ++i) p[i] = static_cast<T>(static_cast<float>(i % 17 - 8) / 64);
  return {memory, p};
}

// What the library has for an element type.
template <class Number, class ElementType, class SpecType, DataType type, auto init, auto run>
struct Calls {
  using Real = Number;
  using Element = ElementType;
  using Spec = SpecType;
  static constexpr DataType kType = type;
  static constexpr int kMultiplyAdds = sizeof(Element) / sizeof(Real) == 2 ? 4 : 1;
  static constexpr auto kInit = init;
  static constexpr auto kRun = run;
};

template <class T>
struct Api;

template <>
struct Api<float> : Calls<float, float, FIRSRSpec_32f, DataType32f, ovksFIRSRInit_32f, ovksFIRSR_32f> {
  static constexpr const char* kName = "32f";
};

template <>
struct Api<double> : Calls<double, double, FIRSRSpec_64f, DataType64f, ovksFIRSRInit_64f, ovksFIRSR_64f> {
  static constexpr const char* kName = "64f";
};

template <>
struct Api<std::complex<float>>
    : Calls<float, Complex32f, FIRSRSpec_32fc, DataType32fc, ovksFIRSRInit_32fc, ovksFIRSR_32fc> {
  static constexpr const char* kName = "32fc";
};

template <>
struct Api<std::complex<double>>
    : Calls<double, Complex64f, FIRSRSpec_64fc, DataType64fc, ovksFIRSRInit_64fc, ovksFIRSR_64fc> {
  static constexpr const char* kName = "64fc";
};

// A filter of the library's, with its areas and a delay line that goes from call to call.
template <class T>
class Filter {
  using A = Api<T>;
  using Element = typename A::Element;
  using Spec = typename A::Spec;

 public:
  Filter(const T* taps, int tapsLen, FilterAlg algorithm) : delay_(vector<T>(tapsLen)) {
    int specSize, bufferSize;
    ovksFIRSRGetSize(tapsLen, A::kType, &specSize, &bufferSize);
    spec_ = bytes(specSize);
    buffer_ = bytes(bufferSize);
    A::kInit(reinterpret_cast<const Element*>(taps), tapsLen, algorithm, spec());
  }

  void operator()(const T* src, T* dst, int n) const {
    const auto delay = reinterpret_cast<Element*>(delay_.get());
    A::kRun(reinterpret_cast<const Element*>(src), reinterpret_cast<Element*>(dst), n, spec(), delay, delay,
            buffer_.get());
  }

 private:
  Spec* spec() const { return reinterpret_cast<Spec*>(spec_.get()); }

  std::shared_ptr<T> delay_;
  Bytes spec_, buffer_;
};

// Taps, and samples with a history before them, which the peers read where it is.
template <class T>
struct Data {
  Data(int samples, int tapCount)
      : n(samples), tapsLen(tapCount), joint(vector<T>(n + tapsLen)), taps(vector<T>(tapsLen)), out(vector<T>(n)) {}

  const T* src() const { return joint.get() + tapsLen - 1; }
  T* dst() const { return out.get(); }

  int n, tapsLen;
  std::shared_ptr<T> joint, taps, out;
};

}  // namespace bench
