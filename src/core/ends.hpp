// SPDX-License-Identifier: MIT
// Fewer elements than fill a vector, for processors without masks.
//
// Of n elements the first m and the last m stand in a vector, m being the largest power of two up to n: all of them,
// those in the middle twice. So there are two moves of one size whatever n is, between memory and registers. It serves
// where each element is treated by itself. Lanes beyond repeat those before.
#pragma once

#include "core/element.hpp"
#include "core/part.hpp"

namespace ovks {

namespace detail {

template <class V, class P>
OVKS_INLINE V joined(P first, P last) {
  if constexpr (sizeof(P) == 16) {
    return bits<V>(_mm256_set_m128i(bits<__m128i>(last), bits<__m128i>(first)));
  } else if constexpr (sizeof(P) == 8) {
    const auto both = bits<__m128i>(Vec<uint64_t, 2>{first, last});
    if constexpr (sizeof(V) == 16) return bits<V>(both);
    else return bits<V>(_mm256_broadcastsi128_si256(both));
  } else {
    using Both = Piece<2 * sizeof(P)>;
    const auto both = static_cast<Both>(static_cast<Both>(last) << 8 * sizeof(P) | first);
    return bits<V>(broadcast<Vec<Both, sizeof(V) / sizeof(Both)>>(both));
  }
}

template <class P, class V>
OVKS_INLINE void separate(V v, P& first, P& last) {
  if constexpr (sizeof(P) == 16) {
    first = bits<P>(_mm256_castsi256_si128(bits<__m256i>(v)));
    last = bits<P>(_mm256_extracti128_si256(bits<__m256i>(v), 1));
  } else if constexpr (sizeof(P) == 8) {
    const auto both = bits<Vec<P, sizeof(V) / sizeof(P)>>(v);
    first = both[0];
    last = both[1];
  } else {
    using Both = Piece<2 * sizeof(P)>;
    const Both both = bits<Vec<Both, sizeof(V) / sizeof(Both)>>(v)[0];
    first = static_cast<P>(both);
    last = static_cast<P>(both >> 8 * sizeof(P));
  }
}

}  // namespace detail

// 0 < n < 2 m elements.
template <int N, int m = N / 2, class T>
OVKS_INLINE Elements<T, N> loadEnds(const T* p, std::ptrdiff_t n) {
  using P = detail::Piece<m * sizeof(T)>;
  if (m == 1 || n >= m) return detail::joined<Elements<T, N>>(load<P>(p), load<P>(p + n - m));
  if constexpr (m > 1) return loadEnds<N, m / 2>(p, n);
}
template <int m, class V, class T>
OVKS_INLINE void storeEnds(T* p, V v, std::ptrdiff_t n) {
  if (m == 1 || n >= m) {
    detail::Piece<m * sizeof(T)> first, last;
    detail::separate(v, first, last);
    store(p, first);
    store(p + n - m, last);
  } else if constexpr (m > 1) {
    storeEnds<m / 2>(p, v, n);
  }
}

}  // namespace ovks
