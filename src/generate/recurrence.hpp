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

class Recurrence {
 public:
  using V = Vec<double>;
  static constexpr int kSteps = 8, kSize = kSteps * lanes<V>;  // of a part, and of all parts together

  Recurrence() = default;
  // Goes on after the values first and second.
  Recurrence(double first, double second, double factor, double angle)
      : state_{broadcast<V>(first), broadcast<V>(second)}, factor_(broadcast<V>(factor)) {
    V end;
    for (int i = 0; i < lanes<V>; ++i) end[i] = kSteps * (i + 1);
    const double gap = 2 - factor, sum = 2 + factor;
    const V theta = broadcast<V>(angle), quarter = broadcast<V>(std::numbers::pi / 2);
    fromCurrent_ = cosine((end + broadcast<V>(0.5)) * theta) * broadcast<V>(2 / std::sqrt(sum));
    fromSlope_ = cosine(end * theta - quarter) * broadcast<V>(2 / std::sqrt(std::fmax(gap, 0x1p-60) * sum));
    bend_ = broadcast<V>(-gap) * fromSlope_;
  }

  // The value before the next.
  double latest() const { return state_.before[0]; }

  // The next kSize values: those of part l in lane l of rows 0, stride, 2 stride, ...
  OVKS_INLINE void next(V* rows, int stride) {
    State ends = guess();
    for (;;) {
      State at{raised<1>(ends.before, state_.before), raised<1>(ends.current, state_.current)};
#pragma GCC unroll 8
      for (int i = 0; i < kSteps; ++i) {
        rows[i * stride] = at.current;
        at = {at.current, factor_ * at.current - at.before};
      }
      if (same(at, ends)) break;
      ends = corrected(ends, at);
    }
    const auto last = [](int) { return lanes<V> - 1; };
    state_ = {shuffle(ends.before, last), shuffle(ends.current, last)};
  }

 private:
  struct State {
    V before, current;  // c(k - 1), c(k)
  };

  // v moved up by some lanes, below them others.
  template <int distance>
  static OVKS_INLINE V raised(V v, V below) {
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
      return __builtin_shufflevector(below, v, (lanes<V> - distance + static_cast<int>(i))...);
    }
    (std::make_index_sequence<lanes<V>>{});
  }

  // The ends of the parts by the formula c(j) = c(0) cos((j + 1/2) angle) / cos(angle / 2) + slope sin(j angle) /
  // sin(angle) with slope = c(0) - c(-1).
  OVKS_INLINE State guess() const {
    const V c = state_.current, slope = c - state_.before;
    const V current = fma(fromSlope_, slope, fromCurrent_ * c);
    return {current - fma(fromCurrent_ - bend_, slope, bend_ * c), current};
  }

  static OVKS_INLINE bool same(State a, State b) {
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

  State state_;
  V factor_, fromCurrent_, fromSlope_, bend_;
};

// Several chains by turns from their first values on, as vectors in order.
template <int chains>
class Chains {
 public:
  explicit Chains(const Recurrence (&chain)[chains]) {
    for (int i = 0; i < chains; ++i) {
      chain_[i] = chain[i];
      values_[at_ + i] = chain[i].latest();
    }
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
    for (; n > kEnd - at_ + kSize; n -= kSize) make(rows);
    if (n > kEnd - at_) refill();
    at_ += static_cast<int>(n);
  }

 private:
  using V = Recurrence::V;
  static constexpr int kBefore = lanes<V>, kRows = chains * Recurrence::kSteps, kSize = kRows * lanes<V>,
                       kEnd = kBefore + kSize;

  OVKS_INLINE void make(V* rows) {
    for (int i = 0; i < chains; ++i) chain_[i].next(rows + i, chains);
  }

  // What is left, fewer values than a vector has, stays before the new ones.
  [[gnu::noinline]] void refill() {
    V rows[kRows];
    make(rows);
    store(values_, load<V>(values_ + kSize));
    at_ -= kSize;
    for (int i = 0; i < kRows; i += lanes<V>) {
      transpose(rows + i);
      for (int k = 0; k < lanes<V>; ++k) store(values_ + kBefore + k * kRows + i, rows[i + k]);
    }
  }

  Recurrence chain_[chains];
  alignas(64) double values_[kEnd] = {};
  int at_ = kEnd - chains;
};

}  // namespace ovks
