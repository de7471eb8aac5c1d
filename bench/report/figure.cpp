// SPDX-License-Identifier: MIT
#include "report/figure.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

namespace report {
namespace {

constexpr std::array kColours = {"#1b6ca8", "#c8553d", "#588157", "#8d6a9f", "#b8860b", "#444444", "#2a9d8f", "#d14d8b"};
constexpr const char *kInk = "#333", *kFaint = "#ddd";

template <class... A>
std::string text(const char* pattern, A... values) {
  std::array<char, 512> line;
  std::snprintf(line.data(), line.size(), pattern, values...);
  return line.data();
}

std::string words(double x, double y, const char* anchor, const std::string& s, const char* colour = kInk) {
  return text(R"(<text x="%.1f" y="%.1f" text-anchor="%s" fill="%s">%s</text>)", x, y, anchor, colour, s.c_str()) + "\n";
}
std::string line(double x1, double y1, double x2, double y2, const char* colour) {
  return text(R"(<line x1="%.1f" y1="%.1f" x2="%.1f" y2="%.1f" stroke="%s"/>)", x1, y1, x2, y2, colour) + "\n";
}
std::string dot(double x, double y, const char* fill, const char* stroke) {
  return text(R"(<circle cx="%.1f" cy="%.1f" r="4" fill="%s" stroke="%s"/>)", x, y, fill, stroke) + "\n";
}
std::string opening(const std::string& title, int width, int height) {
  return text(R"(<svg xmlns="http://www.w3.org/2000/svg" width="%d" height="%d" font-family="sans-serif" font-size="12">)",
              width, height) +
         text("\n<rect width=\"%d\" height=\"%d\" fill=\"white\"/>\n", width, height) +
         text(R"(<text x="16" y="22" font-size="15" fill="%s">%s</text>)", kInk, title.c_str()) + "\n";
}

std::string number(double v) {
  return v >= 1e6 ? text("%gM", v / 1e6) : v >= 1e4 ? text("%gk", v / 1e3) : text("%g", v);
}

// Places on one axis, from low to high between two pixels.
class Scale {
 public:
  Scale(const Axis& axis, double low, double high, double from, double to)
      : logarithmic_(axis.logarithmic), low_(map(low)), high_(map(high)), from_(from), to_(to) {}

  double operator()(double v) const { return from_ + (map(v) - low_) / (high_ - low_) * (to_ - from_); }

  // 1, 2 and 5 times powers of ten, as many as have room.
  std::vector<double> ticks() const {
    std::vector<double> all;
    const double low = unmap(low_), high = unmap(high_);
    if (logarithmic_) {
      const bool decadesOnly = high / low > 300;
      for (double p = std::pow(10, std::floor(std::log10(low))); p <= high; p *= 10)
        for (const double m : {1.0, 2.0, 5.0})
          if (p * m >= low * 0.999 && p * m <= high * 1.001 && (m == 1 || !decadesOnly)) all.push_back(p * m);
    } else {
      const double raw = (high - low) / 8, p = std::pow(10, std::floor(std::log10(raw)));
      const double step = raw > 5 * p ? 10 * p : raw > 2 * p ? 5 * p : raw > p ? 2 * p : p;
      for (double v = std::ceil(low / step) * step; v <= high * 1.001; v += step) all.push_back(v);
    }
    return all;
  }

 private:
  double map(double v) const { return logarithmic_ ? std::log(v) : v; }
  double unmap(double v) const { return logarithmic_ ? std::exp(v) : v; }

  bool logarithmic_;
  double low_, high_, from_, to_;
};

}  // namespace

std::string curves(const std::string& title, const Axis& x, const Axis& y, const std::vector<Curve>& all) {
  constexpr int kWidth = 760, kHeight = 420, kLeft = 64, kRight = 130, kTop = 40, kBottom = 52;
  double xLow = 1e300, xHigh = 0, yLow = 1e300, yHigh = 0;
  for (const Curve& c : all) {
    for (const double v : c.x) xLow = std::min(xLow, v), xHigh = std::max(xHigh, v);
    for (const double v : c.y) yLow = std::min(yLow, v), yHigh = std::max(yHigh, v);
  }
  if (!y.logarithmic) yLow = 0;
  const Scale sx(x, xLow, xHigh, kLeft, kWidth - kRight), sy(y, yLow, yHigh * 1.05, kHeight - kBottom, kTop);
  std::string svg = opening(title, kWidth, kHeight);
  for (const double v : sx.ticks()) {
    svg += line(sx(v), kTop, sx(v), kHeight - kBottom, kFaint);
    svg += words(sx(v), kHeight - kBottom + 18, "middle", number(v));
  }
  for (const double v : sy.ticks()) {
    svg += line(kLeft, sy(v), kWidth - kRight, sy(v), kFaint);
    svg += words(kLeft - 6, sy(v) + 4, "end", number(v));
  }
  svg += words((kLeft + kWidth - kRight) / 2.0, kHeight - 12, "middle", x.label);
  svg += words(16, kTop - 6, "start", y.label, "#777");
  for (std::size_t i = 0; i < all.size(); ++i) {
    const char* colour = kColours[i % kColours.size()];
    svg += text(R"(<polyline fill="none" stroke="%s" stroke-width="1.8" points=")", colour);
    for (std::size_t k = 0; k < all[i].x.size(); ++k) svg += text("%.1f,%.1f ", sx(all[i].x[k]), sy(all[i].y[k]));
    svg += "\"/>\n";
    const double row = kTop + 12 + 18.0 * static_cast<double>(i);
    svg += line(kWidth - kRight + 10, row - 4, kWidth - kRight + 30, row - 4, colour);
    svg += words(kWidth - kRight + 36, row, "start", all[i].name, colour);
  }
  return svg + "</svg>\n";
}

std::string ratios(const std::string& title, const std::vector<Ratios>& all) {
  constexpr int kWidth = 760, kLeft = 250, kRight = 40, kTop = 62, kLine = 17, kBottom = 30;
  const int height = kTop + kLine * static_cast<int>(all.size()) + kBottom, floor = height - kBottom;
  const Scale sx({"", true}, 0.04, 8, kLeft, kWidth - kRight);
  const auto place = [&](double v) { return sx(std::clamp(v, 0.04, 8.0)); };
  std::string svg = opening(title, kWidth, height);
  for (const double v : sx.ticks()) {
    svg += line(sx(v), kTop - 8, sx(v), floor, v == 1 ? "#888" : kFaint);
    svg += words(sx(v), floor + 16, "middle", number(v));
  }
  svg += dot(kLeft, kTop - 22, kColours[0], kColours[0]) + words(kLeft + 8, kTop - 18, "start", "to the best peer");
  svg += dot(kLeft + 140, kTop - 22, "white", kColours[1]) + words(kLeft + 148, kTop - 18, "start", "to the limit");
  for (std::size_t i = 0; i < all.size(); ++i) {
    const double y = kTop + kLine * (static_cast<double>(i) + 0.5);
    svg += words(kLeft - 10, y + 4, "end", all[i].name);
    if (all[i].toLimit > 0) svg += dot(place(all[i].toLimit), y, "white", kColours[1]);
    if (all[i].toPeer > 0) svg += dot(place(all[i].toPeer), y, kColours[0], kColours[0]);
  }
  return svg + "</svg>\n";
}

}  // namespace report
