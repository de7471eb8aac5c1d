// SPDX-License-Identifier: MIT
// Windows from one recurrence of cosines: Hann and Hamming.
#include "core/cos.hpp"
#include "core/export.hpp"
#include "generate/recurrence.hpp"
#include "generate/window.hpp"
#include "ovks/generate.h"

namespace {

using namespace ovks;

// From here on many steps at once are faster than one after the other; in four lanes they never are.
constexpr int kLong = 1000;

// The starts of two interleaved chains of amplitude cos(k theta), of even and of odd k:
// c(k + 4) = 2 cos(2 theta) c(k + 2) - c(k). The rounding of every step is part of the shape.
struct TwoChains {
  using Pair = Vec<double, 2>;

  TwoChains(double amplitude, int len) {
    const double theta = 2 * std::numbers::pi / (len - 1);
    const Pair cosines = cosine(Pair{theta, 2 * theta});
    const double twice = 2 * cosines[0];
    const double c0 = amplitude, c1 = twice * c0 - amplitude * cosines[0], c2 = twice * c1 - c0, c3 = twice * c2 - c1;
    first = Pair{c0, c1};
    second = Pair{c2, c3};
    factor = 2 * cosines[1];
    before = factor * first - second;
  }

  // Whether the chains' own step leads from `before` to `second`, as it does unless that was rounded.
  bool exact() const {
    const Pair next = factor * first - before;
    return next[0] == second[0] && next[1] == second[1];
  }

  double factor;
  Pair before, first, second;
};

// offset - amplitude cos(k theta) for k = 0, 1, ..., a pair of values at a time.
class ByPairs : public Direct {
 public:
  ByPairs(double offset, const TwoChains& chains)
      : offset_(offset), current_(chains.first), following_(chains.second), factor_(broadcast<Pair>(chains.factor)) {}

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    return broadcast<Vec<double, n>>(offset_) - cosines<n>();
  }

 private:
  using Pair = TwoChains::Pair;

  template <int n>
  OVKS_INLINE Vec<double, n> cosines() {
    if constexpr (n == 2) {
      const Pair c = current_;
      current_ = following_;
      following_ = factor_ * following_ - c;
      return c;
    } else {
      const auto first = cosines<n / 2>();
      return concat(first, cosines<n / 2>());
    }
  }

  double offset_;
  Pair current_, following_, factor_;
};

// The same, many values at a time.
class ByParts : public Direct, public Chains<2, 8> {
 public:
  ByParts(double offset, const TwoChains& chains)
      : Chains({chains.before[0], chains.before[1]}, {chains.first[0], chains.first[1]}, chains.factor),
        offset_(offset) {}

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    return broadcast<Vec<double, n>>(offset_) - Chains::next<n>();
  }

 private:
  double offset_;
};

template <class Shape, class T>
void applyPairs(const Windowing<T>& windowing, double offset, const TwoChains& chains) {
  Shape shape(offset, chains);
  windowing.pairs(shape, 0, windowing.n / 2);
}

template <class T>
Status apply(double offset, double amplitude, const T* pSrc, T* pDst, int len) {
  [[maybe_unused]] const detail::Control<T> control;
  const Windowing<T> windowing{pSrc, pDst, len};
  const TwoChains chains(amplitude, len);
  if (kAvx512 && len >= kLong && chains.exact()) applyPairs<ByParts>(windowing, offset, chains);
  else applyPairs<ByPairs>(windowing, offset, chains);
  if (len % 2) windowing.copy(len / 2);
  return StatusOk;
}

struct Hann {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len) {
    if (const Status s = checkWindow(len, 3, pSrc, pDst)) return s;
    if (len > 3) return apply(0.5, 0.5, pSrc, pDst, len);
    const Windowing<T> windowing{pSrc, pDst, len};
    windowing.copy(1);
    windowing.zero(0);
    windowing.zero(2);
    return StatusOk;
  }
};

struct Hamming {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len) {
    if (const Status s = checkWindow(len, 3, pSrc, pDst)) return s;
    return apply(0.54, 0.46, pSrc, pDst, len);
  }
};

}  // namespace

OVKS_EXPORT(ovksWinHann_16s, window<Hann>);
OVKS_EXPORT(ovksWinHann_16s_I, window<Hann>);
OVKS_EXPORT(ovksWinHann_16sc, window<Hann>);
OVKS_EXPORT(ovksWinHann_16sc_I, window<Hann>);
OVKS_EXPORT(ovksWinHann_32f, window<Hann>);
OVKS_EXPORT(ovksWinHann_32f_I, window<Hann>);
OVKS_EXPORT(ovksWinHann_32fc, window<Hann>);
OVKS_EXPORT(ovksWinHann_32fc_I, window<Hann>);
OVKS_EXPORT(ovksWinHann_64f, window<Hann>);
OVKS_EXPORT(ovksWinHann_64f_I, window<Hann>);
OVKS_EXPORT(ovksWinHann_64fc, window<Hann>);
OVKS_EXPORT(ovksWinHann_64fc_I, window<Hann>);

OVKS_EXPORT(ovksWinHamming_16s, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_16s_I, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_16sc, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_16sc_I, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_32f, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_32f_I, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_32fc, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_32fc_I, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_64f, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_64f_I, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_64fc, window<Hamming>);
OVKS_EXPORT(ovksWinHamming_64fc_I, window<Hamming>);
