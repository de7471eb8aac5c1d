// SPDX-License-Identifier: MIT
// The chain c(k + 1) = m c(k) - c(k - 1), m = 2 cos(angle), product and difference rounded in 64f: many steps at once,
// and to the bit what one step after the other gives.
//
// The lanes of a vector run through consecutive parts of the chain. All but the first start from values of a formula,
// which are a few last places off; the others then do the chain's own steps from there. For small angles m c is 2 c less
// a small multiple of c, and rounds alike from values a few places off: so a part started wrong ends wrong by what
// c(k + 1) = 2 c(k) - c(k - 1) makes of the error, and all starts can be corrected at once. The parts run again from
// there. Where every part ends on the very values that the next one started from, they are the chain, however the starts
// were found. Otherwise all is done again; each time at least one part more is right.
#pragma once

#include <cmath>
#include <numbers>

#include "core/cos.hpp"
#include "generate/interleave.hpp"

namespace ovks {

template <int chains>
class Recurrence {
 public:
  using V = Vec<double>;
  static constexpr int kSteps = 8, kRows = kSteps * chains;
  static constexpr int kSize = kRows * lanes<V>;

  // The first two values of each chain.
  Recurrence(const double (&first)[chains], const double (&second)[chains], double factor)
      : factor_(broadcast<V>(factor)) {
    for (int c = 0; c < chains; ++c) state_[c] = {broadcast<V>(first[c]), broadcast<V>(second[c])};
    V end;
    for (int i = 0; i < lanes<V>; ++i) end[i] = kSteps * (i + 1);
    const double gap = 2 - factor, sum = 2 + factor;
    const V theta = broadcast<V>(angle(gap)), quarter = broadcast<V>(std::numbers::pi / 2);
    fromCurrent_ = cosine((end + broadcast<V>(0.5)) * theta) * broadcast<V>(2 / std::sqrt(sum));
    fromSlope_ = cosine(end * theta - quarter) * broadcast<V>(2 / std::sqrt(std::fmax(gap, 0x1p-60) * sum));
    bend_ = broadcast<V>(-gap) * fromSlope_;
  }

  // The next kSteps values of every part, the first values not among them: those of part l in lane l of the rows, where
  // chains take turns.
  OVKS_INLINE void next(V (&rows)[kRows]) {
    State ends[chains], at[chains];
    for (int c = 0; c < chains; ++c) ends[c] = guess(state_[c]);
    for (;;) {
      for (int c = 0; c < chains; ++c)
        at[c] = {raised<1>(ends[c].before, state_[c].before), raised<1>(ends[c].current, state_[c].current)};
      for (int i = 0; i < kRows; ++i) {
        State& s = at[i % chains];
        rows[i] = s.current;
        s = {s.current, factor_ * s.current - s.before};
      }
      bool same = true;
      for (int c = 0; c < chains; ++c) same &= equal(at[c], ends[c]);
      if (same) break;
      for (int c = 0; c < chains; ++c) ends[c] = corrected(ends[c], at[c]);
    }
    for (int c = 0; c < chains; ++c) state_[c] = {last(ends[c].before), last(ends[c].current)};
  }

 private:
  struct State {
    V before, current;  // c(k - 1), c(k)
  };

  // The small angle whose cosine is 1 - gap / 2, which is a little off the one that the factor was rounded from.
  static double angle(double gap) {
    return std::sqrt(gap) * (1 + gap * (1. / 24 + gap * (3. / 640 + gap * (5. / 7168))));
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

  static OVKS_INLINE bool equal(State a, State b) {
    const auto differ = (a.before != b.before) | (a.current != b.current);
    if constexpr (kAvx512) return _mm512_movepi64_mask(bits<__m512i>(differ)) == 0;
    else return _mm256_testz_si256(bits<__m256i>(differ), bits<__m256i>(differ));
  }

  // The ends of parts that ran from wrong ends of the parts before them. With (value, slope) the error of a start, that
  // of its end is (value + kSteps slope, slope).
  static OVKS_INLINE State corrected(State started, State ran) {
    V value = ran.current - started.current, slope = value - (ran.before - started.before);
    sumUp<1>(value, slope);
    const V slopes = raised<1>(slope, V{}), values = fma(slopes, broadcast<V>(kSteps), raised<1>(value, V{}));
    return {ran.before + (values - slopes), ran.current + values};
  }

  // To each lane's error what those below have grown to.
  template <int distance>
  static OVKS_INLINE void sumUp(V& value, V& slope) {
    const V slopes = raised<distance>(slope, V{});
    value = fma(slopes, broadcast<V>(distance * kSteps), value + raised<distance>(value, V{}));
    slope += slopes;
    if constexpr (2 * distance < lanes<V>) sumUp<2 * distance>(value, slope);
  }

  State state_[chains];
  V factor_, fromCurrent_, fromSlope_, bend_;
};

// The values of all chains by turns, from the first on, as vectors in order.
template <int chains>
class Chains {
 public:
  Chains(const double (&first)[chains], const double (&second)[chains], double factor)
      : recurrence_(first, second, factor) {
    for (int c = 0; c < chains; ++c) values_[at_ + c] = first[c];
  }

  template <int n>
  OVKS_INLINE Vec<double, n> next() {
    static_assert(n <= kBefore);
    if (kEnd - at_ < n) refill();
    at_ += n;
    return load<Vec<double, n>>(values_ + at_ - n);
  }

  void skip(std::ptrdiff_t n) {
    V rows[kRows];
    for (; n > kEnd - at_ + kSize; n -= kSize) recurrence_.next(rows);
    if (n > kEnd - at_) refill();
    at_ += static_cast<int>(n);
  }

 private:
  using V = Vec<double>;
  static constexpr int kRows = Recurrence<chains>::kRows, kSize = Recurrence<chains>::kSize, kBefore = lanes<V>,
                       kEnd = kBefore + kSize;

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

  Recurrence<chains> recurrence_;
  alignas(64) double values_[kEnd] = {};
  int at_ = kEnd - chains;
};

}  // namespace ovks
