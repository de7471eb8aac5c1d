// SPDX-License-Identifier: MIT
// Transforms that the caches hold: all passes through the work buffer, the lanes last or first.
#pragma once

#include "transform/natural_order_pass.hpp"
#include "transform/opening_pass.hpp"
#include "transform/twiddle_layout.hpp"

namespace ovks::fft {

template <Direction D, bool scale, class V, class Twiddles, class Points>
void close(const Job<Lane<V>>& job, Rows<V> rows, Points dst, std::ptrdiff_t m, Twiddles twiddles) {
  // With AVX2 only short transforms close, whose steps are less than a page.
  if constexpr (kAvx512 && std::is_same_v<Points, Split<Lane<V>>>)
    if (crowdSets<V>(dst, m)) return closingPassHeld<D, scale>(rows, dst, m, twiddles, job.bitReversal, job.factor);
  closingPass<D, scale>(rows, dst, m, twiddles, job.bitReversal, job.factor);
}
template <Direction D, class V, class Twiddles, class Points>
void close(const Job<Lane<V>>& job, Rows<V> rows, Points dst, std::ptrdiff_t m, Twiddles twiddles) {
  if (job.scale) close<D, true>(job, rows, dst, m, twiddles);
  else close<D, false>(job, rows, dst, m, twiddles);
}

// All passes over the columns, from the caller's points into the work buffer's rows.
template <Direction D, class V, class Points>
Rows<V> transformColumns(int order, const Lane<V>* twiddles, Points src, Lane<V>* work) {
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << order) / lanes<V>;
  const Passes& passes = passesOf<Lane<V>>(order);
  const Rows<V> rows = rowsIn<V>(OneArray<Lane<V>>{work});
  const int bits = passes.bits[0];
  firstPass<D>(bits, PointRows<V, Points>{src}, rows, m);
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << bits;
  Columns<D, Rows<V>>(passes, twiddles).run(1, rows, m >> bits, 0, blocks, blocks);
  return rows;
}

// With the twiddles of columns, and those of tiles.
template <Direction D, class V, class Twiddles, class Points, class Results>
void inCache(const Job<Lane<V>>& job, const Lane<V>* columns, Twiddles tiles, Points src, Results dst) {
  using T = Lane<V>;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  if constexpr (kMinLanesFirstOrder<T> <= kMaxInCacheOrder<T>)
    if (lanesFirst<T>(job.order)) {
      const Rows<V> rows = {job.work};
      openingPass<D>(src, rows, m, tiles);
      return transformRowsInOrder<D>(job, complexPassesOf<T>(job.order), columns, rows, dst);
    }
  close<D>(job, transformColumns<D, V>(job.order, columns, src, job.work), dst, m, tiles);
}

template <Direction D, class V, class Points>
void inCache(const Job<Lane<V>>& job, Points src, Points dst) {
  using T = Lane<V>;
  const T* const columns = job.twiddles + TwiddleLayout<T>(job.order).columns;
  if constexpr (kMinProductsOrder<T> <= kMaxInCacheOrder<T>)
    if (job.order >= kMinProductsOrder<T>)
      return inCache<D, V>(job, columns, productsIn(job.twiddles, job.order), src, dst);
  inCache<D, V>(job, columns, TileTwiddles<V>{job.twiddles}, src, dst);
}

}  // namespace ovks::fft
