// SPDX-License-Identifier: MIT
// Filtering of a sequence in blocks of N by their transforms (overlap-save): each block's first tapsLen - 1 results are
// wrapped around and thrown away, the other S = N - tapsLen + 1 are the sequence's.
#pragma once

#include <bit>

#include "filter/memory.hpp"
#include "filter/short_blocks.hpp"
#include "filter/transforms.hpp"

namespace ovks {

// A history of `past` samples (zeros when null), the n inputs behind it, then zeros: the first `count` elements of
// these.
template <class T>
inline void join(const T* history, std::int64_t past, const T* src, std::int64_t n, T* joint, std::int64_t count) {
  const std::int64_t head = n < count - past ? n : count - past;
  copyOrZero(history, joint, past);
  copyElements(src, joint + past, head);
  zeroElements(joint + past + head, count - past - head);
}

template <class T>
class OverlapSave {
 public:
  OverlapSave(const SpectralFilter<T>& filter, std::int64_t past)
      : filter_(filter),
        past_(past),
        short_(shortBlocks<T>(std::bit_width(static_cast<unsigned>(filter.length)) - 1)) {}

  // Points of the blocks that are filtered at once, and the results they yield.
  std::int64_t points() const { return std::int64_t{short_.count} * filter_.length; }
  std::int64_t results() const { return short_.count * (filter_.length - past_); }

  // Results count outputs from n inputs with zeros behind them. The first block, joined with the history, is in
  // `block`.
  Status run(const T* src, std::int64_t n, T* block, T* dst, std::int64_t count) const {
    if (short_.run) {
      runShort(src, n, block, dst, count);
      return StatusOk;
    }
    const std::int64_t S = results();
    for (std::int64_t done = 0; done < count; done += S) {
      if (const Status s = filter_.apply(done ? inputs(src, n, done, block) : block, block)) return s;
      copyElements(block + past_, dst + done, count - done < S ? count - done : S);
    }
    return StatusOk;
  }

 private:
  // Several blocks at once, whole ones straight into dst.
  void runShort(const T* src, std::int64_t n, const T* first, T* dst, std::int64_t count) const {
    alignas(64) T room[kMostShortBlocks][kMostShortPoints];
    const std::int64_t S = filter_.length - past_;
    for (std::int64_t done = 0; done < count; done += results()) {
      const T* x[kMostShortBlocks];
      T* y[kMostShortBlocks];
      for (int b = 0; b < short_.count; ++b) {
        const std::int64_t at = done + b * S;
        // What lies beyond the results may be anything of this size.
        x[b] = at == 0 ? first : at < count ? inputs(src, n, at, room[b]) : x[0];
        y[b] = at + S <= count ? dst + at : room[b];
      }
      short_.run(x, filter_.spectrum, y, static_cast<int>(past_));
      for (int b = 0; b < short_.count; ++b) {
        const std::int64_t at = done + b * S;
        if (y[b] == room[b]) copyElements(y[b], dst + at, count - at);
      }
    }
  }

  // What the block of results from number at > 0 on needs: in place where all are inputs, otherwise gathered in room.
  const T* inputs(const T* src, std::int64_t n, std::int64_t at, T* room) const {
    const std::int64_t N = filter_.length, available = n - (at - past_);
    const T* const x = src + (at - past_);
    if (available >= N) return x;
    copyElements(x, room, available);
    zeroElements(room + available, N - available);
    return room;
  }

  SpectralFilter<T> filter_;
  std::int64_t past_;
  ShortBlocks<T> short_;
};

}  // namespace ovks
