// SPDX-License-Identifier: MIT
// The last pass over columns where rows of points come of it: from rows in reversed order to points in natural order.
#pragma once

#include "transform/columns.hpp"

namespace ovks::fft {

// Rows of a run of points.
inline constexpr int kRunRows = 512 / (2 * kVectorBytes);

// Whether no order leaves fewer blocks to the last pass than a run has rows.
template <class T>
constexpr bool blocksMakeRuns() {
  for (int order = kMaxShortOrder<T> + 1; order <= kMaxInCacheOrder<T>; ++order) {
    const Passes& p = passesOf<T>(order);
    const int lastRadix = 1 << p.bits[p.count - 1];
    if ((1 << order) / (kLanes<T> * lastRadix) < kRunRows) return false;
  }
  return true;
}
static_assert(blocksMakeRuns<float>() && blocksMakeRuns<double>());

// Blocks of R rows each. Those that leave neighbours come one after the other, so that runs of points are written.
template <Direction D, int R, bool scale, class V>
[[gnu::noinline]] void naturalOrderPass(const Job<Lane<V>>& job, Rows<V> rows, std::ptrdiff_t blocks,
                                        const Lane<V>* twiddles, Interleaved<Lane<V>> dst) {
  constexpr int L = lanes<V>, kRunBits = log2OfPower(kRunRows);
  const V f = splat<V>(job.factor);
  const int shift = job.order - 1 - log2OfPower(blocks);
  for (std::ptrdiff_t b = 0; b < blocks / kRunRows; ++b) {
    const Strided<R, Interleaved<Lane<V>>> to(dst.from((job.bitReversal[b] >> shift) * L), blocks * L);
    for (int i = 0; i < kRunRows; ++i) {
      const std::ptrdiff_t block = b + bitReversed(i, kRunBits) * (blocks / kRunRows);
      const Strided<R, Rows<V>> from(rows.from(block * R), 1);
      const Lane<V>* const w = twiddles + block * 2 * (R - 1);
      butterflyOfRows<D, R, true, V>(
          from, w, [&](auto row, Complex<V> x) __attribute__((always_inline)) {
            if constexpr (scale) x = {x.re * f, x.im * f};
            to(Index<bitReversed(row, log2OfPower(R))>{}).put(i * L, x);
          });
    }
  }
}

template <Direction D, bool scale, class V>
void naturalOrderPass(const Job<Lane<V>>& job, Rows<V> rows, int bits, const Lane<V>* twiddles,
                      Interleaved<Lane<V>> dst) {
  const std::ptrdiff_t blocks = (std::ptrdiff_t{1} << job.order) / lanes<V> >> bits;
  if (bits == 2) naturalOrderPass<D, 4, scale>(job, rows, blocks, twiddles, dst);
  else if (bits == 3) naturalOrderPass<D, 8, scale>(job, rows, blocks, twiddles, dst);
  else naturalOrderPass<D, 16, scale>(job, rows, blocks, twiddles, dst);
}

// All passes over the columns, from rows in natural order to points. The job's twiddles are those of columns.
template <Direction D, class V>
void transformRowsInOrder(const Job<Lane<V>>& job, Rows<V> rows, Interleaved<Lane<V>> dst) {
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  Passes passes = passesOf<Lane<V>>(job.order);
  const int bits = passes.bits[0], lastBits = passes.bits[--passes.count];
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits;
  firstPass<D>(bits, rows, rows, m);
  Columns<D, Rows<V>>(passes, job.twiddles).run(1, rows, m >> bits, 0, blocks, blocks);
  const Lane<V>* const last = job.twiddles + columnTwiddles(m >> lastBits, bits);
  if (job.scale) naturalOrderPass<D, true>(job, rows, lastBits, last, dst);
  else naturalOrderPass<D, false>(job, rows, lastBits, last, dst);
}

}  // namespace ovks::fft
