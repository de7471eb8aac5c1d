// SPDX-License-Identifier: MIT
// What happens to the recording: a list of steps, each one function of the library.
#pragma once

#include <memory>
#include <vector>

#include "band_pass.hpp"
#include "memory.hpp"
#include "wav.hpp"

namespace demo {

// What the steps work on.
struct Signal {
  explicit Signal(const wav::Recording& recording);

  int length;             // samples of the recording
  int channels;           // that take turns
  int delay;              // of the echo, in samples
  float peak;             // of the wave
  Vector<int16_t> pcm;    // the recording, then the result, with room for the echo's end
  Vector<float> wave;     // in between, 32768 being full scale
  Vector<int16_t> echo;   // the result, quieter
  Vector<float> fadeIn;   // factors from 0 to 1
  Vector<float> fadeOut;  // and back
  Vector<float> noise;    // for the rounding
  std::shared_ptr<BandPass> bandPass;
};

struct Step {
  const char* name;
  const char* call;
  int samples;  // that it works on
  Status (*library)(Signal&);
  void (*plain)(Signal&);
  double tolerance = 0;  // of the wave: sums of another order are rounded otherwise
};

std::vector<Step> steps(const Signal& signal);

}  // namespace demo
