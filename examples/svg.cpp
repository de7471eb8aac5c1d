// SPDX-License-Identifier: MIT
#include "svg.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace svg {
namespace {

constexpr int kLeft = 56, kWidth = 880, kRight = 24, kTitle = 34, kLane = 96, kGap = 20, kAxis = 28;
constexpr std::array kColours = {"#64748b", "#2563eb"};

template <class... A>
std::string text(const char* pattern, A... values) {
  std::array<char, 256> line;
  std::snprintf(line.data(), line.size(), pattern, values...);
  return line.data();
}

std::string escaped(const std::string& plain) {
  std::string r;
  for (const char c : plain) {
    if (c == '&') r += "&amp;";
    else if (c == '<') r += "&lt;";
    else if (static_cast<unsigned char>(c) < ' ') r += ' ';
    else r += c;
  }
  return r;
}

// Seconds between ticks: 1, 2 or 5 times a power of ten, five to twelve ticks in all.
double tickStep(double seconds) {
  const double power = std::pow(10, std::floor(std::log10(seconds / 5)));
  for (const double factor : {5, 2}) {
    if (factor * power <= seconds / 5) return factor * power;
  }
  return power;
}

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
  const int width = kLeft + kWidth + kRight, height = bottom + kAxis;
  std::string r = text(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 %d %d\" width=\"%d\" height=\"%d\" "
      "font-family=\"sans-serif\" font-size=\"12\" fill=\"#334155\">\n",
      width, height, width, height);
  r += "<rect width=\"100%\" height=\"100%\" fill=\"white\"/>\n";

  const double step = tickStep(seconds);
  for (int i = 0; i * step <= seconds; ++i) {
    const double x = kLeft + kWidth * i * step / seconds;
    r += text("<path d=\"M%.1f %dV%d\" stroke=\"#e2e8f0\"/>", x, kTitle, bottom);
    r += text("<text x=\"%.1f\" y=\"%d\" text-anchor=\"middle\">%.4g s</text>\n", x, bottom + 18, i * step);
  }
  int top = 0;
  for (std::size_t i = 0; i < waveforms.size(); ++i) {
    const wav::Recording& recording = waveforms[i].recording;
    r += text("<text x=\"%d\" y=\"%d\" font-weight=\"bold\">", kLeft, top + 22) + escaped(waveforms[i].title) +
         "</text>\n";
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
