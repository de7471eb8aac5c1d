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
int samplesIn(double seconds, const wav::Recording& r) {
  return std::max(1, static_cast<int>(seconds * r.rate)) * r.channels;
}

// What brings the largest sample to kPeak.
float gainFor(float peak) { return kPeak / std::max(peak, kPeak / kMaxGain); }

}  // namespace

Signal::Signal(const wav::Recording& r)
    : length(static_cast<int>(r.samples.size())),
      channels(r.channels),
      delay(samplesIn(kDelaySeconds, r)),
      peak(0),
      pcm(length + delay),
      wave(length),
      echo(length),
      fadeIn(std::min(length, samplesIn(kFadeSeconds, r))),
      fadeOut(fadeIn.size()),
      noise(dither(length)),
      bandPass(std::make_shared<BandPass>(r.rate, r.channels)) {
  std::copy(r.samples.begin(), r.samples.end(), pcm.begin());
  const int frames = fadeIn.size() / r.channels;
  for (int i = 0; i < fadeIn.size(); ++i) {
    const int frame = i / r.channels;
    fadeIn[i] = static_cast<float>(frame) / static_cast<float>(frames);
    fadeOut[fadeOut.size() - 1 - i] = fadeIn[i];
  }
}

std::vector<Step> steps(const Signal& signal) {
  const int all = signal.length, fade = signal.fadeIn.size();
  return {
      {"to floating point", "ovksConvert_16s32f", all,
       [](Signal& s) { return ovksConvert_16s32f(s.pcm.data(), s.wave.data(), s.length); },
       [](Signal& s) { plain::toFloat(s.pcm.data(), s.wave.data(), s.length); }},
      {"band-pass", "ovksFIRSR_32f", all, [](Signal& s) { return s.bandPass->filter(s.wave.data(), s.length); },
       [](Signal& s) {
         const Vector<float>& taps = s.bandPass->taps();
         plain::filter(taps.data(), taps.size(), s.channels, s.wave.data(), s.length);
       },
       kFilterTolerance},
      {"peak", "ovksNorm_Inf_32f", all,  //
       [](Signal& s) { return ovksNorm_Inf_32f(s.wave.data(), s.length, &s.peak); },
       [](Signal& s) { s.peak = plain::peak(s.wave.data(), s.length); }},
      {"gain", "ovksMulC_32f_I", all,  //
       [](Signal& s) { return ovksMulC_32f_I(gainFor(s.peak), s.wave.data(), s.length); },
       [](Signal& s) { plain::multiply(gainFor(s.peak), s.wave.data(), s.length); }},
      {"fade in", "ovksMul_32f_I", fade,
       [](Signal& s) { return ovksMul_32f_I(s.fadeIn.data(), s.wave.data(), s.fadeIn.size()); },
       [](Signal& s) { plain::multiply(s.fadeIn.data(), s.wave.data(), s.fadeIn.size()); }},
      {"fade out", "ovksMul_32f_I", fade,
       [](Signal& s) { return ovksMul_32f_I(s.fadeOut.data(), s.wave.end() - s.fadeOut.size(), s.fadeOut.size()); },
       [](Signal& s) { plain::multiply(s.fadeOut.data(), s.wave.end() - s.fadeOut.size(), s.fadeOut.size()); }},
      {"dither", "ovksAdd_32f_I", all,  //
       [](Signal& s) { return ovksAdd_32f_I(s.noise.data(), s.wave.data(), s.length); },
       [](Signal& s) { plain::add(s.noise.data(), s.wave.data(), s.length); }},
      {"to 16 bits", "ovksConvert_32f16s_Sfs", all,
       [](Signal& s) { return ovksConvert_32f16s_Sfs(s.wave.data(), s.pcm.data(), s.length, RoundNear, 0); },
       [](Signal& s) { plain::toInteger(s.wave.data(), s.pcm.data(), s.length); }},
      {"echo", "ovksMulC_16s_Sfs", all,
       [](Signal& s) { return ovksMulC_16s_Sfs(s.pcm.data(), kEchoFraction, s.echo.data(), s.length, kFractionBits); },
       [](Signal& s) { plain::multiplyFraction(s.pcm.data(), kEchoFraction, s.echo.data(), s.length); }},
      {"mixed in", "ovksAdd_16s_I", all,
       [](Signal& s) { return ovksAdd_16s_I(s.echo.data(), s.pcm.data() + s.delay, s.length); },
       [](Signal& s) { plain::addSaturated(s.echo.data(), s.pcm.data() + s.delay, s.length); }},
  };
}

}  // namespace demo
