// SPDX-License-Identifier: MIT
// The Kaiser window.
#include "core/exp.hpp"
#include "core/export.hpp"
#include "core/root.hpp"
#include "generate/window.hpp"
#include "ovks/generate.h"

namespace {

using namespace ovks;

// The modified Bessel function of order 0, by two polynomials in t = x / 3.75 and 1 / t.
template <class V>
OVKS_INLINE V besselSmall(V x) {
  const V t = x * broadcast<V>(0.26666666666666666);
  return polynomial(t * t, 1, 3.5156229, 3.0899424, 1.2067492, 0.2659732, 0.0360768, 0.0045813);
}

// Roots and quotients are what takes longest here: 1 / t comes from the one that 1 / sqrt(x) needs.
template <class V>
OVKS_INLINE V besselLarge(V x) {
  const V inverseRoot = broadcast<V>(1) / squareRoot(x);
  const V inverse = broadcast<V>(1 / 0.26666666666666666) * (inverseRoot * inverseRoot);
  return expBounded(x) * inverseRoot *
         polynomial(inverse, 0.39894228, 0.01328592, 0.00225319, -0.00157565, 0.00916281, -0.02057706, 0.02635537,
                    -0.01647633, 0.00392377);
}

// For arguments that do not fall from lane to lane.
template <class V>
OVKS_INLINE V bessel(V x) {
  const V limit = broadcast<V>(3.75);
  if (x[lanes<V> - 1] < 3.75) return besselSmall(x);
  if (x[0] >= 3.75) return besselLarge(x);
  const V large = besselLarge(x > limit ? x : limit);
  return x < limit ? besselSmall(x) : large;
}

// I0(beta sqrt(1 - (1 - 2 k / last)^2)) / I0(beta) for k = 0, 1, ... up to the centre.
class BesselRatio : public Direct {
 public:
  BesselRatio(double beta, double last) : scale_(2 * beta / last), last_(last) {
    using V = Vec<double, 2>;
    factor_ = 1 / bessel(broadcast<V>(beta))[0];
  }

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    using V = Vec<double, n>;
    V k = broadcast<V>(index_);
    for (int i = 0; i < n; ++i) k[i] += i;
    index_ += n;
    const V centre = broadcast<V>(0.5 * last_);
    k = k < centre ? k : centre;
    const V x = broadcast<V>(scale_) * squareRoot(k * (broadcast<V>(last_) - k));
    return bessel(x) * broadcast<V>(factor_);
  }

 private:
  double scale_, last_, factor_, index_ = 0;
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
