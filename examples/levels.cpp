// SPDX-License-Identifier: MIT
#include "levels.hpp"

#include <cmath>
#include <ovks.hpp>

namespace demo {
namespace {

double decibels(double sample) { return 20 * std::log10(std::abs(sample) / 32768); }

}  // namespace

Levels levels(const wav::Recording& recording) {
  ovks::Vector<float> wave(recording.samples.size());
  ovks::convert(recording.samples, wave);
  const double rms = ovks::normL2(wave) / std::sqrt(wave.size());
  return {decibels(ovks::normInf(wave)), decibels(rms), decibels(ovks::mean(wave, AlgHintAccurate))};
}

}  // namespace demo
