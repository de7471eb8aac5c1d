// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cmath>

#include "svg.hpp"
#include "svg_frame.hpp"

namespace svg {
namespace {

using demo::Spectrogram;

constexpr int kLane = 192;
constexpr int kLevels = 16, kLevelDecibels = 6;  // the highest level ends at full scale

// A level's colour, from dark to bright.
std::string colour(int level) {
  constexpr std::array<std::array<int, 3>, 5> kRamp = {
      {{11, 16, 38}, {59, 15, 112}, {181, 54, 122}, {251, 135, 97}, {252, 253, 191}}};
  const int position = level * 4, part = position % (kLevels - 1);
  const std::size_t first = static_cast<std::size_t>(position / (kLevels - 1)),
                    next = std::min<std::size_t>(first + 1, 4);
  std::array<int, 3> mixed;
  for (std::size_t i = 0; i < 3; ++i)
    mixed[i] = kRamp[first][i] + (kRamp[next][i] - kRamp[first][i]) * part / (kLevels - 1);
  return text("#%02x%02x%02x", mixed[0], mixed[1], mixed[2]);
}

int levelOf(float decibels) {
  return std::clamp(kLevels + static_cast<int>(std::floor(decibels / kLevelDecibels)), 0, kLevels - 1);
}

// One path per level, made of runs of equal cells; the lowest level is the ground.
std::string cells(const Spectrogram& s) {
  std::array<std::string, kLevels> paths;
  const auto level = [&](int x, int y) { return levelOf(s.decibels[static_cast<std::size_t>(x * s.rows + y)]); };
  for (int y = 0; y < s.rows; ++y) {
    for (int x = 0, end; x < s.columns; x = end) {
      const int here = level(x, y);
      for (end = x + 1; end < s.columns && level(end, y) == here; ++end) continue;
      paths[static_cast<std::size_t>(here)] += text("M%d %dh%d", x, y, end - x);
    }
  }
  std::string r;
  for (int i = 1; i < kLevels; ++i)
    r += "<path stroke=\"" + colour(i) + "\" d=\"" + paths[static_cast<std::size_t>(i)] + "\"/>\n";
  return r;
}

std::string legend(int top) {
  constexpr int kBox = 8, kFirst = kLeft + kWidth - 50 - kLevels * kBox;
  std::string r =
      text("<text x=\"%d\" y=\"%d\" text-anchor=\"end\">-%d dB</text>", kFirst - 6, top + 22, kLevels * kLevelDecibels);
  for (int i = 0; i < kLevels; ++i)
    r +=
        text("<path fill=\"%s\" d=\"M%d %dh%dv10h-%dz\"/>", colour(i).c_str(), kFirst + i * kBox, top + 13, kBox, kBox);
  return r + text("<text x=\"%d\" y=\"%d\">0 dB</text>\n", kLeft + kWidth - 44, top + 22);
}

}  // namespace

std::string spectrograms(const std::vector<Picture>& pictures) {
  double seconds = 0;
  for (const Picture& p : pictures) seconds = std::max(seconds, p.spectrogram.seconds);
  std::string r = opening(seconds, static_cast<int>(pictures.size()) * (kTitle + kLane + kGap));
  int top = 0;
  for (const Picture& p : pictures) {
    const Spectrogram& s = p.spectrogram;
    r += title(p.title, top) + legend(top);
    top += kTitle;
    const double width = kWidth * s.seconds / seconds, row = static_cast<double>(kLane) / s.rows;
    r += text("<path fill=\"%s\" d=\"M%d %dh%.2fv%dh-%.2fz\"/>\n", colour(0).c_str(), kLeft, top, width, kLane, width);
    r += text("<g transform=\"translate(%d %.3f) scale(%.5f -%.5f)\" shape-rendering=\"crispEdges\">\n", kLeft,
              top + kLane - row / 2, width / s.columns, row);
    r += cells(s) + "</g>\n";
    const double step = tickStep(s.hertz);
    for (int i = 0; i * step <= s.hertz; ++i) {
      const double y = top + kLane * (1 - i * step / s.hertz);
      r += text("<text x=\"%d\" y=\"%.1f\" text-anchor=\"end\">%.4g kHz</text>\n", kLeft - 6, y + 4, i * step / 1000);
    }
    top += kLane + kGap;
  }
  return r + "</svg>\n";
}

}  // namespace svg
