// SPDX-License-Identifier: MIT
// Transforms of real signals into packed spectra and back.
#pragma once

#include "transform/complex_transform.hpp"
#include "transform/natural_order_pass.hpp"
#include "transform/packed_layout.hpp"
#include "transform/real_closing_pass.hpp"
#include "transform/real_opening_pass.hpp"
#include "transform/small_transform.hpp"

namespace ovks::fft {

template <Direction D, bool half, class T>
void splitPairs(const Spec<T>& spec, const T* src, T* dst) {
  using V = Vec<T>;
  const std::ptrdiff_t h = std::ptrdiff_t{1} << (spec.order - 1);
  const T* table = spec.splitTwiddles;
  if (splitInTwoLevels<T>(spec.order)) {
    using Products = SplitTwiddleProducts<V>;
    splitPairs<D, half, V>(src, dst, h, Products{table, table + 2 * Products::kFine});
  } else if (splitLanes<T>(spec.order) == kLanes<T>) {
    splitPairs<D, half, V>(src, dst, h, SplitTwiddles<V>{table});
  } else if constexpr (kAvx512 && sizeof(T) == 4) {
    using Half = Vec<T, kLanes<T> / 2>;
    splitPairs<D, half, Half>(src, dst, h, SplitTwiddles<Half>{table});
  }
}

// The complex transform of the pairs.
template <Direction D, class T>
void transformPairs(const Spec<T>& spec, const T* src, T* dst, T* work, bool scale, T factor) {
  const Interleaved<T> from = {const_cast<T*>(src)}, to = {dst};
  const int order = spec.order - 1;
  if (order > kMaxShortOrder<T>)
    return transformLong<D>(Job<T>{order, spec.twiddles, spec.bitReversal, work, scale, factor}, from, to);
  transformShort<D>(order, from, to, scale, factor);
}

// n reals to one place lower or higher in the same array.
template <class T>
void moveDown(T* p, std::ptrdiff_t n) {
  using V = Vec<T>;
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) store(p + i - 1, load<V>(p + i));
  for (; i < n; ++i) p[i - 1] = p[i];
}
template <class T>
void moveUp(T* p, std::ptrdiff_t n) {
  using V = Vec<T>;
  for (; n >= lanes<V>; n -= lanes<V>) store(p + n - lanes<V> + 1, load<V>(p + n - lanes<V>));
  for (; n > 0; --n) p[n] = p[n - 1];
}

template <class Layout, class T>
void putEnds(T* p, std::ptrdiff_t n, Ends<T> ends) {
  p[0] = ends.zero;
  p[Layout::half(n)] = ends.half;
  if constexpr (std::is_same_v<Layout, CcsLayout>) p[1] = p[n + 1] = 0;
}

// From the Perm layout, in place.
template <class Layout, class T>
void packSpectrum(T* p, std::ptrdiff_t n) {
  const Ends<T> ends = {p[0], p[1]};
  if constexpr (std::is_same_v<Layout, PackLayout>) moveDown(p + 2, n - 2);
  putEnds<Layout>(p, n, ends);
}

// Into the Perm layout: of the pairs' spectrum, or of half of it.
template <bool whole, class T>
void splitSpectrum(const Spec<T>& spec, T* p) {
  const T twice = whole ? 1 : 2, a = twice * p[0], b = twice * p[1];
  splitPairs<Direction::forward, whole>(spec, p, p);
  p[0] = a + b;
  p[1] = a - b;
}

// From here on the forward half is taken in the split; shorter transforms of the pairs have it in their factor. With
// AVX2 the kernel of 256 points has no registers left for one.
template <class T>
inline constexpr int kMinSplitHalfOrder = kAvx512 ? kMaxShortOrder<T> + 1 : 8;

