// SPDX-License-Identifier: MIT
// The chain c(k + 1) = m c(k) - c(k - 1), m = 2 cos(angle), product and difference rounded in 64f: many steps at once,
// and to the bit what one step after the other gives.
//
// The lanes of a vector run through consecutive parts of the chain. All but the first start from values of a formula,
// which are a few last places off; the others then do the chain's own steps from there. For small angles m c is 2 c
// less a small multiple of c, and rounds alike from values a few places off: so a part started wrong ends wrong by what
// c(k + 1) = 2 c(k) - c(k - 1) makes of the error, and all starts can be corrected at once. The parts run again from
// there. Where every part ends on the very values that the next one started from, they are the chain, however the
// starts were found. Otherwise all is done again; each time at least one part more is right.
#pragma once

#include "generate/interleave.hpp"

namespace ovks {

// The longer the parts, the fewer are the corrections, but the more of them fail.
template <int chains, int steps>
class Recurrence {
 public:
  using V = Vec<double>;
  static constexpr int kSteps = steps, kRows = kSteps * chains;
  static constexpr int kSize = kRows * lanes<V>;

  // The first value of each chain, and the one before it. The angle of a whole block is to be below 1.
  Recurrence(const double (&before)[chains], const double (&first)[chains], double factor)
      : factor_(broadcast<V>(factor)) {
    // Chebyshev's polynomials of the angle's cosine, in powers of the small 2 - factor.
    const V gap = broadcast<V>(2 - factor), one = broadcast<V>(1);
    V end, cosines = one, sines = one;
    for (int i = 0; i < lanes<V>; ++i) end[i] = kSteps * (i + 1);
    const V square = gap * (end * end), rectangle = square + gap * end;
    for (int i = 8; i > 0; --i) {
      const double even = 1. / (2 * i * (2 * i - 1)), odd = 1. / (2 * i * (2 * i + 1));
      cosines = one - (rectangle - gap * broadcast<V>(i * (i - 1))) * broadcast<V>(even) * cosines;
      sines = one - (square - gap * broadcast<V>(i * i)) * broadcast<V>(odd) * sines;
    }
    fromCurrent_ = cosines;
    fromSlope_ = end * sines;
    bend_ = -gap * fromSlope_;
    for (int c = 0; c < chains; ++c) {
      state_[c] = {broadcast<V>(before[c]), broadcast<V>(first[c])};
      ends_[c] = guess(state_[c]);
    }
  }

  // The next kSteps values of every part: those of part l in lane l of the rows, where chains take turns. The next
  // block's parts run beside them from their guessed starts.
  OVKS_INLINE void next(V (&rows)[kRows]) {
    for (;;) {
      State after[chains], ahead[chains], at[chains], beside[chains];
      for (int c = 0; c < chains; ++c) {
        after[c] = {last(ends_[c].before), last(ends_[c].current)};
        ahead[c] = guess(after[c]);
        at[c] = starts(ends_[c], state_[c]);
        beside[c] = starts(ahead[c], after[c]);
      }
      for (int i = 0; i < kRows; ++i) {
        const int c = i % chains;
        rows[i] = at[c].current;
        at[c] = step(at[c]);
        beside[c] = step(beside[c]);
      }
      int wrong = 0;
      for (int c = 0; c < chains; ++c) wrong |= difference(at[c], ends_[c]);
      if (wrong == 0) [[likely]] {
        for (int c = 0; c < chains; ++c) {
          state_[c] = after[c];
          ends_[c] = corrected(ahead[c], beside[c]);
        }
        return;
      }
      for (int c = 0; c < chains; ++c) ends_[c] = corrected(ends_[c], at[c]);
    }
  }

 private:
  struct State {
    V before, current;  // c(k - 1), c(k)
  };

  OVKS_INLINE State step(State s) const { return {s.current, factor_ * s.current - s.before}; }

  // Every part starts where the one before it ended, the first from the state.
  static OVKS_INLINE State starts(State ends, State first) {
    return {raised<1>(ends.before, first.before), raised<1>(ends.current, first.current)};
  }

  // v moved up by some lanes, below them others.
  template <int distance>
  static OVKS_INLINE V raised(V v, V below) {
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
      return __builtin_shufflevector(below, v, (lanes<V> - distance + static_cast<int>(i))...);
    }
    (std::make_index_sequence<lanes<V>>{});
  }

