// SPDX-License-Identifier: MIT
// Filtering of a sequence in blocks of N by their transforms (overlap-save): each block's first tapsLen - 1 results are
// wrapped around and thrown away, the other S = N - tapsLen + 1 are the sequence's.
#pragma once

#include <bit>

#include "filter/memory.hpp"
#include "filter/short_blocks.hpp"
#include "filter/transforms.hpp"

namespace ovks {

// n inputs, after a history of `past` samples (zeros when null) and before zeros.
template <class T>
struct Sequence {
  const T *history, *src;
  std::int64_t past, n;

  // Elements from .. from + N - 1: in place where they are all inputs, otherwise gathered in room.
  const T* block(std::int64_t from, std::int64_t N, T* room) const {
    const std::int64_t available = n - from;
    if (from >= 0 && available >= N) return src + from;
    const std::int64_t lead = from < 0 ? -from : 0, most = available < N ? available : N;
    if (lead > 0) copyOrZero(history, room, lead);
    copyElements(src + from + lead, room + lead, most - lead);
    zeroElements(room + most, N - most);
    return room;
  }
};

// Several blocks at once, whole ones straight into dst.
template <class T>
void overlapSaveShort(ShortBlocksFilter<T> run, const T* spectrum, std::int64_t N, const Sequence<T>& in, T* dst,
                      std::int64_t count) {
  constexpr int kBlocks = kShortBlocks;
  alignas(64) T room[kBlocks][kMostShortPoints];
  const std::int64_t S = N - in.past;
  for (std::int64_t done = 0; done < count; done += kBlocks * S) {
    const T* x[kBlocks];
    T* y[kBlocks];
    for (int b = 0; b < kBlocks; ++b) {
      const std::int64_t at = done + b * S;
      // What lies beyond the results may be anything.
      x[b] = at < count ? in.block(at - in.past, N, room[b]) : x[0];
      y[b] = at + S <= count ? dst + at : room[b];
    }
    run(x, spectrum, y, static_cast<int>(in.past));
    for (int b = 0; b < kBlocks; ++b) {
      const std::int64_t at = done + b * S;
      if (y[b] == room[b]) copyElements(y[b], dst + at, count - at);
    }
  }
}

// Results count outputs; block has room for N elements.
template <class T>
Status overlapSave(const SpectralFilter<T>& filter, const Sequence<T>& in, T* dst, std::int64_t count, T* block) {
  const std::int64_t N = filter.length, S = N - in.past;
  if (const auto run = shortBlocksFilter<T>(std::bit_width(static_cast<unsigned>(N)) - 1)) {
    overlapSaveShort(run, filter.spectrum, N, in, dst, count);
    return StatusOk;
  }
  for (std::int64_t done = 0; done < count; done += S) {
    if (const Status s = filter.apply(in.block(done - in.past, N, block), block)) return s;
    copyElements(block + in.past, dst + done, count - done < S ? count - done : S);
  }
  return StatusOk;
}

}  // namespace ovks
