// SPDX-License-Identifier: MIT
#include "steps.hpp"

#include <algorithm>

#include "dither.hpp"
#include "plain.hpp"

namespace demo {
namespace {

constexpr float kPeak = 23198;            // 3 dB below full scale
constexpr float kMaxGain = 16;            // 24 dB: silence stays silent
constexpr int16_t kEchoFraction = 13045;  // -8 dB, in 1/2^15
constexpr int kFractionBits = 15;
constexpr double kFilterTolerance = 0.125;  // of a step of 16 bits
constexpr double kDelaySeconds = 0.18, kFadeSeconds = 0.25;

// Samples of all channels in so many seconds, at least one frame.
std::size_t samplesIn(double seconds, const wav::Recording& r) {
  return static_cast<std::size_t>(std::max(1, static_cast<int>(seconds * r.rate)) * r.channels);
}

// What brings the largest sample to kPeak.
float gainFor(float peak) { return kPeak / std::max(peak, kPeak / kMaxGain); }

// A plain loop's length.
int length(std::span<const float> wave) { return static_cast<int>(wave.size()); }

}  // namespace

Signal::Signal(const wav::Recording& r)
    : channels(r.channels),
      peak(0),
      pcm(r.samples.size() + samplesIn(kDelaySeconds, r)),
      wave(r.samples.size()),
      echo(wave.size()),
      fadeIn(std::min(wave.size(), samplesIn(kFadeSeconds, r))),
      fadeOut(fadeIn.size()),
      noise(dither(wave.size())),
      bandPass(std::make_shared<BandPass>(r.rate, r.channels)) {
  std::copy(r.samples.begin(), r.samples.end(), pcm.begin());
  const std::size_t taking = static_cast<std::size_t>(channels), frames = fadeIn.size() / taking;
  for (std::size_t i = 0; i < fadeIn.size(); ++i)
    fadeIn[i] = static_cast<float>(i / taking) / static_cast<float>(frames);
  std::reverse_copy(fadeIn.begin(), fadeIn.end(), fadeOut.begin());
}

std::vector<Step> steps(const Signal& signal) {
  const std::size_t all = signal.wave.size(), fade = signal.fadeIn.size();
  return {
      {"to floating point", "ovksConvert_16s32f", all, [](Signal& s) { ovks::convert(s.dry(), s.wave); },
       [](Signal& s) { plain::toFloat(s.pcm.data(), s.wave.data(), length(s.wave)); }},
      {"band-pass", "ovksFIRSR_32f", all, [](Signal& s) { s.bandPass->filter(s.wave); },
       [](Signal& s) {
         const ovks::Vector<float>& taps = s.bandPass->taps();
         plain::filter(taps.data(), length(taps), s.channels, s.wave.data(), length(s.wave));
       },
       kFilterTolerance},
      {"peak", "ovksNorm_Inf_32f", all, [](Signal& s) { s.peak = ovks::normInf(s.wave); },
       [](Signal& s) { s.peak = plain::peak(s.wave.data(), length(s.wave)); }},
      {"gain", "ovksMulC_32f_I", all, [](Signal& s) { ovks::mulC(gainFor(s.peak), s.wave); },
       [](Signal& s) { plain::multiply(gainFor(s.peak), s.wave.data(), length(s.wave)); }},
      {"fade in", "ovksMul_32f_I", fade, [](Signal& s) { ovks::mul(s.fadeIn, s.start()); },
       [](Signal& s) { plain::multiply(s.fadeIn.data(), s.start().data(), length(s.fadeIn)); }},
      {"fade out", "ovksMul_32f_I", fade, [](Signal& s) { ovks::mul(s.fadeOut, s.end()); },
       [](Signal& s) { plain::multiply(s.fadeOut.data(), s.end().data(), length(s.fadeOut)); }},
      {"dither", "ovksAdd_32f_I", all, [](Signal& s) { ovks::add(s.noise, s.wave); },
       [](Signal& s) { plain::add(s.noise.data(), s.wave.data(), length(s.wave)); }},
      {"to 16 bits", "ovksConvert_32f16s_Sfs", all,
       [](Signal& s) { ovks::convertScaled(s.wave, s.dry(), RoundNear, 0); },
       [](Signal& s) { plain::toInteger(s.wave.data(), s.pcm.data(), length(s.wave)); }},
      {"echo", "ovksMulC_16s_Sfs", all,
       [](Signal& s) { ovks::mulCScaled(s.dry(), kEchoFraction, s.echo, kFractionBits); },
       [](Signal& s) { plain::multiplyFraction(s.pcm.data(), kEchoFraction, s.echo.data(), length(s.wave)); }},
      {"mixed in", "ovksAdd_16s_I", all, [](Signal& s) { ovks::add(s.echo, s.delayed()); },
       [](Signal& s) { plain::addSaturated(s.echo.data(), s.delayed().data(), length(s.wave)); }},
  };
}

}  // namespace demo
