// SPDX-License-Identifier: MIT
// The cosine of 64f vectors for |x| <= 1000, with an error below 0.52 ulp in rounding to nearest.
//
// The argument less its multiple of pi / 2, and the first terms of both series, are carried in two parts: a wrongly
// rounded start would grow along a recurrence.
#pragma once

#include "core/polynomial.hpp"

namespace ovks {

namespace detail {

// sin(r + low) for |r| <= pi / 4, z + zLow being the square.
template <class V>
OVKS_INLINE V sineReduced(V r, V low, V z, V zLow) {
  const V sixth = broadcast<V>(-0x1.5555555555555p-3), sixthLow = broadcast<V>(-0x1.5555555555555p-57);
  const V cube = r * z, cubeLow = fma(r, z, -cube) + fma(r, zLow, low * z);
  const V term = cube * sixth, termLow = fma(cube, sixth, -term) + fma(cube, sixthLow, cubeLow * sixth);
  const V rest = cube * z *
                 polynomial(z, 1. / 120, -1. / 5040, 1. / 362880, -1. / 39916800, 1. / 6227020800, -1. / 1307674368e3,
                            1. / 355687428096e3);
  const V high = r + term;
  return high + (((r - high) + term) + (rest + (termLow + low)));
}

// cos(r + low), likewise.
template <class V>
OVKS_INLINE V cosineReduced(V z, V zLow) {
  const V part = broadcast<V>(0x1.5555555555555p-5), partLow = broadcast<V>(0x1.5555555555555p-59);
  const V one = broadcast<V>(1), half = z * broadcast<V>(0.5);
  const V fourth = z * z, fourthLow = fma(z, z, -fourth) + broadcast<V>(2) * z * zLow;
  const V term = fourth * part, termLow = fma(fourth, part, -term) + fma(fourth, partLow, fourthLow * part);
  const V rest = fourth * z *
                 polynomial(z, -1. / 720, 1. / 40320, -1. / 3628800, 1. / 479001600, -1. / 87178291200,
                            1. / 20922789888e3, -1. / 6402373705728e3);
  const V start = one - half, startLow = (one - start) - half;
  const V high = start + term;
  return high + (((start - high) + term) + (startLow + (rest + fma(zLow, broadcast<V>(-0.5), termLow))));
}

}  // namespace detail

template <class V>
OVKS_INLINE V cosine(V x) {
  using I = Vec<uint64_t, lanes<V>>;
  const V rounder = broadcast<V>(kRounder);
  const V turned = fma(x, broadcast<V>(0x1.45f306dc9c883p-1), rounder), n = turned - rounder;
  const I quarter = bits<I>(turned);
  const V r0 = fma(n, broadcast<V>(-0x1.921fb54442d18p+0), x);  // exact
  const V middle = broadcast<V>(-0x1.1a62633145c07p-54);
  const V r = fma(n, middle, r0);
  const V low = fma(n, broadcast<V>(0x1.f1976b7ed8fbcp-110), fma(n, middle, r0 - r));
  const V z = r * r, zLow = fma(r, r, -z) + broadcast<V>(2) * r * low;
  const V value =
      (quarter & broadcast<I>(1)) != 0 ? detail::sineReduced(r, low, z, zLow) : detail::cosineReduced(z, zLow);
  return bits<V>(bits<I>(value) ^ ((quarter + broadcast<I>(1)) & broadcast<I>(2)) << 62);
}

}  // namespace ovks
