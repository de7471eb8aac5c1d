// SPDX-License-Identifier: MIT
#include "levels.hpp"

#include <cmath>

#include "memory.hpp"
#include "status.hpp"

namespace demo {
namespace {

double decibels(double sample) { return 20 * std::log10(std::abs(sample) / 32768); }

}  // namespace

Levels levels(const wav::Recording& recording) {
  Vector<float> wave(static_cast<int>(recording.samples.size()));
  require(ovksConvert_16s32f(recording.samples.data(), wave.data(), wave.size()), "ovksConvert_16s32f");
  float peak, norm, mean;
  require(ovksNorm_Inf_32f(wave.data(), wave.size(), &peak), "ovksNorm_Inf_32f");
  require(ovksNorm_L2_32f(wave.data(), wave.size(), &norm), "ovksNorm_L2_32f");
  require(ovksMean_32f(wave.data(), wave.size(), &mean, AlgHintAccurate), "ovksMean_32f");
  return {decibels(peak), decibels(norm / std::sqrt(wave.size())), decibels(mean)};
}

}  // namespace demo
