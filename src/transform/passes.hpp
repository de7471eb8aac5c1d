// SPDX-License-Identifier: MIT
// The passes of a transform over rows.
//
// N points are seen as M = N / L rows of L lanes, x[L r + l] standing in row r, in lane l or where the points' order
// puts it. Passes of radix 2 to 16 transform the columns, all lanes at once and without shuffles; spectrum point k of
// the columns ends in the row with k's bits reversed. The closing pass takes L rows of neighbouring k, transposes them,
// turns lane l by exp(-2 pi i l k / N) and transforms across the lanes, which leaves X[k + M j] in natural order.
//
// A block is what one spectrum point of the earlier passes leaves to be transformed. All points of a block with
// reversed number c among B blocks, each to be split in R, need the same R - 1 twiddles exp(-2 pi i c j / (B R)), and
// nothing else: they depend neither on the place within the block nor, for c reversed, on B. So one short table serves
// each pass, and twiddles are loaded once for a whole block where it is long.
#pragma once

#include "transform/rows.hpp"

namespace ovks::fft {

// Hides where a pointer comes from: a value loaded through it again is not kept in a register.
template <class T>
OVKS_INLINE const T* again(const T* p) {
  asm("" : "+r"(p));
  return p;
}
template <class V>
OVKS_INLINE void keepInRegister(V& v) {
  asm("" : "+v"(v));
}

// Point j of the block turned by the block's twiddle. In 512-bit vectors a broadcast is free only as an operand from
// memory, so each use of a twiddle's part loads it.
template <Direction D, class V>
OVKS_INLINE Complex<V> turnBy(Complex<V> x, const Lane<V>* w) {
  const Lane<V>* u = w;
  if constexpr (sizeof(V) == 64) {
    keepInRegister(x.re);
    keepInRegister(x.im);
    u = w;
  }
  const V c = splat<V>(w[0]), s = splat<V>(w[1]), c2 = splat<V>(u[0]), s2 = splat<V>(u[1]);
  if constexpr (D == Direction::forward) return {fma(x.re, c, -(x.im * s)), fma(x.im, c2, x.re * s2)};
  else return {fma(x.re, c, x.im * s), fma(x.im, c2, -(x.re * s2))};
}

// The butterfly of radix R on the points from(Index<j>), each result given to put(Index<row>, x): the spectrum's order
// is bit-reversed. w holds R - 1 twiddles; the first pass has none.
template <Direction D, int R, bool twiddles, class V, class From, class Put>
OVKS_INLINE void butterflyOfRows(const From& from, const Lane<V>* w, Put put) {
  butterfly<D, R>(
      [&](auto j) __attribute__((always_inline)) {
        const Complex<V> x = from(j).get(0);
        if constexpr (twiddles && decltype(j)::value > 0) return turnBy<D>(x, w + 2 * (j - 1));
        else return x;
      },
      [&](auto k, Complex<V> x) __attribute__((always_inline)) { put(Index<bitReversed(k, log2OfPower(R))>{}, x); });
}

// The same with twiddles, results going where the points are.
template <Direction D, int R, class V, class At>
OVKS_INLINE void butterflyInPlace(const At& at, const Lane<V>* w) {
  butterflyOfRows<D, R, true, V>(
      at, w, [&](auto row, Complex<V> x) __attribute__((always_inline)) { at(row).put(0, x); });
}

// n butterflies side by side, of rows inStep apart, to rows outStep apart.
template <Direction D, int R, bool twiddles, class In, class Out>
OVKS_INLINE void butterflies(In in, std::ptrdiff_t inStep, Out out, std::ptrdiff_t outStep, std::ptrdiff_t n,
                             const Lane<typename Out::Vector>* w) {
  using V = typename Out::Vector;
  for (; n > 0; --n, in = in.from(1), out = out.from(1)) {
    const Strided<R, In> from(in, inStep);
    const Strided<R, Out> to(out, outStep);
    butterflyOfRows<D, R, twiddles, V>(
        from, w, [&](auto row, Complex<V> x) __attribute__((always_inline)) { to(row).put(0, x); });
  }
}

// The same in place.
template <Direction D, int R, class RowSet>
OVKS_INLINE void butterflies(RowSet rows, std::ptrdiff_t step, std::ptrdiff_t n,
                             const Lane<typename RowSet::Vector>* w) {
  for (; n > 0; --n, rows = rows.from(1))
    butterflyInPlace<D, R, typename RowSet::Vector>(Strided<R, RowSet>(rows, step), w);
}

// The first pass, from the caller's points into m rows.
template <Direction D, int R, class In, class Out>
[[gnu::noinline]] void firstPass(In in, Out out, std::ptrdiff_t m) {
  butterflies<D, R, false>(in, m / R, out, m / R, m / R, nullptr);
}

// One pass over blocks of m rows each, in place, with a set of twiddles for each.
template <Direction D, int R, class RowSet>
[[gnu::noinline]] void blocksPass(RowSet rows, std::ptrdiff_t m, std::ptrdiff_t blocks,
                                  const Lane<typename RowSet::Vector>* w) {
  if (m == R) {
    for (std::ptrdiff_t b = 0; b < blocks; ++b, w += 2 * (R - 1), rows = rows.from(R)) butterflies<D, R>(rows, 1, 1, w);
  } else {
    for (std::ptrdiff_t b = 0; b < blocks; ++b, w += 2 * (R - 1), rows = rows.from(m))
      butterflies<D, R>(rows, m / R, m / R, w);
  }
}

// Even rows stand by themselves, and so do odd ones, until blocks are of neighbours.
template <Direction D, int R, class V>
[[gnu::noinline]] void blocksPass(AlternatingRows<V> rows, std::ptrdiff_t m, std::ptrdiff_t blocks, const Lane<V>* w) {
  if (m == R) {
    for (std::ptrdiff_t b = 0; b < blocks; ++b, w += 2 * (R - 1), rows = rows.from(Even{R}))
      butterflyInPlace<D, R, V>(Neighbours<R, V>(rows), w);
  } else {
    for (const int turn : {0, 1}) blocksPass<D, R>(rows.ofTurn(turn), m / 2, blocks, w);
  }
}

namespace detail {

// Within 128-bit chunks: pairs of lanes from two vectors.
template <int part>
struct UnpackLanes {
  template <class V>
  static constexpr int lane(int i) {
    constexpr int E = 16 / sizeof(Lane<V>);
    return i / E * E + part * E / 2 + i % E / 2 + i % 2 * lanes<V>;
  }
};
// Within 128-bit chunks: halves of four lanes from two vectors.
template <int part>
struct UnpackHalves {
  template <class V>
  static constexpr int lane(int i) {
    return i / 4 * 4 + part * 2 + i % 2 + i % 4 / 2 * lanes<V>;
  }
};
}  // namespace detail

// Transposes within each 128-bit chunk: lane e of chunk c of v[i] becomes lane i of chunk c of v[e].
template <class V>
OVKS_INLINE void transposeInChunks(V* v) {
  using namespace detail;
  const V a = shuffle2<UnpackLanes<0>>(v[0], v[1]), b = shuffle2<UnpackLanes<1>>(v[0], v[1]);
  if constexpr (sizeof(Lane<V>) == 8) {
    v[0] = a;
    v[1] = b;
  } else {
    const V c = shuffle2<UnpackLanes<0>>(v[2], v[3]), d = shuffle2<UnpackLanes<1>>(v[2], v[3]);
    v[0] = shuffle2<UnpackHalves<0>>(a, c);
    v[1] = shuffle2<UnpackHalves<1>>(a, c);
    v[2] = shuffle2<UnpackHalves<0>>(b, d);
    v[3] = shuffle2<UnpackHalves<1>>(b, d);
  }
}

// The first two of the steps below: half h of the rows pE ... pE + E - 1 and (p + 1)E ... comes into x[(p + h)E + e],
// p even.
template <class V, class RowHalves>
OVKS_INLINE void joinHalves(Complex<V>* x, RowHalves rows) {
  constexpr int E = 16 / sizeof(Lane<V>), C = lanes<V> / E;
  constexpr int kHalves = C == 1 ? 1 : 2;
  unroll<C / kHalves>([&](auto pair) __attribute__((always_inline)) {
    constexpr int first = kHalves * decltype(pair)::value * E;
    V re[2][E], im[2][E];
    unroll<E>([&](auto e) __attribute__((always_inline)) {
      constexpr int r = first + decltype(e)::value;
      const ComplexHalves<V> v = rows(Index<r>{}, Index<r + (kHalves - 1) * E>{});
      re[0][e] = v.re.low;
      re[1][e] = v.re.high;
      im[0][e] = v.im.low;
      im[1][e] = v.im.high;
    });
    unroll<kHalves>([&](auto h) __attribute__((always_inline)) {
      transposeInChunks(re[h]);
      transposeInChunks(im[h]);
      unroll<E>([&](auto e) __attribute__((always_inline)) { x[first + h * E + e] = {re[h][e], im[h][e]}; });
    });
  });
}

// L rows transposed: rows(Index<r>, Index<s>) gives the halves of rows r and s, and use gets what gives point l of all
// rows for Index<l>, row r in lane r, points standing in the rows as Order says.
//
// It goes in three steps: the halves of rows a chunk apart, lanes within chunks, and, where there are four chunks,
// pairs of them. The last comes bit by bit as points are asked for, l before l + 2 E places in the lanes, since
// butterflies do not take all at once.
template <class Order, class V, class RowHalves, class Use>
OVKS_INLINE void transposed(RowHalves rows, Use use) {
  using namespace detail;
  constexpr int L = lanes<V>, E = 16 / sizeof(Lane<V>), C = L / E;
  Complex<V> x[L], y[L];
  joinHalves<V>(x, rows);
  use([&](auto l) __attribute__((always_inline)) {
    constexpr int lane = Order::template place<V>(l);
    if constexpr (C <= 2) {
      y[lane] = x[lane];
    } else if constexpr (lane / E % 2 == 0) {
      constexpr int h = lane / E / 2;
      const Complex<V> a = x[lane - h * E], b = x[lane + (2 - h) * E];
      y[lane] = {shuffle2<Chunks<0, 2>>(a.re, b.re), shuffle2<Chunks<0, 2>>(a.im, b.im)};
      y[lane + E] = {shuffle2<Chunks<1, 3>>(a.re, b.re), shuffle2<Chunks<1, 3>>(a.im, b.im)};
    }
    return y[lane];
  });
}

// L rows transformed across their lanes: twiddle(Index<l>, x) turns point l of all rows, out(Index<j>, x) takes point j
// of each row's spectrum.
template <Direction D, class Order, class V, class RowHalves, class Twiddle, class Out>
OVKS_INLINE void acrossLanes(RowHalves rows, Twiddle twiddle, Out out) {
  transposed<Order, V>(
      rows, [&](auto point) __attribute__((always_inline)) {
        butterfly<D, lanes<V>>(
            [&](auto l) __attribute__((always_inline)) {
              const Complex<V> x = point(l);
              if constexpr (decltype(l)::value == 0) return x;
              else return twiddle(l, x);
            },
            out);
      });
}

}  // namespace ovks::fft
