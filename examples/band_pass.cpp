// SPDX-License-Identifier: MIT
#include "band_pass.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "status.hpp"

namespace demo {
namespace {

constexpr int kBlock = 512;  // samples
constexpr double kLowHertz = 300, kHighHertz = 3400;

// An ideal low-pass filter's answer to a pulse at time 0. Frequency per sample, 1/2 at most.
double lowPass(double frequency, int time) {
  const double angle = 2 * std::numbers::pi * frequency * time;
  return time == 0 ? 2 * frequency : 2 * frequency * std::sin(angle) / angle;
}

Vector<float> windowedSinc(int rate) {
  const int half = std::max(1, rate / 200);
  const double low = std::min(0.5, kLowHertz / rate), high = std::min(0.5, kHighHertz / rate);
  Vector<float> taps(2 * half + 1);
  for (int i = 0; i < taps.size(); ++i) taps[i] = static_cast<float>(lowPass(high, i - half) - lowPass(low, i - half));
  require(ovksWinHamming_32f_I(taps.data(), taps.size()), "ovksWinHamming_32f_I");
  return taps;
}

// As the samples of all channels take turns, a tap for each of them is zero but for the first.
Vector<float> spread(const Vector<float>& taps, int channels) {
  Vector<float> r((taps.size() - 1) * channels + 1);
  for (int i = 0; i < taps.size(); ++i) r[i * channels] = taps.data()[i];
  return r;
}

FIRSRSpec_32f* specification(std::vector<uint8_t>& bytes) { return reinterpret_cast<FIRSRSpec_32f*>(bytes.data()); }

}  // namespace

BandPass::BandPass(int rate, int channels) : taps_(windowedSinc(rate)), delay_((taps_.size() - 1) * channels) {
  const Vector<float> taps = spread(taps_, channels);
  int bytes, bufferBytes;
  require(ovksFIRSRGetSize(taps.size(), DataType32f, &bytes, &bufferBytes), "ovksFIRSRGetSize");
  specification_.resize(static_cast<std::size_t>(bytes));
  buffer_.resize(static_cast<std::size_t>(bufferBytes));
  require(ovksFIRSRInit_32f(taps.data(), taps.size(), FilterAlgAuto, specification(specification_)),
          "ovksFIRSRInit_32f");
}

Status BandPass::filter(float* srcDst, int len) {
  Status status = ovksZero_32f(delay_.data(), delay_.size());
  for (int i = 0; i < len && status == StatusOk; i += kBlock) {
    status = ovksFIRSR_32f(srcDst + i, srcDst + i, std::min(kBlock, len - i), specification(specification_),
                           delay_.data(), delay_.data(), buffer_.data());
  }
  return status;
}

}  // namespace demo
