// SPDX-License-Identifier: MIT
#include "core/export.hpp"
#include "ovks/core.h"

namespace {

#ifdef __AVX512F__
constexpr LibraryVersion kVersion = {
    9, 0, 2, 49912, "n0", "ovkSP AVX-512F/CD/ER/PF (n0)", "9.0.2 (r49912)", "Dec 28 2015"};
#else
constexpr LibraryVersion kVersion = {9, 0, 2, 49912, "a2", "ovkSP AVX2/FMA (a2)", "9.0.2 (r49912)", "Dec 28 2015"};
#endif

const LibraryVersion* version() { return &kVersion; }

}  // namespace

OVKS_EXPORT(ovksGetLibVersion, version);
