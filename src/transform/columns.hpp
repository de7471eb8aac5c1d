// SPDX-License-Identifier: MIT
// The passes over columns, one after the other, so that blocks stay in the first cache as long as may be.
#pragma once

#include "transform/passes.hpp"
#include "transform/plan.hpp"

namespace ovks::fft {

// A block that fits is finished pass by pass; a larger one is cut up first, each part then finished on its own.
inline constexpr std::ptrdiff_t kCacheBlock = 16384;

template <Direction D, class RowSet, class T>
void blocksPass(int bits, RowSet rows, std::ptrdiff_t m, std::ptrdiff_t blocks, const T* w) {
  if (bits == 2) blocksPass<D, 4>(rows, m, blocks, w);
  else if (bits == 3) blocksPass<D, 8>(rows, m, blocks, w);
  else if constexpr (kAvx512) blocksPass<D, 16>(rows, m, blocks, w);
}

template <Direction D, class In, class Out>
void firstPass(int bits, In in, Out out, std::ptrdiff_t m) {
  if (bits == 2) firstPass<D, 4>(in, out, m);
  else firstPass<D, 8>(in, out, m);
}

// The passes over columns but the first, on blocks of rows.
template <Direction D, class RowSet>
class Columns {
 public:
  using V = typename RowSet::Vector;

  Columns(const Passes& passes, const Lane<V>* twiddles) : passes_(passes), twiddles_(twiddles) {}

  // From pass s on, n blocks of m rows each from the given one of `blocks` in all.
  void run(int s, RowSet rows, std::ptrdiff_t m, std::ptrdiff_t block, std::ptrdiff_t n, std::ptrdiff_t blocks) const {
    const bool fits = n * m * std::ptrdiff_t{2 * sizeof(V)} <= kCacheBlock;
    if (n > 1 && !fits) {
      for (std::ptrdiff_t b = 0; b < n; ++b) run(s, rows.from(b * m), m, block + b, 1, blocks);
      return;
    }
    for (; s < passes_.count; ++s) {
      const int bits = passes_.bits[s];
      const std::ptrdiff_t set = 2 * ((1 << bits) - 1);
      blocksPass<D>(bits, rows, m, n, twiddles_ + columnTwiddles(blocks, passes_.bits[0]) + block * set);
      m >>= bits, n <<= bits, block <<= bits, blocks <<= bits;
      if (!fits) return run(s + 1, rows, m, block, n, blocks);
    }
  }

 private:
  const Passes& passes_;
  const Lane<V>* twiddles_;
};

template <class T>
struct Job {
  int order;
  const T* twiddles;
  const int32_t* bitReversal;
  T* work;
  bool scale;
  T factor;
};

}  // namespace ovks::fft
