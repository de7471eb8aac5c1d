// SPDX-License-Identifier: MIT
// Filtering of a sequence in blocks of N by their transforms (overlap-save): each block's first tapsLen - 1 results are
// wrapped around and thrown away, the other S = N - tapsLen + 1 are the sequence's.
#pragma once

#include "filter/memory.hpp"
#include "filter/transforms.hpp"

namespace ovks {

// Results count outputs of the n inputs that follow the history (of tapsLen - 1 samples; zeros when null) and are
// followed by zeros. block has room for N elements.
template <class T>
Status overlapSave(const SpectralFilter<T>& filter, int tapsLen, const T* history, const T* src, std::int64_t n, T* dst,
                   std::int64_t count, T* block) {
  const std::int64_t N = filter.length, past = tapsLen - 1, S = N - past;
  for (std::int64_t done = 0; done < count; done += S) {
    const std::int64_t from = done - past, available = n - from;
    Status status;
    if (from >= 0 && available >= N) {
      status = filter.apply(src + from, block);
    } else {
      const std::int64_t lead = from < 0 ? -from : 0, most = available < N ? available : N;
      if (lead > 0) copyOrZero(history, block, lead);
      copyElements(src + from + lead, block + lead, most - lead);
      zeroElements(block + most, N - most);
      status = filter.apply(block);
    }
    if (status != StatusOk) return status;
    copyElements(block + past, dst + done, count - done < S ? count - done : S);
  }
  return StatusOk;
}

}  // namespace ovks
