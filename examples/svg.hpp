// SPDX-License-Identifier: MIT
// Drawings above one time axis: waveforms, one lane per channel, and spectrograms.
#pragma once

#include <string>
#include <vector>

#include "spectrogram.hpp"
#include "wav.hpp"

namespace svg {

struct Waveform {
  std::string title;
  const wav::Recording& recording;
};

struct Picture {
  std::string title;
  const demo::Spectrogram& spectrogram;
};

std::string waveforms(const std::vector<Waveform>& waveforms);
std::string spectrograms(const std::vector<Picture>& pictures);

}  // namespace svg
