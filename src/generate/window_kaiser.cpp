// SPDX-License-Identifier: MIT
// The Kaiser window.
#include <algorithm>

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
  return polynomialByPairs(t * t, 1, 3.5156229, 3.0899424, 1.2067492, 0.2659732, 0.0360768, 0.0045813);
}

// What root and quotient take of an argument is longest, and apart from the rest.
template <class V>
struct Argument {
  V x, inverse, inverseRoot;

  OVKS_INLINE explicit Argument(V v) : x(v), inverse(broadcast<V>(1) / v), inverseRoot(squareRoot(inverse)) {}
};

template <class V>
OVKS_INLINE V besselLarge(const Argument<V>& a) {
  return expBounded(a.x) * a.inverseRoot *
         polynomial(a.inverse * broadcast<V>(1 / 0.26666666666666666), 0.39894228, 0.01328592, 0.00225319, -0.00157565,
                    0.00916281, -0.02057706, 0.02635537, -0.01647633, 0.00392377);
}

// For arguments that do not fall from lane to lane.
template <class V>
OVKS_INLINE V bessel(const Argument<V>& a) {
  const V limit = broadcast<V>(3.75);
  if (a.x[lanes<V> - 1] < 3.75) return besselSmall(a.x);
  if (a.x[0] >= 3.75) return besselLarge(a);
  const V large = besselLarge(Argument<V>(a.x > limit ? a.x : limit));
  return a.x < limit ? besselSmall(a.x) : large;
}

// I0(beta sqrt(1 - (1 - 2 k / last)^2)) / I0(beta) for k = 0, 1, ... up to the centre, a vector of V at a time.
template <class V>
class BesselRatio : public Direct {
 public:
  BesselRatio(double beta, double last) : scale_(2 * beta / last), last_(last), following_(V{}), afterwards_(V{}) {
    using Two = Vec<double, 2>;
    factor_ = 1 / bessel(Argument<Two>(broadcast<Two>(beta)))[0];
    for (int i = 0; i < lanes<V>; ++i) index_[i] = i;
    following_ = prepared();
    afterwards_ = prepared();
  }

  template <int n>
  OVKS_INLINE V next() {
    static_assert(n == lanes<V>);
    const Argument<V> argument = following_;
    following_ = afterwards_;
    afterwards_ = prepared();
    return bessel(argument) * broadcast<V>(factor_);
  }

 private:
  OVKS_INLINE Argument<V> prepared() {
    const V centre = broadcast<V>(0.5 * last_), k = index_ < centre ? index_ : centre;
    index_ += broadcast<V>(lanes<V>);
    return Argument<V>(broadcast<V>(scale_) * squareRoot(k * (broadcast<V>(last_) - k)));
  }

  double scale_, last_, factor_;
  V index_;
  Argument<V> following_, afterwards_;
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
    BesselRatio<Vec<double, std::min(kBlock<T>, lanes<Vec<double>>)>> shape(beta, len - 1);
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
