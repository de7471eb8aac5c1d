// SPDX-License-Identifier: MIT
// A transform of one variant behind one face, and its reference: a radix-2 transform in long double.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <limits>
#include <memory>
#include <random>
#include <vector>

#include "ovks.h"
#include "support/guarded.hpp"

namespace ovks::test {

using Wide = std::complex<long double>;
using Spectrum = std::vector<Wide>;

inline std::size_t reversed(std::size_t i, int bits) {
  std::size_t r = 0;
  for (int b = 0; b < bits; ++b) r |= (i >> b & 1) << (bits - 1 - b);
  return r;
}

// sum x[n] exp(sign 2 pi i n k / N), without a factor.
inline Spectrum referenceTransform(const Spectrum& x, int sign) {
  const std::size_t n = x.size();
  const int order = static_cast<int>(std::lround(std::log2(static_cast<double>(n))));
  const long double turn = sign * 6.283185307179586476925286766559L;
  Spectrum y(n), w(n / 2 + 1);
  for (std::size_t i = 0; i < n; ++i) y[reversed(i, order)] = x[i];
  for (std::size_t j = 0; j < w.size(); ++j) w[j] = std::polar(1.0L, turn * static_cast<long double>(j) / n);
  for (std::size_t half = 1; half < n; half *= 2) {
    for (std::size_t i = 0; i < n; i += 2 * half) {
      for (std::size_t j = i; j < i + half; ++j) {
        const Wide a = y[j], b = y[j + half] * w[(j - i) * (n / half / 2)];
        y[j] = a + b;
        y[j + half] = a - b;
      }
    }
  }
  return y;
}

template <class T>
struct Api;
template <>
struct Api<float> {
  static constexpr int kMaxOrder = 28, kMaxInCache = 18;
  using Complex = Complex32f;
  using C = FFTSpec_C_32fc;
  using S = FFTSpec_C_32f;
  using R = FFTSpec_R_32f;
  static constexpr auto sizeC = ovksFFTGetSize_C_32fc, sizeS = ovksFFTGetSize_C_32f, sizeR = ovksFFTGetSize_R_32f;
  static constexpr auto initC = ovksFFTInit_C_32fc;
  static constexpr auto initS = ovksFFTInit_C_32f;
  static constexpr auto initR = ovksFFTInit_R_32f;
  static constexpr auto forward = ovksFFTFwd_CToC_32fc, inverse = ovksFFTInv_CToC_32fc;
  static constexpr auto forwardI = ovksFFTFwd_CToC_32fc_I, inverseI = ovksFFTInv_CToC_32fc_I;
  static constexpr auto splitForward = ovksFFTFwd_CToC_32f, splitInverse = ovksFFTInv_CToC_32f;
  static constexpr auto splitForwardI = ovksFFTFwd_CToC_32f_I, splitInverseI = ovksFFTInv_CToC_32f_I;
  using Real = Status (*)(const float*, float*, const R*, uint8_t*);
  using RealI = Status (*)(float*, const R*, uint8_t*);
  static constexpr Real toPacked[] = {ovksFFTFwd_RToPerm_32f, ovksFFTFwd_RToPack_32f, ovksFFTFwd_RToCCS_32f};
  static constexpr Real toReal[] = {ovksFFTInv_PermToR_32f, ovksFFTInv_PackToR_32f, ovksFFTInv_CCSToR_32f};
  static constexpr RealI toPackedI[] = {ovksFFTFwd_RToPerm_32f_I, ovksFFTFwd_RToPack_32f_I, ovksFFTFwd_RToCCS_32f_I};
  static constexpr RealI toRealI[] = {ovksFFTInv_PermToR_32f_I, ovksFFTInv_PackToR_32f_I, ovksFFTInv_CCSToR_32f_I};
};
template <>
struct Api<double> {
  static constexpr int kMaxOrder = 27, kMaxInCache = 17;
  using Complex = Complex64f;
  using C = FFTSpec_C_64fc;
  using S = FFTSpec_C_64f;
  using R = FFTSpec_R_64f;
  static constexpr auto sizeC = ovksFFTGetSize_C_64fc, sizeS = ovksFFTGetSize_C_64f, sizeR = ovksFFTGetSize_R_64f;
  static constexpr auto initC = ovksFFTInit_C_64fc;
  static constexpr auto initS = ovksFFTInit_C_64f;
  static constexpr auto initR = ovksFFTInit_R_64f;
  static constexpr auto forward = ovksFFTFwd_CToC_64fc, inverse = ovksFFTInv_CToC_64fc;
  static constexpr auto forwardI = ovksFFTFwd_CToC_64fc_I, inverseI = ovksFFTInv_CToC_64fc_I;
  static constexpr auto splitForward = ovksFFTFwd_CToC_64f, splitInverse = ovksFFTInv_CToC_64f;
  static constexpr auto splitForwardI = ovksFFTFwd_CToC_64f_I, splitInverseI = ovksFFTInv_CToC_64f_I;
  using Real = Status (*)(const double*, double*, const R*, uint8_t*);
  using RealI = Status (*)(double*, const R*, uint8_t*);
  static constexpr Real toPacked[] = {ovksFFTFwd_RToPerm_64f, ovksFFTFwd_RToPack_64f, ovksFFTFwd_RToCCS_64f};
  static constexpr Real toReal[] = {ovksFFTInv_PermToR_64f, ovksFFTInv_PackToR_64f, ovksFFTInv_CCSToR_64f};
  static constexpr RealI toPackedI[] = {ovksFFTFwd_RToPerm_64f_I, ovksFFTFwd_RToPack_64f_I, ovksFFTFwd_RToCCS_64f_I};
  static constexpr RealI toRealI[] = {ovksFFTInv_PermToR_64f_I, ovksFFTInv_PackToR_64f_I, ovksFFTInv_CCSToR_64f_I};
};

// A specification and its work buffer, each of just the size that was asked for, at an odd address.
template <class Object>
class Plan {
 public:
  template <class GetSize, class Init>
  Plan(GetSize getSize, Init init, int order, int flag) {
    int sizes[3];
    EXPECT_EQ(getSize(order, flag, AlgHintNone, &sizes[0], &sizes[1], &sizes[2]), StatusOk);
    spec_ = std::make_unique<Guarded>(sizes[0]);
    work_ = std::make_unique<Guarded>(sizes[2]);
    Guarded room(sizes[1]);
    EXPECT_EQ(init(&object, order, flag, AlgHintNone, place(*spec_, sizes[0]), place(room, sizes[1])), StatusOk);
    EXPECT_TRUE(spec_->intact() && room.intact());
    buffer = place(*work_, sizes[2]);
  }
  bool intact() const { return spec_->intact() && work_->intact(); }

