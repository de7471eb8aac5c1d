// SPDX-License-Identifier: MIT
// Large transforms whose rows stand where the points go: outer passes take parts off first that the caches hold.
#pragma once

#include "transform/closing_in_place.hpp"
#include "transform/columns.hpp"
#include "transform/twiddle_layout.hpp"

namespace ovks::fft {

// What each work buffer of large transforms has room for.
inline constexpr std::ptrdiff_t kOuterRoom = 1 << 18;
template <class T>
constexpr bool outerRunsFit() {
  for (int order = kMaxInCacheOrder<T> + 1; order <= maxOrder<T>(Kind::interleaved); ++order)
    if (complexSizes<T>(order).work < kOuterRoom) return false;
  return true;
}
static_assert(outerRunsFit<float>() && outerRunsFit<double>());

// Bytes of a run of each part that outer passes take through the work buffer at a time: as many as it has room for
// where there are many parts, and with AVX2 also from one array to another that the caches do not hold beside it.
template <class T>
constexpr std::ptrdiff_t outerRunBytes(int order, bool inPlace) {
  const int outer = partBits<T>(order);
  if (outer > 4 || (!kAvx512 && !inPlace && !cachesHoldTwo<T>(order))) return kOuterRoom >> outer;
  return inPlace ? 1024 : 2048;
}

// The outer passes, the first of radix 4 and the others of radix R; memory is read and written once.
template <Direction D, int R, class V, class Points, class RowSet>
void outerPasses(std::ptrdiff_t parts, Points src, RowSet dst, std::ptrdiff_t m, const Lane<V>* twiddles, Lane<V>* work,
                 std::ptrdiff_t runBytes) {
  constexpr int kTurns = RowSet::kTurns;
  const std::ptrdiff_t wide = runBytes / std::ptrdiff_t{2 * sizeof(V)}, step = m / parts;
  const Rows<V> buffer = rowsIn<V>(OneArray<Lane<V>>{work});
  const PointRows<V, Points> rows = {src};
  for (std::ptrdiff_t i = 0; i < step; i += wide) {
    for (std::ptrdiff_t j = 0; j < parts / 4; ++j)
      butterflies<D, 4, false>(rows.from(i + j * step), m / 4, buffer.from(j * wide), parts / 4 * wide, wide, twiddles);
    std::ptrdiff_t blocks = 4;
    const Lane<V>* w = twiddles;
    for (; blocks * R < parts; blocks *= R) {
      blocksPass<D, R>(buffer, parts / blocks * wide, blocks, w);
      w += 2 * (R - 1) * blocks;
    }
    for (std::ptrdiff_t b = 0; b < blocks; ++b, w += 2 * (R - 1))
      for (int turn = 0; turn < kTurns; ++turn)
        butterflies<D, R, true>(Every<kTurns, Rows<V>>{buffer.from(b * R * wide + turn)}, wide / kTurns,
                                dst.ofTurn(turn).from((b * R * step + i) / kTurns), step / kTurns, wide / kTurns, w);
  }
}

template <Direction D, class V, class PlaceSet>
void closeInPlace(const Job<Lane<V>>& job, PlaceSet places) {
  using T = Lane<V>;
  static_assert(PlaceSet::kWork * int64_t{sizeof(T)} <= complexSizes<T>(kMaxInCacheOrder<T> + 1).work);
  const TileTwiddleProducts<V> twiddles = productsIn<T>(job.twiddles, job.order);
  if (job.scale) closingPassInPlace<D, true>(places, twiddles, job.factor, job.work);
  else closingPassInPlace<D, false>(places, twiddles, job.factor, job.work);
}

template <Direction D, class V, class Points>
void inDestination(const Job<Lane<V>>& job, Points src, Points dst) {
  using T = Lane<V>;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << job.order) / lanes<V>;
  const Passes& passes = passesOf<T>(job.order);
  const T* columns = job.twiddles + TwiddleLayout<T>(job.order).columns;
  const int outer = partBits<T>(job.order);
  const std::ptrdiff_t blocks = std::ptrdiff_t{1} << outer;
  const auto rows = rowsBetween<V>(dst);
  bool inPlace = haveSameArray(src, dst);
  // Where the caches hold one array but not two, with AVX-512 a copy comes faster than points out of order.
  if (kAvx512 && !inPlace && cachesHoldOne<T>(job.order) && !cachesHoldTwo<T>(job.order)) {
    copyPoints(src, dst, std::ptrdiff_t{1} << job.order);
    src = dst;
    inPlace = true;
  }
  const std::ptrdiff_t runBytes = outerRunBytes<T>(job.order, inPlace);
  if (outer < 8) outerPasses<D, 4, V>(blocks, src, rows, m, columns, job.work, runBytes);
  else outerPasses<D, 8, V>(blocks, src, rows, m, columns, job.work, runBytes);
  Columns<D, decltype(rows)>(passes, columns)
      .run(outerPassesOf<T>(job.order).count, rows, m >> outer, 0, blocks, blocks);
  if constexpr (kAvx512 && sizeof(T) == 8)  // The only ones that take longer with the other.
    if (cachesHoldTwo<T>(job.order)) return closeInPlace<D, V>(job, Places<V, Points, 1>{dst, m, job.bitReversal});
  closeInPlace<D, V>(job, Places<V, Points, 2>{dst, m, job.bitReversal});
}

}  // namespace ovks::fft
