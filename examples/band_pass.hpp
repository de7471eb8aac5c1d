// SPDX-License-Identifier: MIT
// What a telephone line leaves of a recording: 300 to 3400 Hz.
#pragma once

#include <ovks.hpp>

namespace demo {

// A windowed sinc of 10 ms. What it lets through comes 5 ms later.
class BandPass {
 public:
  BandPass(int rate, int channels);

  // A whole recording in place, block by block, as if it arrived that way.
  void filter(std::span<float> srcDst);

  const ovks::Vector<float>& taps() const { return taps_; }  // for one channel

 private:
  ovks::Vector<float> taps_;
  ovks::FIR<float> filter_;
};

}  // namespace demo
