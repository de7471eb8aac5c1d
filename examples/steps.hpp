// SPDX-License-Identifier: MIT
// What happens to the recording: a list of steps, each one function of the library.
#pragma once

#include <memory>
#include <ovks.hpp>
#include <vector>

#include "band_pass.hpp"
#include "wav.hpp"

namespace demo {

// What the steps work on.
struct Signal {
  explicit Signal(const wav::Recording& recording);

  std::span<int16_t> dry() { return std::span(pcm).first(wave.size()); }
  std::span<int16_t> delayed() { return std::span(pcm).last(wave.size()); }
  std::span<float> start() { return std::span(wave).first(fadeIn.size()); }
  std::span<float> end() { return std::span(wave).last(fadeOut.size()); }

  int channels;                 // that take turns
  float peak;                   // of the wave
  ovks::Vector<int16_t> pcm;    // the recording, then the result, with room for the echo's end
  ovks::Vector<float> wave;     // in between, 32768 being full scale
  ovks::Vector<int16_t> echo;   // the result, quieter
  ovks::Vector<float> fadeIn;   // factors from 0 to 1
  ovks::Vector<float> fadeOut;  // and back
  ovks::Vector<float> noise;    // for the rounding
  std::shared_ptr<BandPass> bandPass;
};

struct Step {
  const char* name;
  const char* call;
  std::size_t samples;  // that it works on
  void (*library)(Signal&);
  void (*plain)(Signal&);
  double tolerance = 0;  // of the wave: sums of another order are rounded otherwise
};

std::vector<Step> steps(const Signal& signal);

}  // namespace demo
