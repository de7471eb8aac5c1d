// SPDX-License-Identifier: MIT
/// @file
/// The library in C++20: its functions by one name for all element types, on spans, with errors as exceptions; and
/// objects that own their memory. Everything is inline: a call costs what the C call costs, and the comparison of
/// lengths.
#ifndef OVKS_HPP
#define OVKS_HPP

#include "ovks.h"
#include "ovks/cpp/error.hpp"
#include "ovks/cpp/fft.hpp"
#include "ovks/cpp/filter.hpp"
#include "ovks/cpp/memory.hpp"
#include "ovks/cpp/random.hpp"
#include "ovks/cpp/sort.hpp"
#include "ovks/cpp/spectrum.hpp"
#include "ovks/cpp/stats.hpp"
#include "ovks/cpp/vector.hpp"
#include "ovks/cpp/window.hpp"

/// The C++ face of the library; its rules are in docs/cpp.md.
namespace ovks {

/// What build of the library this is.
inline const LibraryVersion& version() { return *ovksGetLibVersion(); }

}  // namespace ovks

#endif
