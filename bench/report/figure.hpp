// SPDX-License-Identifier: MIT
// Drawings of measurements: curves on logarithmic axes, and dots that tell ratios.
#pragma once

#include <string>
#include <vector>

namespace report {

struct Curve {
  std::string name;
  std::vector<double> x, y;
};
struct Axis {
  std::string label;
  bool logarithmic = true;
};
std::string curves(const std::string& title, const Axis& x, const Axis& y, const std::vector<Curve>& all);

// One line of dots: a measurement's ratio to the best peer, and to the limit, 0 where there is none.
struct Ratios {
  std::string name;
  double toPeer, toLimit;
};
std::string ratios(const std::string& title, const std::vector<Ratios>& all);

}  // namespace report
