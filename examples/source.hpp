// SPDX-License-Identifier: MIT
// Where a recording comes from when none is named.
#pragma once

#include <string>

#include "wav.hpp"

namespace demo {

// Path of the voice recording among the system's sound test files; empty when they are not installed.
std::string packagedRecording();

// Two seconds of a gliding tone with a pulse, in stereo.
wav::Recording generatedRecording();

}  // namespace demo
