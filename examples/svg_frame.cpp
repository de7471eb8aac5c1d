// SPDX-License-Identifier: MIT
#include "svg_frame.hpp"

#include <cmath>

namespace svg {
namespace {

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

}  // namespace

double tickStep(double range) {
  const double power = std::pow(10, std::floor(std::log10(range / 5)));
  for (const double factor : {5, 2}) {
    if (factor * power <= range / 5) return factor * power;
  }
  return power;
}

std::string opening(double seconds, int bottom) {
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
  return r;
}

std::string title(const std::string& words, int top) {
  return text("<text x=\"%d\" y=\"%d\" font-weight=\"bold\">", kLeft, top + 22) + escaped(words) + "</text>\n";
}

}  // namespace svg
