// SPDX-License-Identifier: MIT
// The Bartlett window.
#include "core/export.hpp"
#include "generate/window.hpp"
#include "ovks/generate.h"

namespace {

using namespace ovks;

// 2 k / last for k = 0, 1, ..., correctly rounded in 64f.
class Ramp : public Direct {
 public:
  explicit Ramp(double last) : last_(last), inverse_(1 / last) {}

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    using V = Vec<double, n>;
    V numerator = broadcast<V>(index_);
    for (int i = 0; i < n; ++i) numerator[i] += 2 * i;
    index_ += 2 * n;
    const V inverse = broadcast<V>(inverse_), q = numerator * inverse;
    return fma(fma(q, broadcast<V>(-last_), numerator), inverse, q);
  }

 private:
  double last_, inverse_, index_ = 0;
};

struct Bartlett {
  template <class T>
  static Status run(const T* pSrc, T* pDst, int len) {
    if (const Status s = checkWindow(len, 3, pSrc, pDst)) return s;
    [[maybe_unused]] const detail::Control<T> control;
    const Windowing<T> windowing{pSrc, pDst, len};
    Ramp shape(len - 1);
    windowing.pairs(shape, 0, len / 2);
    if (len % 2) windowing.copy(len / 2);
    return StatusOk;
  }
};

}  // namespace

OVKS_EXPORT(ovksWinBartlett_16s, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_16s_I, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_16sc, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_16sc_I, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_32f, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_32f_I, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_32fc, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_32fc_I, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_64f, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_64f_I, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_64fc, window<Bartlett>);
OVKS_EXPORT(ovksWinBartlett_64fc_I, window<Bartlett>);