// Calls with the tiles' twiddles of passes that include the split.
template <class T, class Use>
auto withRealTiles(const Spec<T>& spec, Use use) {
  const int order = spec.order - 1;
  if constexpr (kMinProductsOrder<T> <= kMaxInCacheOrder<T>)
    if (order >= kMinProductsOrder<T>)
      return use(TileTwiddleProducts<Vec<T>>{productsIn(spec.twiddles, order).tiles, spec.realTiles});
  return use(TileTwiddles<Vec<T>>{spec.realTiles});
}

// All passes over the pairs, the last of which leaves the spectrum.
template <class Layout, class T>
void forwardPasses(const Spec<T>& spec, const T* src, T* dst, T* work) {
  using V = Vec<T>;
  const int order = spec.order - 1;
  const std::ptrdiff_t m = (std::ptrdiff_t{1} << order) / lanes<V>;
  const Interleaved<T> from = {const_cast<T*>(src)}, to = {dst + Layout::kShift};
  const T* const columns = spec.twiddles + TwiddleLayout<T>(order).columns;
  const Rows<V> rows = transformColumns<Direction::forward, V>(order, columns, from, work);
  const T half = static_cast<T>(0.5), factor = spec.scaleForward ? spec.factor * half : half;
  const SplitTwiddles<V> split = {spec.splitTwiddles};
  const Ends<T> ends = withRealTiles(
      spec, [&](auto tiles) { return closingPassOfReals(rows, to, m, tiles, split, spec.bitReversal, factor); });
  putEnds<Layout>(dst, std::ptrdiff_t{1} << spec.order, ends);
}

// And back.
template <class Layout, class T>
void inversePasses(const Spec<T>& spec, const T* src, T* dst, T* work) {
  using V = Vec<T>;
  const int order = spec.order - 1;
  const std::ptrdiff_t n = std::ptrdiff_t{1} << spec.order, m = n / 2 / lanes<V>;
  const Interleaved<const T> from = {src + Layout::kShift};
  const Ends<T> ends = {src[0], src[Layout::half(n)]};
  const Rows<V> rows = {work};
  withRealTiles(
      spec, [&](auto tiles) { openingPassOfReals(from, ends, rows, m, tiles, SplitTwiddles<V>{spec.splitTwiddles}); });
  const T* const columns = spec.twiddles + TwiddleLayout<T>(order).columns;
  const Job<T> job = {order, spec.twiddles, spec.bitReversal, work, spec.scaleInverse != 0, spec.factor};
  transformRowsInOrder<Direction::inverse>(job, passesOf<T>(order), columns, rows, Interleaved<T>{dst});
}

template <class Layout, class T>
void realForward(const Spec<T>& spec, const T* src, T* dst, T* work) {
  if (splitInPasses<T>(spec.order)) return forwardPasses<Layout>(spec, src, dst, work);
  if (spec.order - 1 >= kMinSplitHalfOrder<T>) {
    transformPairs<Direction::forward>(spec, src, dst, work, spec.scaleForward != 0, spec.factor);
    splitSpectrum<true>(spec, dst);
  } else {
    const T half = static_cast<T>(0.5);
    transformPairs<Direction::forward>(spec, src, dst, work, true, spec.scaleForward ? spec.factor * half : half);
    splitSpectrum<false>(spec, dst);
  }
  packSpectrum<Layout>(dst, std::ptrdiff_t{1} << spec.order);
}

template <class Layout, class T>
void realInverse(const Spec<T>& spec, const T* src, T* dst, T* work) {
  if (splitInPasses<T>(spec.order)) return inversePasses<Layout>(spec, src, dst, work);
  const std::ptrdiff_t n = std::ptrdiff_t{1} << spec.order;
  const T a = src[0], b = src[Layout::half(n)];
  src += Layout::kShift;
  if (Layout::kShift != 0 && src + 1 == dst) {
    moveUp(dst + 1, n - 2);
    src = dst;
  }
  splitPairs<Direction::inverse, false>(spec, src, dst);
  dst[0] = a + b;
  dst[1] = a - b;
  transformPairs<Direction::inverse>(spec, dst, dst, work, spec.scaleInverse != 0, spec.factor);
}

}  // namespace ovks::fft
