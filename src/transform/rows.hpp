// SPDX-License-Identifier: MIT
// Rows of one vector of real and one of imaginary parts: how the passes of a transform see its points.
#pragma once

#include "transform/points.hpp"

namespace ovks::fft {

// The halves of two rows.
template <class V>
struct ComplexHalves {
  Halves<V> re, im;
};

// Both parts side by side: in the work buffer, or in the room that as many interleaved points have.
template <class V, Via via = Via::caches>
struct Rows : OneArray<Lane<V>> {
  using Arrays = OneArray<Lane<V>>;
  using PastCaches = Rows<V, Via::none>;
  using Vector = V;
  static constexpr Via kVia = via;
  static constexpr int kTurns = 1;
  using Arrays::p;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(p + i * 2 * lanes<V>), load<V>(p + i * 2 * lanes<V> + lanes<V>)};
  }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(p + i * 2 * lanes<V>, x.re);
    write<via>(p + i * 2 * lanes<V> + lanes<V>, x.im);
  }
  // Of the first row here and there.
  OVKS_INLINE ComplexHalves<V> halves(Rows b) const {
    return {loadHalves<V>(p, b.p), loadHalves<V>(p + lanes<V>, b.p + lanes<V>)};
  }
  // To be read from the first cache.
  OVKS_INLINE void prefetchNear(std::ptrdiff_t i) const {
    __builtin_prefetch(p + i * 2 * lanes<V>);
    __builtin_prefetch(p + i * 2 * lanes<V> + lanes<V>);
  }
  // To be written.
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    __builtin_prefetch(p + i * 2 * lanes<V>, 1, 2);
    __builtin_prefetch(p + i * 2 * lanes<V> + lanes<V>, 1, 2);
  }
  OVKS_INLINE Rows from(std::ptrdiff_t i) const { return {p + i * 2 * lanes<V>}; }
  // All of them, at the only turn.
  OVKS_INLINE Rows ofTurn(int) const { return *this; }
};

// In two arrays as the parts themselves.
template <class V, Via via = Via::caches>
struct SplitRows : TwoArrays<Lane<V>> {
  using Arrays = TwoArrays<Lane<V>>;
  using PastCaches = SplitRows<V, Via::none>;
  static constexpr Via kVia = via;
  static constexpr int kTurns = 1;
  using Arrays::re, Arrays::im;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return {load<V>(re + i * lanes<V>), load<V>(im + i * lanes<V>)};
  }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    write<via>(re + i * lanes<V>, x.re);
    write<via>(im + i * lanes<V>, x.im);
  }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const {
    __builtin_prefetch(re + i * lanes<V>, 1, 2);
    __builtin_prefetch(im + i * lanes<V>, 1, 2);
  }
  OVKS_INLINE SplitRows from(std::ptrdiff_t i) const { return {re + i * lanes<V>, im + i * lanes<V>}; }
};

// A number of rows that is even.
struct Even {
  std::ptrdiff_t n;
  OVKS_INLINE constexpr operator std::ptrdiff_t() const { return n; }
};

// In two arrays, for what stands there in between: rows of even number in that of the real parts, rows of odd number in
// the other, each with both its parts. So a row is two lines side by side as in one array; and who takes the even ones
// first and then the odd ones, in turns, has to do with one array at a time, which matters where both share their
// offset within pages.
template <class V, Via via = Via::caches>
struct AlternatingRows : TwoArrays<Lane<V>> {
  using Arrays = TwoArrays<Lane<V>>;
  using PastCaches = AlternatingRows<V, Via::none>;
  using Vector = V;
  static constexpr Via kVia = via;
  static constexpr int kTurns = 2;
  using Arrays::re, Arrays::im;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const { return row(i).get(0); }
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const { row(i).put(0, x); }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const { row(i).prefetch(0); }
  // Those of one kind by themselves: half as many, the distance between them half of what it is among all.
  OVKS_INLINE Rows<V, via> ofTurn(int turn) const { return {turn ? im : re}; }
  // Then the next row with an even distance is in the same array, and the compiler knows it.
  OVKS_INLINE AlternatingRows from(Even i) const { return {{re + i.n * lanes<V>, im + i.n * lanes<V>}}; }
  OVKS_INLINE AlternatingRows from(std::ptrdiff_t i) const {
    const AlternatingRows pair = from(Even{i & -2});
    if (i & 1) return {{pair.im, pair.re + 2 * lanes<V>}};
    return pair;
  }

 private:
  OVKS_INLINE Rows<V, via> row(std::ptrdiff_t i) const { return {from(i).re}; }
};

// n alternating rows side by side, from one of even number on.
template <int n, class V>
class Neighbours {
 public:
  OVKS_INLINE explicit Neighbours(AlternatingRows<V> first) : even_(first.ofTurn(0), 1), odd_(first.ofTurn(1), 1) {}
  template <int i>
  OVKS_INLINE Rows<V> operator()(Index<i>) const {
    if constexpr (i % 2 == 0) return even_(Index<i / 2>{});
    else return odd_(Index<i / 2>{});
  }

 private:
  Strided<n / 2, Rows<V>> even_, odd_;
};

// Every so many of other rows.
template <int n, class RowSet>
struct Every {
  RowSet rows;

  OVKS_INLINE auto get(std::ptrdiff_t i) const { return rows.get(n * i); }
  OVKS_INLINE Every from(std::ptrdiff_t i) const { return {rows.from(n * i)}; }
  OVKS_INLINE friend void hide(Every& e) { hide(e.rows); }
};

// The rows in the room of a transform's points, and in a work buffer.
template <class V>
OVKS_INLINE Rows<V> rowsIn(OneArray<Lane<V>> a) {
  return {a};
}
template <class V>
OVKS_INLINE SplitRows<V> rowsIn(TwoArrays<Lane<V>> a) {
  return {a};
}

// The rows between passes that work in that room.
template <class V>
OVKS_INLINE Rows<V> rowsBetween(OneArray<Lane<V>> a) {
  return {a};
}
template <class V>
OVKS_INLINE AlternatingRows<V> rowsBetween(TwoArrays<Lane<V>> a) {
  return {a};
}

// The caller's points a vector at a time, as if they were rows.
template <class V, class Points>
struct PointRows {
  Points points;

  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const { return points.template get<V>(i * lanes<V>); }
  OVKS_INLINE void prefetch(std::ptrdiff_t i) const { points.template prefetch<V>(i * lanes<V>); }
  OVKS_INLINE PointRows from(std::ptrdiff_t i) const { return {points.from(i * lanes<V>)}; }
  OVKS_INLINE friend void hide(PointRows& rows) { hide(rows.points); }
};

}  // namespace ovks::fft
