// SPDX-License-Identifier: MIT
// The last pass over columns where rows of points come of it: from rows in reversed order to points in natural order.
#pragma once

#include "transform/columns.hpp"
#include "transform/crowded_sets.hpp"

namespace ovks::fft {

// Rows of a run of points.
inline constexpr int kRunRows = 512 / (2 * kVectorBytes);

// Whether no order leaves fewer blocks to the last pass than a run has rows.
template <class T>
constexpr bool blocksMakeRuns() {
  for (int order = kMinPairsPassesOrder<T>; order <= kMaxInCacheOrder<T>; ++order) {
    for (const Passes& p : {passesOf<T>(order), complexPassesOf<T>(order)})
      if ((1 << order) / (kLanes<T> << p.bits[p.count - 1]) < kRunRows) return false;
  }
  return true;
}
static_assert(blocksMakeRuns<float>() && blocksMakeRuns<double>());

// R runs of points a step apart: row i of run k goes to put(Index<k>, i, x).
template <int R, class V, class Points>
class Runs {
 public:
  OVKS_INLINE Runs(Points first, std::ptrdiff_t step) : at_(first, step) {}
  template <int k>
  OVKS_INLINE void put(Index<k> run, int i, Complex<V> x) {
    at_(run).put(i * lanes<V>, x);
  }
  OVKS_INLINE void finish() {}

 private:
  Strided<R, Points> at_;
};
// The same in two arrays that crowd sets: imaginary parts are held back until the runs are complete.
template <int R, class V>
class HeldRuns {
 public:
  using T = Lane<V>;

  OVKS_INLINE HeldRuns(Split<T> first, std::ptrdiff_t step) : first_(first), step_(step) {}
  template <int k>
  OVKS_INLINE void put(Index<k>, int i, Complex<V> x) {
    store(first_.re + k * step_ + i * lanes<V>, x.re);
    store(held_ + (k * kRunRows + i) * lanes<V>, x.im);
  }
  OVKS_INLINE void finish() { release<R, kRunRows, V>(first_.im, step_, held_); }

 private:
  Split<T> first_;
  std::ptrdiff_t step_;
  alignas(64) T held_[R * kRunRows * lanes<V>];
};

// Blocks of R rows each. Those that leave neighbours come one after the other, so that runs of points are written.
template <Direction D, int R, bool scale, class To, class V, class Points>
[[gnu::noinline]] void naturalOrderPass(const Job<Lane<V>>& job, Rows<V> rows, std::ptrdiff_t blocks,
                                        const Lane<V>* twiddles, Points dst) {
  constexpr int L = lanes<V>, kRunBits = log2OfPower(kRunRows);
  const V f = splat<V>(job.factor);
  const int shift = job.order - 1 - log2OfPower(blocks);
  for (std::ptrdiff_t b = 0; b < blocks / kRunRows; ++b) {
    To to(dst.from((job.bitReversal[b] >> shift) * L), blocks * L);
    for (int i = 0; i < kRunRows; ++i) {
      const std::ptrdiff_t block = b + bitReversed(i, kRunBits) * (blocks / kRunRows);
      const Strided<R, Rows<V>> from(rows.from(block * R), 1);
      const Lane<V>* const w = twiddles + block * 2 * (R - 1);
      butterflyOfRows<D, R, true, V>(
          from, w, [&](auto row, Complex<V> x) __attribute__((always_inline)) {
            if constexpr (scale) x = {x.re * f, x.im * f};
            to.put(Index<bitReversed(row, log2OfPower(R))>{}, i, x);
          });
    }
    to.finish();
  }
}

template <Direction D, int R, bool scale, class V, class Points>
void naturalOrderPass(const Job<Lane<V>>& job, Rows<V> rows, const Lane<V>* twiddles, Points dst) {
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  if constexpr (std::is_same_v<Points, Split<Lane<V>>>)
    if (crowdSets<V>(dst, m)) return naturalOrderPass<D, R, scale, HeldRuns<R, V>>(job, rows, m / R, twiddles, dst);
  naturalOrderPass<D, R, scale, Runs<R, V, Points>>(job, rows, m / R, twiddles, dst);
}
template <Direction D, bool scale, class V, class Points>
void naturalOrderPass(const Job<Lane<V>>& job, Rows<V> rows, int bits, const Lane<V>* twiddles, Points dst) {
  if (bits == 2) naturalOrderPass<D, 4, scale>(job, rows, twiddles, dst);
  else if (bits == 3) naturalOrderPass<D, 8, scale>(job, rows, twiddles, dst);
  else if constexpr (kAvx512) naturalOrderPass<D, 16, scale>(job, rows, twiddles, dst);
}

// All passes over the columns, from rows in natural order to points.
template <Direction D, class V, class Points>
void transformRowsInOrder(const Job<Lane<V>>& job, Passes passes, const Lane<V>* twiddles, Rows<V> rows, Points dst) {
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  const int bits = passes.bits[0], lastBits = passes.bits[--passes.count];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits;
  firstPass<D>(bits, rows, rows, m);
  Columns<D, Rows<V>>(passes, twiddles).run(1, rows, m >> bits, 0, blocks, blocks);
  const Lane<V>* const last = twiddles + columnTwiddles(m >> lastBits, bits);
  if (job.scale) naturalOrderPass<D, true>(job, rows, lastBits, last, dst);
  else naturalOrderPass<D, false>(job, rows, lastBits, last, dst);
}

}  // namespace ovks::fft
