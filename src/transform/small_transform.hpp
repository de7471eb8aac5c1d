// SPDX-License-Identifier: MIT
// The complex transforms of up to 256 points (32f) or 128 (64f): one straight-line kernel each, no tables of the
// specification, no buffer.
#pragma once

#include "transform/passes.hpp"
#include "transform/plan.hpp"
#include "transform/unit_circle.hpp"

namespace ovks::fft {

// exp(-2 pi i l k / N) for points l = 1 ... L - 1 of a row, a vector over k = g L + 0 ... L - 1 each.
template <class T, int order, int L, class Order>
struct SmallTwiddles {
  static constexpr int kGroups = (1 << order) / L / L;
  alignas(64) T w[kGroups][L][2][L];

  constexpr SmallTwiddles() : w{} {
    const UnitCircle<T> circle(kQuarterWave<T>.sine, kConstantOrder, order);
    for (int g = 0; g < kGroups; ++g) {
      for (int l = 1; l < L; ++l) {
        for (int k = 0; k < L; ++k) {
          const Complex<T> z = circle(l * (g * L + Order::template lane<Vec<T, L>>(k)));
          w[g][l][0][k] = z.re;
          w[g][l][1][k] = z.im;
        }
      }
    }
  }
};
template <class T, int order, int L, class Order>
inline constexpr SmallTwiddles<T, order, L, Order> kSmallTwiddles;

// exp(-2 pi i k / 2^order)
template <class T, int order, int k>
inline constexpr Complex<T> kTwiddle = UnitCircle<T>(kQuarterWave<T>.sine, kConstantOrder, order)(k);

// Four by eight.
template <Direction D, class In, class Out>
OVKS_INLINE void transform32(In in, Out out) {
  using X = decltype(in(Index<0>{}));
  using V = decltype(X::re);
  X x[32];
  unroll<8>([&](auto j) __attribute__((always_inline)) {
    transform4<D>(
        [&](auto i) __attribute__((always_inline)) { return in(Index<j + 8 * i>{}); },
        [&](auto k, X v) __attribute__((always_inline)) {
          constexpr Complex<Scalar<V>> w = kTwiddle<Scalar<V>, 5, j * k>;
          x[8 * k + j] = j * k == 0 ? v : turn<D>(v, splat<V>(w.re), splat<V>(w.im));
        });
  });
  unroll<4>([&](auto k) __attribute__((always_inline)) {
    transform8<D>(
        [&](auto j) __attribute__((always_inline)) { return x[8 * k + j]; },
        [&](auto q, X v) __attribute__((always_inline)) { out(Index<k + 4 * q>{}, v); });
  });
}

// N = R rows of L lanes, in registers as far as there are.
template <Direction D, int order, int L, class T, class Points, class Out>
OVKS_INLINE void rowsTransform(Points src, Out out) {
  using V = Vec<T, L>;
  using Order = typename Points::Order;
  constexpr int R = (1 << order) / L;
  Complex<V> x[R];
  const auto row = [&](auto j) __attribute__((always_inline)) { return src.template get<V>(j * L); };
  const auto put = [&](auto k, Complex<V> v) __attribute__((always_inline)) { x[k] = v; };
  if constexpr (R == 32) transform32<D>(row, put);
  else butterfly<D, R>(row, put);
  unroll<R / L>([&](auto g) __attribute__((always_inline)) {
    acrossLanes<D, Order, V>(
        [&](auto r, auto s) __attribute__((always_inline)) {
          const Complex<V> a = x[g * L + Order::template lane<V>(r)], b = x[g * L + Order::template lane<V>(s)];
          return ComplexHalves<V>{halvesOf(a.re, b.re), halvesOf(a.im, b.im)};
        },
        [&](auto l, Complex<V> v) __attribute__((always_inline)) {
          const auto& w = kSmallTwiddles<T, order, L, Order>.w[decltype(g)::value][decltype(l)::value];
          return turn<D>(v, load<V>(w[0]), load<V>(w[1]));
        },
        [&](auto j, Complex<V> v) __attribute__((always_inline)) { out(g * L + j * R, v); });
  });
}

// Twiddles of rows that are longer than a column: exp(-2 pi i k l / N) for row k over its points l, and, a row's points
// being seen as S times R, exp(-2 pi i q e / L) for q = 1 ... S - 1 over the points, e being their number modulo R.
template <class T, int order, int L, class Order>
struct LongRowTwiddles {
  static constexpr int R = (1 << order) / L, S = L / R;
  alignas(64) T row[R][2][L], part[S][2][L];

