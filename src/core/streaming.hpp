// SPDX-License-Identifier: MIT
// When a result is better written past the caches.
#pragma once

#include <cstddef>

#include "ovkcore.h"

namespace ovks {

// Up to here the caches serve best, and nobody asks for their size.
inline constexpr std::ptrdiff_t kStreamingAbove = 4 * 1024 * 1024;

// Whether so many bytes are at least half of the largest cache. A processor that does not tell its cache's size gets
// ordinary stores.
inline bool exceedsCache(std::ptrdiff_t bytes) {
  int32_t cache;
  return ovkGetMaxCacheSizeB(&cache) == 0 && bytes >= cache / 2;
}

}  // namespace ovks
