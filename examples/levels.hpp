// SPDX-License-Identifier: MIT
// How loud a recording is.
#pragma once

#include "wav.hpp"

namespace demo {

// In decibels of full scale, 32768; silence is minus infinity.
struct Levels {
  double peak, rms, offset;
};

Levels levels(const wav::Recording& recording);

}  // namespace demo
