// SPDX-License-Identifier: MIT
// Times of single calls.
#pragma once

#include <algorithm>
#include <chrono>

namespace bench {

using Nanoseconds = std::chrono::duration<double, std::nano>;

template <class F>
double timeOnce(F call, int calls) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < calls; ++i) call();
  return Nanoseconds(std::chrono::steady_clock::now() - start).count() / calls;
}

// The fastest of few, for a choice among peers' settings.
template <class F>
double quickest(F call) {
  double best = timeOnce(call, 1);
  for (int i = 0; i < 9; ++i) best = std::min(best, timeOnce(call, 1));
  return best;
}

}  // namespace bench
