// SPDX-License-Identifier: MIT
// The closing pass of transforms whose rows stand in the room of the points themselves.
//
// What is computed of the rows in one place are the points of another, and the other way round. The first wait until
// the second have been read, and longer, to go out while the next are computed: all at once they would be a burst of
// lines memory pages apart, of which a set of the first cache holds few.
#pragma once

#include "transform/closing_pass.hpp"

namespace ovks::fft {

// Tiles come in places of B x B: B side by side in each of B equal parts of the room. The rows in a place are those of
// the tiles whose points go into its partner, or into itself.
//
// More of them side by side are longer runs, and more pages at once.
template <class V, class Points, int bits>
struct Places {
  static constexpr bool kSplit = std::is_same_v<Points, Split<Lane<V>>>;
  static constexpr int L = lanes<V>, B = 1 << bits, kTiles = B * B;
  // Elements of the work buffer: for twice the points that wait, and for imaginary parts.
  static constexpr int kWork = 5 * kTiles * L * L;

  Points dst;
  std::ptrdiff_t m;
  const int32_t* bitReversal;

  std::ptrdiff_t count() const { return m / L / kTiles; }
  std::ptrdiff_t partner(std::ptrdiff_t place) const { return reverseTile<V>(bitReversal, B * place) / B; }
  // Of the t-th tile whose points go into a place, its number,
  std::ptrdiff_t number(std::ptrdiff_t place, int t) const { return tileAt(place, t / B, t % B); }
  // the first of its rows, in the partner's room, and the distance between them.
  OVKS_INLINE Rows<V> rows(std::ptrdiff_t partner, int t) const {
    const auto all = rowsBetween<V>(dst);
    const int side = bitReversed(t / B, bits);
    return all.ofTurn(side % all.kTurns).from(tileAt(partner, bitReversed(t % B, bits), side) / all.kTurns);
  }
  std::ptrdiff_t rowStep() const { return m / L / (kSplit ? 2 : 1); }
  // Where the points wait.
  OVKS_INLINE static auto waiting(Lane<V>* scratch, int t) { return to<V>(points(scratch), inScratch(t), B * L); }
  // A part of those goes out: into one of two arrays at a time.
  OVKS_INLINE void release(std::ptrdiff_t place, int t, Lane<V>* scratch) const {
    constexpr int kSteps = L / B * (kSplit ? 2 : 1);
    const int i = t % B, step = (kSplit ? i / 2 : i) * kSteps;
    const std::ptrdiff_t first = number(place, t - i) * L + step * m;
    const Split<Lane<V>> from = points(scratch).from((t / B * L + step) * B * L);
    if constexpr (!kSplit) {
      for (int j = 0; j < kSteps; ++j)
        unroll<B>([&](auto v) __attribute__((always_inline)) {
          dst.put(first + j * m + v * L, from.template get<V>((j * B + v) * L));
        });
    } else if (i % 2 == 0) {
      fft::release<kSteps, B, V>(dst.re + first, m, from.re);
    } else {
      fft::release<kSteps, B, V>(dst.im + first, m, from.im);
    }
  }
  // Into two arrays that crowd sets of the first cache: real parts at once, imaginary ones into the scratch, and out as
  // runs once B tiles are there.
  OVKS_INLINE auto holding(std::ptrdiff_t place, int t, Lane<V>* scratch) const {
    Lane<V>*const re = dst.re + number(place, t) * L, *const im = scratch + inScratch(t);
    const std::ptrdiff_t step = m;
    return [=](auto j, Complex<V> x) __attribute__((always_inline)) {
      store(re + j * step, x.re);
      store(im + j * (B * L), x.im);
    };
  }
  OVKS_INLINE void releaseHeld(std::ptrdiff_t place, int t, const Lane<V>* scratch) const {
    constexpr int kSteps = L / B;
    const int step = t % B * kSteps;
    fft::release<kSteps, B, V>(dst.im + number(place, t - t % B) * L + step * m, m,
                               scratch + (t / B * L + step) * B * L);
  }

 private:
  OVKS_INLINE std::ptrdiff_t tileAt(std::ptrdiff_t place, int part, int side) const {
    return (part * count() + place) * B + side;
  }
  // B tiles side by side step by step, so that they go out as runs.
  static constexpr int inScratch(int t) { return (t / B * L * B + t % B) * L; }
  OVKS_INLINE static Split<Lane<V>> points(Lane<V>* scratch) { return {scratch, scratch + kTiles * L * L}; }
};

// All tiles of a place with imaginary parts held back.
template <class Set, class T, class Close>
OVKS_INLINE void closeHeld(const Set& places, std::ptrdiff_t place, T* scratch, Close close) {
  for (int t = 0; t < Set::kTiles; ++t) {
    close(t, places.holding(place, t, scratch));
    if (t >= Set::B) places.releaseHeld(place, t - Set::B, scratch);
  }
  for (int t = Set::kTiles - Set::B; t < Set::kTiles; ++t) places.releaseHeld(place, t, scratch);
}

template <Direction D, bool scale, class V, class Points, int bits, class Twiddles>
[[gnu::noinline]] void closingPassInPlace(Places<V, Points, bits> places, Twiddles twiddles, Lane<V> factor,
                                          Lane<V>* work) {
  using Set = Places<V, Points, bits>;
  constexpr int L = lanes<V>, kTiles = Set::kTiles;
  Lane<V>* const scratch[2] = {work, work + kTiles * 2 * L * L};
  Lane<V>* const held = scratch[1] + kTiles * 2 * L * L;
  const bool crowded = crowdSets<V>(places.dst, places.m);
  const std::ptrdiff_t n = places.count(), step = places.rowStep();
  // The processor does not see which places are to follow.
  const auto close = [&](std::ptrdiff_t from, int t, std::ptrdiff_t place, std::ptrdiff_t ahead, auto out)
      __attribute__((always_inline)) {
    if (ahead < n) {
      const Rows<V> rows = places.rows(ahead, t);
      for (int j = 0; j < L; ++j) rows.prefetch(j * step);
    }
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
    if (partner == place) continue;
    const auto closePartner = [&](int t, auto out) __attribute__((always_inline)) {
      close(place, t, partner, next, out);
    };
    if constexpr (Set::kSplit)
      if (crowded) {
        closeHeld(places, partner, held, closePartner);
        continue;
      }
    for (int t = 0; t < kTiles; ++t) closePartner(t, to<V>(places.dst, places.number(partner, t) * L, places.m));
  }
  for (int t = 0; t < kTiles; ++t) places.release(last, t, scratch[turn ^ 1]);
}

}  // namespace ovks::fft
