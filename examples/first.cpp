// SPDX-License-Identifier: MIT
#include <array>
#include <cstdio>
#include <ovks.hpp>

int main() {
  const std::array<int16_t, 4> a = {30000, 3, 5, -3}, b = {30000};
  std::array<int16_t, 4> mean;
  ovks::addScaled(a, b, mean, 1);  // (a + b) / 2^1, ties to even
  std::printf("%d %d %d %d, %g\n", mean[0], mean[1], mean[2], mean[3], ovks::normInf(mean));  // 30000 2 2 -2, 30000
}
