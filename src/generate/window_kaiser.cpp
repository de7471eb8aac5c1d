// SPDX-License-Identifier: MIT
// The Kaiser window.
#include "core/exp.hpp"
#include "core/export.hpp"
#include "core/root.hpp"
#include "generate/window.hpp"
#include "ovks/generate.h"

namespace {

using namespace ovks;

// Arguments x of the modified Bessel function of order 0 are in units of ln 2 / 16, in which the exponential takes
// them. It is approximated by two polynomials, in powers of (x / 3.75)^2 below 3.75 and of 3.75 / x from there.
constexpr double kUnits = 23.083120654223414, kRootOfUnits = 4.804489635145799;
constexpr double kLimit = 3.75 * kUnits;

template <class V>
OVKS_INLINE V besselSmall(V x) {
  const V t = x * broadcast<V>(1 / kLimit);
  return polynomialByPairs(t * t, 1, 3.5156229, 3.0899424, 1.2067492, 0.2659732, 0.0360768, 0.0045813);
}

template <class V, int n>
OVKS_INLINE void besselLarge(V (&x)[n]) {
  constexpr double c = kRootOfUnits, t = kLimit, t2 = t * t, t3 = t2 * t, t4 = t2 * t2;
  V root[n], inverse[n], values[n];
  inverseRoots(root, x);
  for (int i = 0; i < n; ++i) inverse[i] = root[i] * root[i];
  polynomials(values, inverse, 0.39894228 * c, 0.01328592 * c * t, 0.00225319 * c * t2, -0.00157565 * c * t3,
              0.00916281 * c * t4, -0.02057706 * c * t4 * t, 0.02635537 * c * t4 * t2, -0.01647633 * c * t4 * t3,
              0.00392377 * c * t4 * t4);
  for (int i = 0; i < n; ++i) values[i] *= root[i];
  exp2Sixteenths(x);
  for (int i = 0; i < n; ++i) x[i] *= values[i];
}

// From arguments that do not fall.
template <class V, int n>
OVKS_INLINE void bessel(V (&x)[n]) {
  constexpr double kLarge = kLimit * (1 - 0x1p-50);  // 3.75 is large, however it was rounded
  if (x[0][0] >= kLarge) {
    besselLarge(x);
  } else if (x[n - 1][lanes<V> - 1] < kLarge) {
    for (V& v : x) v = besselSmall(v);
  } else {
    const V limit = broadcast<V>(kLarge);
    V large[n];
    for (int i = 0; i < n; ++i) large[i] = larger(limit, x[i]);
    besselLarge(large);
    for (int i = 0; i < n; ++i) x[i] = x[i] < limit ? besselSmall(x[i]) : large[i];
  }
}

// I0(beta sqrt(1 - (1 - 2 k / last)^2)) / I0(beta) for k = 0, 1, ... up to the centre. Some vectors are made at a time,
// since each is a long chain of operations; the roots, which the divider makes, one time ahead.
class BesselRatio : public Direct {
 public:
  [[gnu::noinline]] BesselRatio(double beta, double last) : width_(2 * kUnits * beta), scale_(width_ / last) {
    V centre[1] = {broadcast<V>(0.5 * width_)};
    bessel(centre);
    factor_ = 1 / centre[0][0];
    V index;
    for (int i = 0; i < lanes<V>; ++i) index[i] = i;
    for (int i = 0; i < kVectors; ++i) offsets_[i] = (index + broadcast<V>(i * lanes<V>)) * broadcast<V>(scale_);
    prepare();
  }

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    if (at_ == kSize) refill();
    at_ += n;
    return load<Vec<double, n>>(values_ + at_ - n);
  }

 private:
  using V = Vec<double>;
  static constexpr int kVectors = 4, kSize = kVectors * lanes<V>;

  OVKS_INLINE void prepare() {
    const V centre = broadcast<V>(0.5 * width_), start = broadcast<V>(scale_ * index_);
    for (int i = 0; i < kVectors; ++i) {
      const V x = smaller(centre, start + offsets_[i]);
      following_[i] = squareRoot(x * (broadcast<V>(width_) - x));
    }
    index_ += kSize;
  }

  [[gnu::noinline]] void refill() {
    V x[kVectors];
    for (int i = 0; i < kVectors; ++i) x[i] = following_[i];
    prepare();
    bessel(x);
    for (int i = 0; i < kVectors; ++i) store(values_ + i * lanes<V>, x[i] * broadcast<V>(factor_));
    at_ = 0;
  }

  double width_, scale_, factor_, index_ = 0;
  V offsets_[kVectors], following_[kVectors];
  alignas(64) double values_[kSize];
  int at_ = kSize;
};

struct Kaiser {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len, Alpha<T> alpha) {
    if (const Status s = check(len, pSrc, pDst)) return s;
    [[maybe_unused]] const detail::Control<T> control;
    const Weight<T> width = std::fabs(alpha) * static_cast<Weight<T>>(len - 1);
    const double beta = 0.5 * width;
    if (beta > 38) return StatusHugeWin;
    const Windowing<T> windowing{pSrc, pDst, len};
    if (len % 2) windowing.copy(len / 2);
    if (len == 1) return StatusOk;
    BesselRatio shape(beta, len - 1);
    windowing.pairs(shape, 0, len / 2);
    return StatusOk;
  }
};

}  // namespace

OVKS_EXPORT(ovksWinKaiser_16s, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_16s_I, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_16sc, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_16sc_I, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_32f, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_32f_I, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_32fc, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_32fc_I, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_64f, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_64f_I, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_64fc, window<Kaiser>);
OVKS_EXPORT(ovksWinKaiser_64fc_I, window<Kaiser>);
