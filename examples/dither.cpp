// SPDX-License-Identifier: MIT
#include "dither.hpp"

namespace demo {

ovks::Vector<float> dither(std::size_t length) {
  ovks::UniformRandom<float> uniform(-0.5f, 0.5f, 1);
  ovks::Vector<float> sum(length), other(length);
  uniform(sum);
  uniform(other);
  ovks::add(other, sum);
  return sum;
}

}  // namespace demo
