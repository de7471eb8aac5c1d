// SPDX-License-Identifier: MIT
// Filters of 1..300 taps by each algorithm.
#pragma once

#include <string>

namespace bench {

// Nanoseconds a sample into a table; prints what the automatic choice costs at most above the better algorithm. The
// program's exit code.
int sweepTaps(const std::string& path);

}  // namespace bench
