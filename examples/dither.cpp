// SPDX-License-Identifier: MIT
#include "dither.hpp"

#include <vector>

#include "status.hpp"

namespace demo {

Vector<float> dither(int length) {
  int bytes;
  require(ovksRandUniformGetSize_32f(&bytes), "ovksRandUniformGetSize_32f");
  std::vector<uint8_t> area(static_cast<std::size_t>(bytes));
  const auto state = reinterpret_cast<RandUniformState_32f*>(area.data());
  require(ovksRandUniformInit_32f(state, -0.5f, 0.5f, 1), "ovksRandUniformInit_32f");

  Vector<float> sum(length), other(length);
  for (Vector<float>* uniform : {&sum, &other})
    require(ovksRandUniform_32f(uniform->data(), length, state), "ovksRandUniform_32f");
  require(ovksAdd_32f_I(other.data(), sum.data(), length), "ovksAdd_32f_I");
  return sum;
}

}  // namespace demo
