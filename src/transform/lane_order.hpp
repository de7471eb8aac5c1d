// SPDX-License-Identifier: MIT
// The order of points in the lanes of vectors, and the shuffles that change it.
#pragma once

#include "transform/butterfly.hpp"

namespace ovks::fft {

namespace detail {

template <class F, class V, int... i>
OVKS_INLINE auto shuffled(V a, V b, std::integer_sequence<int, i...>) {
  return __builtin_shufflevector(a, b, F::template lane<V>(i)...);
}

// The real or the imaginary parts of interleaved points in two vectors. A lane of the second vector counts from
// lanes<V> on.
template <class Order, int part>
struct Parts {
  template <class V>
  static constexpr int lane(int i) {
    return 2 * Order::template lane<V>(i) + part;
  }
};
// Half h of the points, interleaved, from their parts.
template <class Order, int h>
struct PointsHalf {
  template <class V>
  static constexpr int lane(int i) {
    return Order::template place<V>(h * lanes<V> / 2 + i / 2) + i % 2 * lanes<V>;
  }
};
template <class Order>
struct Placed {
  template <class V>
  static constexpr int lane(int i) {
    return Order::template place<V>(i);
  }
};

// Whole 128-bit chunks: the first of the two given, then the second, from each of two vectors.
template <int first, int second>
struct Chunks {
  template <class V>
  static constexpr int lane(int i) {
    constexpr int E = 16 / sizeof(Lane<V>), half = lanes<V> / 2;
    const int chunk = i % half / E ? second : first;
    return chunk * E + i % E + (i >= half ? lanes<V> : 0);
  }
};

}  // namespace detail

// How points stand in a vector's lanes: lane i has point lane(i), and point l stands in lane place(l).
struct InOrder {
  template <class V>
  static constexpr int lane(int i) {
    return i;
  }
  template <class V>
  static constexpr int place(int l) {
    return l;
  }
};
// As interleaved points come apart within 128-bit chunks, which is cheaper than across: half of a chunk from the first
// half of the points, half from the second.
struct ByChunks {
  template <class V>
  static constexpr int lane(int i) {
    constexpr int E = 16 / sizeof(Lane<V>), h = E / 2;
    return i % h + i / E * h + i % E / h * lanes<V> / 2;
  }
  template <class V>
  static constexpr int place(int l) {
    constexpr int E = 16 / sizeof(Lane<V>), h = E / 2, half = lanes<V> / 2;
    return l % h + l % half / h * E + l / half * h;
  }
};

// Two vectors into one, lane i taken from F's lane i.
template <class F, class V>
OVKS_INLINE V shuffle2(V a, V b) {
  return detail::shuffled<F>(a, b, std::make_integer_sequence<int, lanes<V>>{});
}

// Interleaved points, the last first. Of 256 bits compilers would make one shuffle that takes twice as long.
template <class V>
OVKS_INLINE V reversedPoints(V x) {
  if constexpr (sizeof(V) == 32) {
    const V halves = bits<V>(_mm256_permute2f128_pd(bits<__m256d>(x), bits<__m256d>(x), 1));
    return shuffle(halves, [](int i) { return sizeof(Lane<V>) == 4 ? i ^ 2 : i; });
  } else {
    return shuffle(x, [](int i) { return (lanes<V> - 1 - i) ^ 1; });
  }
}

// The low halves of two vectors, and the high ones. A vector of one chunk is not halved.
template <class V>
struct Halves {
  V low, high;
};
template <class V>
OVKS_INLINE Halves<V> halvesOf(V a, V b) {
  using namespace detail;
  if constexpr (sizeof(V) == 16) return {a, b};
  else if constexpr (sizeof(V) == 32) return {shuffle2<Chunks<0, 0>>(a, b), shuffle2<Chunks<1, 1>>(a, b)};
  else return {shuffle2<Chunks<0, 1>>(a, b), shuffle2<Chunks<2, 3>>(a, b)};
}
// The same from memory, where the halves come together as they are loaded.
template <class V>
OVKS_INLINE V loadTogether(const Lane<V>* a, const Lane<V>* b) {
  if constexpr (sizeof(V) == 64) {
    return bits<V>(_mm512_inserti64x4(_mm512_castsi256_si512(load<__m256i>(a)), load<__m256i>(b), 1));
  } else {
    return bits<V>(_mm256_inserti128_si256(_mm256_castsi128_si256(load<__m128i>(a)), load<__m128i>(b), 1));
  }
}
template <class V>
OVKS_INLINE Halves<V> loadHalves(const Lane<V>* a, const Lane<V>* b) {
  constexpr int half = lanes<V> / 2;
  return {loadTogether<V>(a, b), loadTogether<V>(a + half, b + half)};
}

}  // namespace ovks::fft
