// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "svg.hpp"
#include "svg_frame.hpp"

namespace svg {
namespace {

constexpr int kLane = 96;
constexpr std::array kColours = {"#64748b", "#2563eb"};

// One channel's outline, from its highest samples forth and its lowest back, one of each per pixel.
std::string outline(const wav::Recording& r, int channel, double seconds, int top) {
  const int64_t frames = r.frames();
  const int columns = std::clamp(static_cast<int>(std::lround(kWidth * r.seconds() / seconds)), 1, kWidth);
  const auto y = [&](int sample) { return top + kLane / 2.0 - sample / 32768.0 * (kLane / 2.0); };
  std::string forth, back;
  for (int x = 0; x < columns; ++x) {
    const int64_t first = std::min(frames - 1, x * frames / columns);
    const int64_t end = std::max(first + 1, (x + 1) * frames / columns);
    int low = INT16_MAX, high = INT16_MIN;
    for (int64_t i = first; i < end; ++i) {
      const int sample = r.samples[static_cast<std::size_t>(i * r.channels + channel)];
      low = std::min(low, sample);
      high = std::max(high, sample);
    }
    forth += text("%c%d %.1f", x == 0 ? 'M' : 'L', kLeft + x, y(high) - 0.3);
    back.insert(0, text("L%d %.1f", kLeft + x, y(low) + 0.3));
  }
  return forth + back + "Z";
}

}  // namespace

std::string waveforms(const std::vector<Waveform>& waveforms) {
  double seconds = 0;
  int bottom = 0;
  for (const Waveform& w : waveforms) {
    seconds = std::max(seconds, w.recording.seconds());
    bottom += kTitle + w.recording.channels * (kLane + kGap);
  }
  std::string r = opening(seconds, bottom);
  int top = 0;
  for (std::size_t i = 0; i < waveforms.size(); ++i) {
    const wav::Recording& recording = waveforms[i].recording;
    r += title(waveforms[i].title, top);
    top += kTitle;
    for (int channel = 0; channel < recording.channels; ++channel, top += kLane + kGap) {
      r += text("<path d=\"M%d %dh%dm0 %dh-%d\" stroke=\"#cbd5e1\" stroke-dasharray=\"2 3\"/>", kLeft, top, kWidth,
                kLane, kWidth);
      for (const int level : {1, 0, -1}) {
        r += text("<text x=\"%d\" y=\"%d\" text-anchor=\"end\">%d</text>", kLeft - 8,
                  top + kLane / 2 - level * kLane / 2 + 4, level);
      }
      r += text("\n<path fill=\"%s\" d=\"", kColours[i % kColours.size()]);
      r += outline(recording, channel, seconds, top) + "\"/>\n";
    }
  }
  return r + "</svg>\n";
}

}  // namespace svg
