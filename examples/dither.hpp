// SPDX-License-Identifier: MIT
// Noise that keeps rounding apart from the signal: what is lost sounds like a faint hiss instead of a rasp.
#pragma once

#include <ovks.hpp>

namespace demo {

// Sums of two numbers within half a rounding step, small ones being the most frequent. Always the same.
ovks::Vector<float> dither(std::size_t length);

}  // namespace demo