  constexpr LongRowTwiddles() : row{}, part{} {
    const UnitCircle<T> circle(kQuarterWave<T>.sine, kConstantOrder, order);
    const auto fill = [&](auto& table, int i, int j) {
      const Complex<T> z = circle(j);
      table[0][i] = z.re;
      table[1][i] = z.im;
    };
    for (int i = 0; i < L; ++i) {
      const int l = Order::template lane<Vec<T, L>>(i);
      for (int k = 1; k < R; ++k) fill(row[k], i, k * l);
      for (int q = 1; q < S; ++q) fill(part[q], i, q * (l % R) * R);
    }
  }
};
template <class T, int order, int L, class Order>
inline constexpr LongRowTwiddles<T, order, L, Order> kLongRowTwiddles;

// Lanes whose number has `bit` set change places between two vectors with those of the other that have it clear.
template <int bit, bool high>
struct ExchangedLanes {
  template <class V>
  static constexpr int lane(int i) {
    if (high) return i & bit ? lanes<V> + i : i | bit;
    return i & bit ? lanes<V> + (i ^ bit) : i;
  }
};

// Exchanges `count` bits of the numbers of n vectors, from vectorBit on, with as many of the numbers of their points.
template <class Order, int n, int vectorBit, int pointBit, int count, class V>
OVKS_INLINE void exchangeBits(Complex<V>* x) {
  unroll<count>([&](auto b) __attribute__((always_inline)) {
    constexpr int v = vectorBit << decltype(b)::value;
    constexpr int l = Order::template place<V>(pointBit << decltype(b)::value);
    using Low = ExchangedLanes<l, false>;
    using High = ExchangedLanes<l, true>;
    unroll<n>([&](auto i) __attribute__((always_inline)) {
      constexpr int t = decltype(i)::value;
      if constexpr (!(t & v)) {
        const Complex<V> c = x[t], d = x[t | v];
        x[t] = {shuffle2<Low>(c.re, d.re), shuffle2<Low>(c.im, d.im)};
        x[t | v] = {shuffle2<High>(c.re, d.re), shuffle2<High>(c.im, d.im)};
      }
    });
  });
}

// Where points stand in the end: (k / K, q, k % K) for spectrum point k + R q of a step.
template <class Order, int R, int S>
struct LongRowOrder {
  template <class V>
  static constexpr int place(int l) {
    constexpr int K = R / S;
    return Order::template place<V>(l % R / K * R + l / R * K + l % K);
  }
};

// N = R rows of L = S R points, 1 < S <= R, all in registers. Rows are transformed in two steps: over parts of R
// points, then over the points of the parts. Each step exchanges the points' numbers with the vectors'.
template <Direction D, int order, int L, class T, class Points, class Out>
OVKS_INLINE void longRowsTransform(Points src, Out out) {
  using V = Vec<T, L>;
  using Order = typename Points::Order;
  constexpr int R = (1 << order) / L, S = L / R, K = R / S;
  const auto& twiddles = kLongRowTwiddles<T, order, L, Order>;
  const auto turned = [](const auto& w, Complex<V> v) __attribute__((always_inline)) {
    return turn<D>(v, load<V>(w[0]), load<V>(w[1]));
  };
  Complex<V> x[R], y[R];
  butterfly<D, R>(
      [&](auto j) __attribute__((always_inline)) { return src.template get<V>(j * L); },
      [&](auto k, Complex<V> v) __attribute__((always_inline)) { x[k] = k == 0 ? v : turned(twiddles.row[k], v); });
  exchangeBits<Order, R, K, R, log2OfPower(S)>(x);
  unroll<K>([&](auto k) __attribute__((always_inline)) {
    butterfly<D, S>(
        [&](auto c) __attribute__((always_inline)) { return x[c * K + k]; },
        [&](auto q, Complex<V> v)
            __attribute__((always_inline)) { y[q * K + k] = q == 0 ? v : turned(twiddles.part[q], v); });
  });
  exchangeBits<Order, R, 1, 1, log2OfPower(R)>(y);
  butterfly<D, R>(
      [&](auto e) __attribute__((always_inline)) { return y[e]; },
      [&](auto j, Complex<V> v)
          __attribute__((always_inline)) { out.template operator()<LongRowOrder<Order, R, S>>(j * L, v); });
}

// Up to 16 points, across scalars.
template <Direction D, int order, class In, class Out>
OVKS_INLINE void transformPoints(In in, Out out) {
  if constexpr (order == 0) out(Index<0>{}, in(Index<0>{}));
  else butterfly<D, 1 << order>(in, out);
}

template <class T>
constexpr int shortRowLanes(int order) {
  if (order == 4) return 4;
  return order == 5 && kLanes<T> > 8 ? 8 : kLanes<T>;
}

// More points, in rows of L.
template <Direction D, int order, int L, class T, class Points, class Out>
OVKS_INLINE void transformRows(Points src, Out out) {
  if constexpr (L * L > 1 << order) longRowsTransform<D, order, L, T>(src, out);
  else rowsTransform<D, order, L, T>(src, out);
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
    constexpr int L = shortRowLanes<T>(order);
    const auto out = [&]<class Order = typename Points::Order>(auto i, auto x) __attribute__((always_inline)) {
      dst.template put<Order>(i, scaled(x));
    };
    transformRows<D, order, L, T>(src, out);
  }
}

template <class T, class Points, int n>
struct ShortTransforms {
  void (*ofOrder[n])(Points, Points, T);
};
template <Direction D, bool scale, class T, class Points, int... order>
constexpr ShortTransforms<T, Points, sizeof...(order)> shortTransforms(std::integer_sequence<int, order...>) {
  return {{transformShort<D, order, scale, T, Points>...}};
}
template <Direction D, bool scale, class T, class Points>
inline constexpr auto kShortTransforms =
    shortTransforms<D, scale, T, Points>(std::make_integer_sequence<int, kMaxShortOrder<T> + 1>{});

// factor is used where scale says so.
template <Direction D, class T, class Points>
OVKS_INLINE void transformShort(int order, Points src, Points dst, bool scale, T factor) {
  if (scale) kShortTransforms<D, true, T, Points>.ofOrder[order](src, dst, factor);
  else kShortTransforms<D, false, T, Points>.ofOrder[order](src, dst, factor);
}

}  // namespace ovks::fft
