// SPDX-License-Identifier: MIT
// The complex transforms of up to 64 points: one straight-line kernel each, no tables of the specification, no buffer.
#pragma once

#include "transform/passes.hpp"
#include "transform/plan.hpp"
#include "transform/unit_circle.hpp"

namespace ovks::fft {

// exp(-2 pi i l k / N) for lanes l = 1 ... L - 1, a vector over k = g L + 0 ... L - 1 each.
template <class T, int order, int L>
struct SmallTwiddles {
  static constexpr int kGroups = (1 << order) / L / L;
  alignas(64) T w[kGroups][L][2][L];

  constexpr SmallTwiddles() : w{} {
    const UnitCircle<T> circle(kQuarterWave<T>.sine, kConstantOrder, order);
    for (int g = 0; g < kGroups; ++g) {
      for (int l = 1; l < L; ++l) {
        for (int k = 0; k < L; ++k) {
          const Complex<T> z = circle(l * (g * L + k));
          w[g][l][0][k] = z.re;
          w[g][l][1][k] = z.im;
        }
      }
    }
  }
};
template <class T, int order, int L>
inline constexpr SmallTwiddles<T, order, L> kSmallTwiddles;

// N = R rows of L lanes, all in registers.
template <Direction D, int order, int L, class T, class Points, class Out>
OVKS_INLINE void rowsTransform(Points src, Out out) {
  using V = Vec<T, L>;
  constexpr int R = (1 << order) / L;
  Complex<V> x[R];
  butterfly<D, R>(
      [&](auto j) __attribute__((always_inline)) { return src.template get<V>(j * L); },
      [&](auto k, Complex<V> v) __attribute__((always_inline)) { x[k] = v; });
  unroll<R / L>([&](auto g) __attribute__((always_inline)) {
    acrossLanes<D, V>(
        [&](auto r) __attribute__((always_inline)) { return x[g * L + r]; },
        [&](auto l, Complex<V> v) __attribute__((always_inline)) {
          const auto& w = kSmallTwiddles<T, order, L>.w[decltype(g)::value][decltype(l)::value];
          return turn<D>(v, load<V>(w[0]), load<V>(w[1]));
        },
        [&](auto j, Complex<V> v) __attribute__((always_inline)) { out(g * L + j * R, v); });
  });
}

// Up to 16 points, across scalars.
template <Direction D, int order, class In, class Out>
OVKS_INLINE void transformPoints(In in, Out out) {
  if constexpr (order == 0) out(Index<0>{}, in(Index<0>{}));
  else butterfly<D, 1 << order>(in, out);
}

// src and dst may be the same: everything is read before anything is written.
template <Direction D, int order, bool scale, class T, class Points>
void transformShort(Points src, Points dst, [[maybe_unused]] T factor) {
  const auto scaled = [&](auto x) __attribute__((always_inline)) {
    using V = decltype(x.re);
    if constexpr (scale) return Complex<V>{x.re * splat<V>(factor), x.im * splat<V>(factor)};
    else return x;
  };
  if constexpr (order <= 3) {
    transformPoints<D, order>(
        [&](auto j) __attribute__((always_inline)) { return src.at(j); },
        [&](auto k, Complex<T> x) __attribute__((always_inline)) { dst.set(k, scaled(x)); });
  } else {
    constexpr int kNarrow = kLanes<T> < 8 ? kLanes<T> : 8;
    constexpr int L = order == 6 ? kNarrow : 4;
    rowsTransform<D, order, L, T>(
        src, [&](auto i, auto x) __attribute__((always_inline)) { dst.put(i, scaled(x)); });
  }
}

template <Direction D, bool scale, class T, class Points>
struct ShortTransforms {
  using Kernel = void (*)(Points, Points, T);
  static constexpr Kernel kOfOrder[] = {transformShort<D, 0, scale, T, Points>, transformShort<D, 1, scale, T, Points>,
                                        transformShort<D, 2, scale, T, Points>, transformShort<D, 3, scale, T, Points>,
                                        transformShort<D, 4, scale, T, Points>, transformShort<D, 5, scale, T, Points>,
                                        transformShort<D, 6, scale, T, Points>};
};

}  // namespace ovks::fft
