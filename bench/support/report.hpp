// SPDX-License-Identifier: MIT
// Rows of a benchmark: one operation at one size, by several implementations that run interleaved in one process. The
// report gives the medians per element, the ratio to the best peer and to the machine's limit.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace bench {

// Registers one implementation of a row. by is "ovks", "limit", or the peer's name; elements what one call works on.
void add(const std::string& row, std::int64_t elements, const std::string& by, std::function<void()> call);

// Runs what was registered, pinned to one processor, prints the table and writes it as CSV where --csv=FILE says.
int run(int argc, char** argv);

}  // namespace bench
