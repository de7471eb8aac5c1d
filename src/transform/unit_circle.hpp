// SPDX-License-Identifier: MIT
// Points of the unit circle, correctly rounded, from a quarter wave of the sine.
#pragma once

#include "transform/double_double.hpp"

namespace ovks::fft {

// sin(2 pi k / 2048), k = 0 ... 512: enough for orders up to 11.
inline constexpr int kConstantOrder = 11;

template <class T>
struct QuarterWave {
  static constexpr int kPoints = (1 << kConstantOrder) / 4;
  T sine[kPoints + 1];

  constexpr QuarterWave() : sine{} {
    for (int k = 0; k <= kPoints; ++k)
      sine[k] = static_cast<T>(sineOfQuarter<T>(static_cast<double>(k) / kPoints, 2 * k > kPoints));
  }
};
template <class T>
inline constexpr QuarterWave<T> kQuarterWave;

// table[k] = sin(2 pi k / N), first <= k < end, N = 2^order > 2048, in whole vectors.
template <class T>
inline void computeSines(T* table, int order, std::ptrdiff_t first, std::ptrdiff_t end) {
  using V = Vec<double>;
  const std::ptrdiff_t points = std::ptrdiff_t{1} << (order - 2);
  V index;
  for (int i = 0; i < lanes<V>; ++i) index[i] = i;
  for (std::ptrdiff_t k = first; k < end; k += lanes<V>) {
    const V t = (index + static_cast<double>(k)) * (1.0 / static_cast<double>(points));
    store(table + k, convert<T>(sineOfQuarter<T>(t, 2 * k >= points)));
  }
}

// The whole quarter wave, k = 0 ... N/4.
template <class T>
inline void computeQuarterWave(T* table, int order) {
  const std::ptrdiff_t points = std::ptrdiff_t{1} << (order - 2);
  computeSines(table, order, 0, points);
  table[points] = 1;
}

// p[index] of each lane.
template <class V>
OVKS_INLINE V gather(const Lane<V>* p, Vec<int32_t, lanes<V>> index) {
  if constexpr (sizeof(Lane<V>) == 4) {
    if constexpr (sizeof(V) == 64) return _mm512_i32gather_ps(bits<__m512i>(index), p, 4);
    else return _mm256_i32gather_ps(p, bits<__m256i>(index), 4);
  } else {
    if constexpr (sizeof(V) == 64) return _mm512_i32gather_pd(bits<__m256i>(index), p, 8);
    else return _mm256_i32gather_pd(p, bits<__m128i>(index), 8);
  }
}

// exp(-2 pi i j / N) for any j, N = 2^order, from a quarter wave of 2^sineOrder points a turn.
template <class T>
class UnitCircle {
 public:
  constexpr UnitCircle(const T* sine, int sineOrder, int order)
      : sine_(sine), quarter_((1 << order) / 4), shift_(sineOrder - order) {}

  constexpr Complex<T> operator()(int32_t j) const {
    const int32_t within = j & (quarter_ - 1);
    const T up = at(within), down = at(quarter_ - within);
    switch (j / quarter_ & 3) {
      case 0: return {down, -up};
      case 1: return {-up, -down};
      case 2: return {-down, up};
      default: return {up, down};
    }
  }

  // The quarter wave, for every point where the circle has as many.
  constexpr const T* sines() const { return sine_; }

  constexpr int32_t quarter() const { return quarter_; }

  // The points of each lane's j.
  template <class V>
  OVKS_INLINE Complex<V> points(Vec<int32_t, lanes<V>> j) const {
    using I = Vec<std::conditional_t<sizeof(T) == 4, int32_t, int64_t>, lanes<V>>;
    const auto within = j & (quarter_ - 1);
    const V up = gather<V>(sine_, within << shift_), down = gather<V>(sine_, (quarter_ - within) << shift_);
    const I quadrant = convert<Lane<I>>((j & quarter_) | (j & (2 * quarter_)));
    const I odd = (quadrant & quarter_) != 0, late = (quadrant & (2 * quarter_)) != 0;
    constexpr Lane<I> kSign = Lane<I>{1} << (8 * sizeof(T) - 1);
    const V re = odd ? up : down, im = odd ? down : up;
    return {bits<V>(bits<I>(re) ^ ((odd ^ late) & kSign)), bits<V>(bits<I>(im) ^ (~late & kSign))};
  }

 private:
  constexpr T at(int32_t k) const { return sine_[k << shift_]; }

  const T* sine_;
  int32_t quarter_;
  int shift_;
};

}  // namespace ovks::fft
