// SPDX-License-Identifier: MIT
// What drawings have in common: sizes, titles and one time axis.
#pragma once

#include <array>
#include <cstdio>
#include <string>

namespace svg {

constexpr int kLeft = 56, kWidth = 880, kRight = 24, kTitle = 34, kGap = 20, kAxis = 28;

template <class... A>
std::string text(const char* pattern, A... values) {
  std::array<char, 256> line;
  std::snprintf(line.data(), line.size(), pattern, values...);
  return line.data();
}

// Distance of ticks: 1, 2 or 5 times a power of ten, five to twelve ticks in all.
double tickStep(double range);

// The drawing's start, with an axis for so many seconds below so many pixels of lanes.
std::string opening(double seconds, int bottom);

std::string title(const std::string& words, int top);

}  // namespace svg
