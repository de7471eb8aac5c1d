// SPDX-License-Identifier: MIT
// What the library's calls return, as exceptions.
#pragma once

#include <ovks.h>

#include <stdexcept>
#include <string>

namespace demo {

inline void require(Status status, const char* call) {
  if (status != StatusOk) throw std::runtime_error(std::string(call) + " returned " + std::to_string(status));
}

}  // namespace demo
