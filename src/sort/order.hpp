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
// flip moves the sign of unsigned elements and complements for the descending order. bend turns the sign and magnitude
// of a float into two's complement, which leaves the negative NaNs at the bottom; turn rotates them around to the top.
template <class K>
struct Order {
  K flip, bend, turn;

  template <class V>
  OVKS_INLINE V key(V x) const {
    using U = Unsigned<V>;
    const V y = x ^ broadcast<V>(static_cast<Lane<V>>(flip)) ^
                ((x >> (sizeof(Lane<V>) * 8 - 1)) & broadcast<V>(static_cast<Lane<V>>(bend)));
    return bits<V>(bits<U>(y) - bits<U>(broadcast<V>(static_cast<Lane<V>>(turn))));
  }

  template <class V>
  OVKS_INLINE V element(V key) const {
    using U = Unsigned<V>;
    const V y = bits<V>(bits<U>(key) + bits<U>(broadcast<V>(static_cast<Lane<V>>(turn)))) ^
                broadcast<V>(static_cast<Lane<V>>(flip));
    return y ^ ((y >> (sizeof(Lane<V>) * 8 - 1)) & broadcast<V>(static_cast<Lane<V>>(bend)));
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
