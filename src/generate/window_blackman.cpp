// SPDX-License-Identifier: MIT
// Blackman windows: alpha given, standard, or optimal for the length.
#include "core/cos.hpp"
#include "core/export.hpp"
#include "generate/recurrence.hpp"
#include "generate/window.hpp"
#include "ovks/generate.h"

namespace {

using namespace ovks;

// One chain in 64f, c(k + 1) = 2 cos(theta) c(k) - c(k - 1). The rounding of every step is part of the shape.
class SingleSteps {
 public:
  SingleSteps(double before, double first, double factor)
      : factor_(factor), current_(first), following_(factor * first - before) {}

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    if constexpr (n == 2) {
      const double first = step();
      return Vec<double, 2>{first, step()};
    } else {
      const auto first = next<n / 2>();
      return concat(first, next<n / 2>());
    }
  }

  // An even number of steps, without a move in the chain.
  void skip(std::ptrdiff_t n) {
    for (; n > 0; n -= 2) {
      current_ = factor_ * following_ - current_;
      following_ = factor_ * current_ - following_;
    }
  }

 private:
  OVKS_INLINE double step() {
    const double c = current_;
    current_ = following_;
    following_ = factor_ * current_ - c;
    return c;
  }

  double factor_, current_, following_;
};

template <int steps>
struct ManySteps : Chains<1, steps> {
  ManySteps(double before, double first, double factor) : Chains<1, steps>({before}, {first}, factor) {}
};

// ((0.5 + alpha) - c) + c^2 (-4 alpha) for c = 0.5 cos(k theta), k = 0, 1, ..., c rounded to W, and the rest W's.
template <class W, class Chain>
class SquaredCosine : public Chain {
 public:
  SquaredCosine(W alpha, int len)
      : SquaredCosine(alpha, cosine(broadcast<Vec<double, 2>>(2 * std::numbers::pi / (len - 1)))[0]) {}

  template <class V>
  OVKS_INLINE V weights(V c) const {
    return (broadcast<V>(offset_) - c) + (c * c) * broadcast<V>(curvature_);
  }

 private:
  SquaredCosine(W alpha, double c) : Chain(0.5 * c, 0.5, 2 * c), offset_(W(0.5) + alpha), curvature_(-4 * alpha) {}

  W offset_, curvature_;
};

// Weights k = 0 .. len - 1, four at a time, go to elements k and then to their mirror images; an element keeps its
// later write. Below the centre those are the weights of the other half, whose chain runs on from the first half's. The
// four that hold the centre write both an element and its image, and there the image comes later.
template <class Chain, class T>
void apply(const Windowing<T>& windowing, Alpha<T> alpha) {
  constexpr int kGroup = 4;
  SquaredCosine<Weight<T>, Chain> shape(alpha, static_cast<int>(windowing.n));
  const std::ptrdiff_t last = windowing.n - 1, centre = last / 2 / kGroup * kGroup;
  shape.skip(centre);
  const auto weights = shape.weights(nextValues<Weight<T>, kGroup>(shape));
  for (int k = 0; k < kGroup; ++k) {
    const std::ptrdiff_t i = centre + k, image = last - i;
    if (image >= centre && image < centre + kGroup) {
      windowing.one(image, weights[k]);
    } else if (i > image) {
      windowing.one(i, weights[k]);
      windowing.one(image, weights[k]);
    }
  }
  windowing.pairs(shape, centre + kGroup, windowing.n);
}

// From here on many steps at once are faster than one after the other, and from there on twice as many.
constexpr int kMany = kAvx512 ? 250 : 400, kLong = 512;

struct Blackman {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len, Alpha<T> alpha) {
    if (const Status s = checkWindow(len, 3, pSrc, pDst)) return s;
    const Windowing<T> windowing{pSrc, pDst, len};
    if (len == 3) {
      windowing.copy(1);
      windowing.zero(0);
      windowing.zero(2);
    } else {
      [[maybe_unused]] const detail::Control<T> control;
      if (len < kMany) apply<SingleSteps>(windowing, alpha);
      else if (len < kLong) apply<ManySteps<8>>(windowing, alpha);
      else apply<ManySteps<16>>(windowing, alpha);
    }
    return StatusOk;
  }
};

struct BlackmanStd {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len) {
    return Blackman::run(pSrc, pDst, len, static_cast<Weight<T>>(-0.16));
  }
};

struct BlackmanOpt {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len) {
    if (len < 4) return StatusBadSize;
    [[maybe_unused]] const detail::Control<T> control;
    // Arithmetic in registers alone would not heed the control's beginning.
    asm volatile("" : "+r"(len));
    using V = Vec<double, 2>;
    const double q = 0.5 / cosine(broadcast<V>(std::numbers::pi / (len - 1)))[0];
    return Blackman::run(pSrc, pDst, len, static_cast<Weight<T>>(-(q * q)));
  }
};

}  // namespace

OVKS_EXPORT(ovksWinBlackman_16s, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_16s_I, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_16sc, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_16sc_I, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_32f, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_32f_I, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_32fc, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_32fc_I, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_64f, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_64f_I, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_64fc, window<Blackman>);
OVKS_EXPORT(ovksWinBlackman_64fc_I, window<Blackman>);

OVKS_EXPORT(ovksWinBlackmanStd_16s, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_16s_I, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_16sc, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_16sc_I, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_32f, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_32f_I, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_32fc, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_32fc_I, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_64f, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_64f_I, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_64fc, window<BlackmanStd>);
OVKS_EXPORT(ovksWinBlackmanStd_64fc_I, window<BlackmanStd>);

OVKS_EXPORT(ovksWinBlackmanOpt_16s, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_16s_I, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_16sc, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_16sc_I, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_32f, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_32f_I, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_32fc, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_32fc_I, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_64f, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_64f_I, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_64fc, window<BlackmanOpt>);
OVKS_EXPORT(ovksWinBlackmanOpt_64fc_I, window<BlackmanOpt>);
