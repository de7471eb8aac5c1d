// SPDX-License-Identifier: MIT
// What a telephone line leaves of a recording: 300 to 3400 Hz.
#pragma once

#include <ovks.h>

#include <cstdint>
#include <vector>

#include "memory.hpp"

namespace demo {

// A windowed sinc of 10 ms. What it lets through comes 5 ms later.
class BandPass {
 public:
  BandPass(int rate, int channels);

  // A whole recording in place, block by block, as if it arrived that way.
  Status filter(float* srcDst, int len);

  const Vector<float>& taps() const { return taps_; }  // for one channel

 private:
  Vector<float> taps_;
  Vector<float> delay_;  // the samples before the next block
  std::vector<uint8_t> specification_, buffer_;
};

}  // namespace demo
