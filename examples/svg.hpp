// SPDX-License-Identifier: MIT
// Waveforms as a drawing: one lane per channel, above one time axis.
#pragma once

#include <string>
#include <vector>

#include "wav.hpp"

namespace svg {

struct Waveform {
  std::string title;
  const wav::Recording& recording;
};

std::string waveforms(const std::vector<Waveform>& waveforms);

}  // namespace svg
