// SPDX-License-Identifier: MIT
// Where the twiddles of complex transforms stand.
#pragma once

#include "transform/closing_pass.hpp"
#include "transform/spec.hpp"

namespace ovks::fft {

// Where the parts of the twiddle area begin, in elements.
template <class T>
struct TwiddleLayout {
  std::ptrdiff_t tiles = 0, columns = 0;

  constexpr explicit TwiddleLayout(int order) {
    using V = Vec<T>;
    constexpr std::ptrdiff_t L = lanes<V>;
    const std::ptrdiff_t n = (std::ptrdiff_t{1} << order) / (L * L);
    if (order >= kMinProductsOrder<T>) {
      tiles = TileTwiddles<V>::kPerTile;
      columns = aligned(tiles + n * TileTwiddleProducts<V>::kPerTile);
    } else {
      columns = n * TileTwiddles<V>::kPerTile;
    }
  }
};
template <class T>
TileTwiddleProducts<Vec<T>> productsIn(const T* twiddles, int order) {
  return {twiddles + TwiddleLayout<T>(order).tiles, twiddles};
}

}  // namespace ovks::fft