  // The last lane in every lane.
  static OVKS_INLINE V last(V v) {
    if constexpr (kAvx512) return bits<V>(_mm512_permutexvar_pd(_mm512_set1_epi64(lanes<V> - 1), bits<__m512d>(v)));
    else return bits<V>(_mm256_permute4x64_pd(bits<__m256d>(v), 0xff));
  }

  // The ends of the parts by the formula c(j) = c(0) cos((j + 1/2) angle) / cos(angle / 2) + slope sin(j angle) /
  // sin(angle) with slope = c(0) - c(-1).
  OVKS_INLINE State guess(State from) const {
    const V c = from.current, slope = c - from.before;
    const V current = fma(fromSlope_, slope, fromCurrent_ * c);
    return {current - fma(fromCurrent_ - bend_, slope, bend_ * c), current};
  }

  // The lanes in which two states differ.
  static OVKS_INLINE int difference(State a, State b) {
    if constexpr (kAvx512) {
      return _mm512_cmpneq_pd_mask(bits<__m512d>(a.before), bits<__m512d>(b.before)) |
             _mm512_cmpneq_pd_mask(bits<__m512d>(a.current), bits<__m512d>(b.current));
    } else {
      const auto differ = (a.before != b.before) | (a.current != b.current);
      return _mm256_movemask_pd(bits<__m256d>(differ));
    }
  }

  // The ends of parts that ran from wrong ends of the parts before them. The error (value, slope) of a start has grown
  // to value + kSteps slope at the part's end, and by kSteps slope in every part from there.
  static OVKS_INLINE State corrected(State started, State ran) {
    V part;
    for (int i = 0; i < lanes<V>; ++i) part[i] = kSteps * i;
    const V value = ran.current - started.current, slope = value - (ran.before - started.before);
    const V slopes = sumsBelow<1>(raised<1>(slope, V{}));
    const V atZero = sumsBelow<1>(raised<1>(fma(-part, slope, value), V{}));
    const V values = fma(slopes, part, atZero);
    return {ran.before + (values - slopes), ran.current + values};
  }

  // Each lane with all those below it.
  template <int distance>
  static OVKS_INLINE V sumsBelow(V v) {
    const V sums = v + raised<distance>(v, V{});
    if constexpr (2 * distance < lanes<V>) return sumsBelow<2 * distance>(sums);
    else return sums;
  }

  State state_[chains], ends_[chains];  // the start of the next block, and the ends of its parts, perhaps not quite
  V factor_, fromCurrent_, fromSlope_, bend_;
};

// The values of all chains by turns, from the first on, as vectors in order.
template <int chains, int steps>
class Chains {
 public:
  Chains(const double (&before)[chains], const double (&first)[chains], double factor)
      : recurrence_(before, first, factor) {
    store(values_ + kSize, V{});
  }

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    static_assert(n <= kBefore);
    if (kEnd - at_ < n) refill();
    at_ += n;
    return load<Vec<double, n>>(values_ + at_ - n);
  }

  // How many values are stored. Vectors taken when none is left are the next stored ones or parts of them; one across
  // two could be loaded only once both stores are done.
  int left() const { return kEnd - at_; }

  void back(int n) { at_ -= n; }

  void skip(std::ptrdiff_t n) {
    V rows[kRows];
    for (; n > kEnd - at_ + kSize; n -= kSize) recurrence_.next(rows);
    if (n > kEnd - at_) refill();
    at_ += static_cast<int>(n);
  }

 private:
  using V = Vec<double>;
  static constexpr int kRows = Recurrence<chains, steps>::kRows, kSize = Recurrence<chains, steps>::kSize,
                       kBefore = lanes<V>, kEnd = kBefore + kSize;

  // What is left, fewer values than a vector has, stays before the new ones.
  [[gnu::noinline]] void refill() {
    V rows[kRows];
    recurrence_.next(rows);
    store(values_, load<V>(values_ + kSize));
    at_ -= kSize;
    for (int i = 0; i < kRows; i += lanes<V>) {
      transpose(rows + i);
      for (int k = 0; k < lanes<V>; ++k) store(values_ + kBefore + k * kRows + i, rows[i + k]);
    }
  }

  Recurrence<chains, steps> recurrence_;
  alignas(64) double values_[kEnd];
  int at_ = kEnd;
};

}  // namespace ovks
