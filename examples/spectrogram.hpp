// SPDX-License-Identifier: MIT
// Which frequencies a recording holds, and when.
#pragma once

#include <vector>

#include "wav.hpp"

namespace demo {

struct Spectrogram {
  double seconds = 0, hertz = 0;  // the ranges that columns and rows divide
  int columns = 0, rows = 0;
  std::vector<float> decibels;  // column by column from 0 Hz up; a sine wave at full scale has 0
  double strongest = 0;         // frequency of the largest value there is, in Hz; 0 in silence
};

Spectrogram spectrogram(const wav::Recording& recording);

}  // namespace demo
