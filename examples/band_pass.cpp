// SPDX-License-Identifier: MIT
#include "band_pass.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace demo {
namespace {

constexpr std::size_t kBlock = 512;  // samples
constexpr double kLowHertz = 300, kHighHertz = 3400;

// An ideal low-pass filter's answer to a pulse at time 0. Frequency per sample, 1/2 at most.
double lowPass(double frequency, int time) {
  const double angle = 2 * std::numbers::pi * frequency * time;
  return time == 0 ? 2 * frequency : 2 * frequency * std::sin(angle) / angle;
}

ovks::Vector<float> windowedSinc(int rate) {
  const int half = std::max(1, rate / 200);
  const double low = std::min(0.5, kLowHertz / rate), high = std::min(0.5, kHighHertz / rate);
  ovks::Vector<float> taps;
  for (int i = -half; i <= half; ++i) taps.push_back(static_cast<float>(lowPass(high, i) - lowPass(low, i)));
  ovks::hamming(taps);
  return taps;
}

// As the samples of all channels take turns, a tap for each of them is zero but for the first.
ovks::Vector<float> spread(const ovks::Vector<float>& taps, std::size_t channels) {
  ovks::Vector<float> r((taps.size() - 1) * channels + 1);
  for (std::size_t i = 0; i < taps.size(); ++i) r[i * channels] = taps[i];
  return r;
}

}  // namespace

BandPass::BandPass(int rate, int channels)
    : taps_(windowedSinc(rate)), filter_(spread(taps_, static_cast<std::size_t>(channels))) {}

void BandPass::filter(std::span<float> srcDst) {
  filter_.reset();
  for (; !srcDst.empty(); srcDst = srcDst.subspan(std::min(kBlock, srcDst.size())))
    filter_.filter(srcDst.first(std::min(kBlock, srcDst.size())));
}

}  // namespace demo