  Object* object = nullptr;
  uint8_t* buffer;

 private:
  static uint8_t* place(Guarded& g, int n) {
    const std::vector<uint8_t> bytes(n, 0xa5);
    std::byte* p = g.put({true, 0}, bytes.data(), bytes.size());
    return n == 0 ? nullptr : reinterpret_cast<uint8_t*>(p);
  }
  std::unique_ptr<Guarded> spec_, work_;
};

// So many random numbers; the end or the start of a guarded buffer, whose alignment is the element's.
template <class T>
std::vector<T> noise(std::size_t n, unsigned seed = 1) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> uniform(-1, 1);
  std::vector<T> x(n);
  for (T& v : x) v = static_cast<T>(uniform(random));
  return x;
}

template <class T>
Spectrum pairs(const std::vector<T>& x) {
  Spectrum z(x.size() / 2);
  for (std::size_t i = 0; i < z.size(); ++i) z[i] = {x[2 * i], x[2 * i + 1]};
  return z;
}

// Relative error of two norms, in units of eps sqrt(order). Multiplying by a factor that is no power of two counts as
// one order more; so few points that luck decides count as some.
template <class T>
double relativeError(const Spectrum& got, const Spectrum& want, int order, int flag) {
  order = std::max(order, 4) + (flag == FFTDivBySqrtN);
  long double e = 0, s = 0;
  for (std::size_t i = 0; i < want.size(); ++i) e += std::norm(got[i] - want[i]), s += std::norm(want[i]);
  return static_cast<double>(std::sqrt(e / s)) / std::numeric_limits<T>::epsilon() / std::sqrt(order);
}
inline constexpr double kErrorBound = 0.35;

// The factor of a direction, as T holds it.
template <class T>
long double factorOf(int flag, bool forward, int order) {
  const long double n = std::exp2(static_cast<long double>(order));
  if (flag == FFTDivBySqrtN) return static_cast<T>(1 / std::sqrt(static_cast<double>(n)));
  return flag == (forward ? FFTDivFwdByN : FFTDivInvByN) ? 1 / n : 1;
}
inline constexpr int kFlags[] = {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv};

}  // namespace ovks::test
