// SPDX-License-Identifier: MIT
// Elements as integers whose signed order is the order of the sort.
//
// Every kernel sorts signed integers upwards. Unsigned and floating-point elements, and the descending sorts, differ
// only in three constants, so no kernel exists twice. The map is a bijection: what comes back is the caller's bits,
// payloads of NaNs included.
#pragma once

#include "core/simd.hpp"

namespace ovks::sort {

template <int bytes>
using KeyOfSize =
    std::conditional_t<bytes == 8, int64_t,
                       std::conditional_t<bytes == 4, int32_t, std::conditional_t<bytes == 2, int16_t, int8_t>>>;
template <class T>
using KeyOf = KeyOfSize<sizeof(T)>;

// key = (x ^ flip ^ (bend where x is negative)) - turn, in wrapping arithmetic.
//
// Narrow elements are integers and need flip alone.
// flip moves the sign of unsigned elements and complements for the descending order. bend turns the sign and magnitude
// of a float into two's complement, which leaves the negative NaNs at the bottom; turn rotates them around to the top.
template <class K>
struct Order {
  K flip, bend, turn;

  template <class V>
  OVKS_INLINE V key(V x) const {
    const V y = x ^ broadcast<V>(flip);
    if constexpr (sizeof(K) < 4) return y;
    else return wrap(y ^ bent(x), broadcast<V>(turn), [](auto a, auto b) { return a - b; });
  }

  template <class V>
  OVKS_INLINE V element(V key) const {
    if constexpr (sizeof(K) < 4) return key ^ broadcast<V>(flip);
    else {
      const V y = wrap(key, broadcast<V>(turn), [](auto a, auto b) { return a + b; }) ^ broadcast<V>(flip);
      return y ^ bent(y);
    }
  }

 private:
  template <class V>
  OVKS_INLINE V bent(V x) const {
    return (x >> (sizeof(K) * 8 - 1)) & broadcast<V>(bend);
  }
  template <class V, class F>
  OVKS_INLINE static V wrap(V a, V b, F f) {
    return bits<V>(f(bits<Unsigned<V>>(a), bits<Unsigned<V>>(b)));
  }
};

template <class T, bool descending>
inline constexpr auto orderOf = [] {
  using K = KeyOf<T>;
  using U = std::make_unsigned_t<K>;
  constexpr U sign = U{1} << (sizeof(K) * 8 - 1);
  constexpr U complement = descending ? static_cast<U>(-1) : U{0};
  if constexpr (std::is_floating_point_v<T>) {
    constexpr U nans = sizeof(T) == 4 ? U{0x7fffff} : static_cast<U>(0xfffffffffffff);
    return Order<K>{K(complement), K(sign - 1), K(descending ? U(0) - nans : nans)};
  } else {
    return Order<K>{K(complement ^ (std::is_unsigned_v<T> ? sign : U{0})), 0, 0};
  }
}();

}  // namespace ovks::sort
