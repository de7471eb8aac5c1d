// SPDX-License-Identifier: MIT
// The closing pass of transforms whose rows stand in the room of the points themselves.
//
// What is computed of the rows in one place are the points of another, and the other way round. The first wait until
// the second have been read, and longer, to go out while the next are computed: all at once they would be a burst of
// lines memory pages apart, of which a set of the first cache holds few.
#pragma once

#include "transform/closing_pass.hpp"

namespace ovks::fft {

template <class Points>
struct PointsInPlace {
  Points dst;
  std::ptrdiff_t m;
  const int32_t* bitReversal;
};

// The places of tiles, kTiles each.
template <class V, class Points>
struct Places;

// In one array the rows of a tile stand where its points go.
template <class V>
struct Places<V, Interleaved<Lane<V>>> : PointsInPlace<Interleaved<Lane<V>>> {
  using In = PointsInPlace<Interleaved<Lane<V>>>;
  using In::dst, In::m, In::bitReversal;
  static constexpr int L = lanes<V>, kTiles = 1;

  std::ptrdiff_t count() const { return m / L; }
  std::ptrdiff_t partner(std::ptrdiff_t place) const { return reverseTile<V>(bitReversal, place); }
  // Of tile t from this place, its first row and the distance between them.
  OVKS_INLINE Rows<V> rows(std::ptrdiff_t place, int) const { return rowsBetween<V>(dst).from(place); }
  std::ptrdiff_t rowStep() const { return m / L; }
  // The number of tile t in this place, and where its points wait.
  std::ptrdiff_t number(std::ptrdiff_t place, int) const { return place; }
  OVKS_INLINE static auto waiting(Lane<V>* scratch, int) {
    return to<V>(Split<Lane<V>>{scratch, scratch + L * L}, 0, L);
  }
  // A part of those goes out.
  OVKS_INLINE void release(std::ptrdiff_t place, int, Lane<V>* scratch) const {
    const Split<Lane<V>> from = {scratch, scratch + L * L};
    for (int j = 0; j < L; ++j) dst.put(place * L + j * m, from.template get<V>(j * L));
  }
};

// In two arrays the rows of tiles 2p and 2p + 1 stand where the points of both go. With those half of all tiles further
// on, whose numbers in reverse are neighbours, they are four that change places with four others.
template <class V>
struct Places<V, Split<Lane<V>>> : PointsInPlace<Split<Lane<V>>> {
  using In = PointsInPlace<Split<Lane<V>>>;
  using In::dst, In::m, In::bitReversal;
  static constexpr int L = lanes<V>, kTiles = 4;

  std::ptrdiff_t count() const { return m / L / 4; }
  std::ptrdiff_t partner(std::ptrdiff_t place) const { return reverseTile<V>(bitReversal, 2 * place) / 2; }
  OVKS_INLINE Rows<V> rows(std::ptrdiff_t place, int t) const {
    return rowsBetween<V>(dst).ofTurn(t / 2).from(place + t % 2 * count());
  }
  std::ptrdiff_t rowStep() const { return m / L / 2; }
  std::ptrdiff_t number(std::ptrdiff_t place, int t) const { return 2 * (place + t / 2 * count()) + t % 2; }
  OVKS_INLINE static auto waiting(Lane<V>* scratch, int t) {
    return to<V>(Split<Lane<V>>{scratch, scratch + 4 * L * L}, (t / 2 * 2 * L + t % 2) * L, 2 * L);
  }
  // Real and imaginary parts of two neighbours by turns.
  OVKS_INLINE void release(std::ptrdiff_t place, int t, Lane<V>* scratch) const {
    Lane<V>* const array = t % 2 == 0 ? dst.re : dst.im;
    fft::release<L, 2, V>(array + number(place, t / 2 * 2) * L, m, scratch + (t % 2 * 2 + t / 2) * 2 * L * L);
  }
};

template <Direction D, bool scale, class V, class Points, class Twiddles>
[[gnu::noinline]] void closingPassInPlace(Places<V, Points> places, Twiddles twiddles, Lane<V> factor) {
  constexpr int L = lanes<V>, kTiles = Places<V, Points>::kTiles;
  alignas(64) Lane<V> scratch[2][kTiles * 2 * L * L];
  const std::ptrdiff_t n = places.count(), step = places.rowStep();
  // The processor does not see which places are to follow.
  const auto close = [&](std::ptrdiff_t from, int t, std::ptrdiff_t place, std::ptrdiff_t ahead, auto out)
      __attribute__((always_inline)) {
    if (ahead < n)
      for (int j = 0; j < L; ++j) places.rows(ahead, t).prefetch(j * step);
    closeTile<D, scale, typename Points::Order>(places.rows(from, t), step, places.number(place, t), twiddles, factor,
                                                out);
  };
  const auto after = [&](std::ptrdiff_t place) {
    while (++place < n && places.partner(place) < place) {
    }
    return place;
  };
  int turn = 0;
  std::ptrdiff_t last = n;
  for (std::ptrdiff_t place = 0, next; place < n; last = place, place = next, turn ^= 1) {
    const std::ptrdiff_t partner = places.partner(place);
    next = after(place);
    for (int t = 0; t < kTiles; ++t) {
      if (last < n) places.release(last, t, scratch[turn ^ 1]);
      close(partner, t, place, next < n ? places.partner(next) : n, places.waiting(scratch[turn], t));
    }
    if (partner != place)
      for (int t = 0; t < kTiles; ++t)
        close(place, t, partner, next, to<V>(places.dst, places.number(partner, t) * L, places.m));
  }
  for (int t = 0; t < kTiles; ++t) places.release(last, t, scratch[turn ^ 1]);
}

}  // namespace ovks::fft
