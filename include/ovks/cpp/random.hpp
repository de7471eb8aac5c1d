// SPDX-License-Identifier: MIT
/// @file
/// Random generators that own their state.
#ifndef OVKS_CPP_RANDOM_HPP
#define OVKS_CPP_RANDOM_HPP

#include "../generate.h"
#include "call.hpp"
#include "memory.hpp"

namespace ovks {

/// A sequence of random numbers that follows from its seed. It can be moved, not copied.
template <auto getSize, auto init, auto fill>
class Generator {
  using T = detail::Pointee<fill, 0>;
  using State = detail::Pointee<init, 0>;

 public:
  /// Uniform: numbers from @p a up to @p b; Gaussian: of mean @p a and standard deviation @p b.
  Generator(T a, T b, uint32_t seed) {
    int bytes;
    detail::checked<getSize>(getSize(&bytes));
    area_.require(bytes);
    detail::checked<init>(init(state(), a, b, seed));
  }

  /// Writes the next numbers of the sequence.
  void operator()(std::span<T> dst) {
    detail::checked<fill>(fill(dst.data(), detail::commonLength<fill>(dst), state()));
  }

 private:
  State* state() { return reinterpret_cast<State*>(area_.data()); }

  Buffer area_;
};

namespace detail {

template <class T>
struct GeneratorsOf;
template <>
struct GeneratorsOf<uint8_t> {
  using Uniform = Generator<ovksRandUniformGetSize_8u, ovksRandUniformInit_8u, ovksRandUniform_8u>;
  using Gauss = Generator<ovksRandGaussGetSize_8u, ovksRandGaussInit_8u, ovksRandGauss_8u>;
};
template <>
struct GeneratorsOf<int16_t> {
  using Uniform = Generator<ovksRandUniformGetSize_16s, ovksRandUniformInit_16s, ovksRandUniform_16s>;
  using Gauss = Generator<ovksRandGaussGetSize_16s, ovksRandGaussInit_16s, ovksRandGauss_16s>;
};
template <>
struct GeneratorsOf<float> {
  using Uniform = Generator<ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f>;
  using Gauss = Generator<ovksRandGaussGetSize_32f, ovksRandGaussInit_32f, ovksRandGauss_32f>;
};
template <>
struct GeneratorsOf<double> {
  using Uniform = Generator<ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f>;
  using Gauss = Generator<ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f>;
};

}  // namespace detail

/// Evenly distributed numbers; @p T is uint8_t, int16_t, float or double.
template <class T>
using UniformRandom = typename detail::GeneratorsOf<T>::Uniform;

/// Normally distributed numbers; @p T is uint8_t, int16_t, float or double.
template <class T>
using GaussRandom = typename detail::GeneratorsOf<T>::Gauss;

}  // namespace ovks

#endif
