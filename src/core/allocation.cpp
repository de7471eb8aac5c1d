// SPDX-License-Identifier: MIT
#include "core/export.hpp"
#include "ovkcore.h"
#include "ovks/core.h"

namespace {

template <int elementBytes>
void* allocate(int len) {
  const int64_t bytes = int64_t{len} * elementBytes;
  return bytes > 0 && bytes <= INT32_MAX ? ovkMalloc(bytes) : nullptr;
}

void release(void* ptr) { ovkFree(ptr); }

}  // namespace

OVKS_EXPORT(ovksMalloc_8u, reinterpret_cast<decltype(&::ovksMalloc_8u)>(allocate<1>));
OVKS_EXPORT(ovksMalloc_8s, reinterpret_cast<decltype(&::ovksMalloc_8s)>(allocate<1>));
OVKS_EXPORT(ovksMalloc_16u, reinterpret_cast<decltype(&::ovksMalloc_16u)>(allocate<2>));
OVKS_EXPORT(ovksMalloc_16s, reinterpret_cast<decltype(&::ovksMalloc_16s)>(allocate<2>));
OVKS_EXPORT(ovksMalloc_8sc, reinterpret_cast<decltype(&::ovksMalloc_8sc)>(allocate<2>));
OVKS_EXPORT(ovksMalloc_32u, reinterpret_cast<decltype(&::ovksMalloc_32u)>(allocate<4>));
OVKS_EXPORT(ovksMalloc_32s, reinterpret_cast<decltype(&::ovksMalloc_32s)>(allocate<4>));
OVKS_EXPORT(ovksMalloc_32f, reinterpret_cast<decltype(&::ovksMalloc_32f)>(allocate<4>));
OVKS_EXPORT(ovksMalloc_16sc, reinterpret_cast<decltype(&::ovksMalloc_16sc)>(allocate<4>));
OVKS_EXPORT(ovksMalloc_64f, reinterpret_cast<decltype(&::ovksMalloc_64f)>(allocate<8>));
OVKS_EXPORT(ovksMalloc_64s, reinterpret_cast<decltype(&::ovksMalloc_64s)>(allocate<8>));
OVKS_EXPORT(ovksMalloc_32fc, reinterpret_cast<decltype(&::ovksMalloc_32fc)>(allocate<8>));
OVKS_EXPORT(ovksMalloc_32sc, reinterpret_cast<decltype(&::ovksMalloc_32sc)>(allocate<8>));
OVKS_EXPORT(ovksMalloc_64fc, reinterpret_cast<decltype(&::ovksMalloc_64fc)>(allocate<16>));
OVKS_EXPORT(ovksMalloc_64sc, reinterpret_cast<decltype(&::ovksMalloc_64sc)>(allocate<16>));
OVKS_EXPORT(ovksFree, release);
