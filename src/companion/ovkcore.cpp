// SPDX-License-Identifier: MIT
// The companion module: compiled for the baseline processor, since it is what asks for more.
#include "ovkcore.h"

#include <cpuid.h>
#include <stdlib.h>

namespace {

constexpr int64_t kAlignment = 64;

// Large blocks begin in different lines of a memory page, neighbours in time 1280 bytes apart: elements of the same
// number in arrays of whole pages would compete for the same sets of the caches (Bonwick, The slab allocator, 1994).
constexpr int64_t kLarge = 65536, kPage = 4096;
uint64_t nextLargeOffset() {
  static uint64_t blocks = 0;
  return __atomic_fetch_add(&blocks, 1, __ATOMIC_RELAXED) * 1280 % kPage;
}

// In front of each of our blocks stands the address of the system's block.
void*& systemsBlock(void* ours) { return static_cast<void**>(ours)[-1]; }

struct Registers {
  uint32_t eax, ebx, ecx, edx;
};

// All zeros where the processor has no such leaf.
Registers cpuid(uint32_t leaf, uint32_t subleaf = 0) {
  Registers r{};
  __get_cpuid_count(leaf, subleaf, &r.eax, &r.ebx, &r.ecx, &r.edx);
  return r;
}

// The register state that the operating system saves (XCR0); 0 when it does not use XSAVE.
uint32_t savedState() {
  constexpr uint32_t kOsXsave = 1u << 27;
  if (!(cpuid(1).ecx & kOsXsave)) return 0;
  uint32_t low, high;
  asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
  return low;
}

// Largest cache among the deterministic cache parameters of one leaf, which end with type 0.
int64_t largestCache(uint32_t leaf) {
  int64_t largest = 0;
  for (uint32_t level = 0; level < 16; ++level) {
    const Registers r = cpuid(leaf, level);
    if ((r.eax & 0x1f) == 0) break;
    const int64_t ways = (r.ebx >> 22) + 1, partitions = ((r.ebx >> 12) & 0x3ff) + 1, line = (r.ebx & 0xfff) + 1;
    const int64_t size = ways * partitions * line * (int64_t{r.ecx} + 1);
    if (size > largest) largest = size;
  }
  return largest;
}

// 0 when unknown. CPUID is slow, above all in virtual machines.
int32_t maxCacheSize() {
  constexpr uint32_t kIntelLeaf = 4, kAmdLeaf = 0x8000001d;
  static int32_t remembered = -1;
  if (const int32_t size = __atomic_load_n(&remembered, __ATOMIC_RELAXED); size >= 0) return size;
  int64_t size = largestCache(kIntelLeaf);
  if (size == 0) size = largestCache(kAmdLeaf);
  if (size > INT32_MAX) size = INT32_MAX;
  __atomic_store_n(&remembered, static_cast<int32_t>(size), __ATOMIC_RELAXED);
  return static_cast<int32_t>(size);
}

uint64_t features() {
  constexpr uint32_t kAvxState = 0x06, kAvx512State = 0xe6;
  const uint32_t state = savedState();
  const Registers basic = cpuid(1), extended = cpuid(7);
  uint64_t found = 0;
  const auto add = [&found](bool present, uint64_t feature) { found |= present ? feature : 0; };
  if ((state & kAvxState) == kAvxState) {
    add(basic.ecx >> 29 & 1, OvkFeatureF16C);
    add(basic.ecx >> 12 & 1, OvkFeatureFMA);
    add(extended.ebx >> 5 & 1, OvkFeatureAVX2);
  }
  if ((state & kAvx512State) == kAvx512State) {
    add(extended.ebx >> 16 & 1, OvkFeatureAVX512F);
    add(extended.ebx >> 17 & 1, OvkFeatureAVX512DQ);
    add(extended.ebx >> 28 & 1, OvkFeatureAVX512CD);
    add(extended.ebx >> 30 & 1, OvkFeatureAVX512BW);
    add(extended.ebx >> 31 & 1, OvkFeatureAVX512VL);
  }
  return found;
}

}  // namespace

extern "C" {

void* ovkMalloc(int64_t size) {
  if (size <= 0) return nullptr;
  const bool large = size >= kLarge;
  const uint64_t unit = large ? kPage : kAlignment, offset = large ? nextLargeOffset() : 0;
  void* const block = malloc(static_cast<uint64_t>(size) + unit + sizeof block);
  if (!block) return nullptr;
  char* const behindAddress = static_cast<char*>(block) + sizeof block;
  void* const ours = behindAddress + (offset - reinterpret_cast<uintptr_t>(behindAddress)) % unit;
  systemsBlock(ours) = block;
  return ours;
}

void ovkFree(void* ptr) {
  if (ptr) free(systemsBlock(ptr));
}

int32_t ovkGetMaxCacheSizeB(int32_t* pSize) {
  constexpr int32_t kNullPtr = -8, kUnknown = -1;
  if (!pSize) return kNullPtr;
  const int32_t size = maxCacheSize();
  if (size == 0) return kUnknown;
  *pSize = size;
  return 0;
}

void* ovkAlignPtr(void* ptr, int32_t alignment) {
  const auto address = reinterpret_cast<uintptr_t>(ptr);
  return static_cast<char*>(ptr) + (-address & (static_cast<uintptr_t>(alignment) - 1));
}

int32_t ownGetFeature(uint64_t mask) { return (features() & mask) == mask; }

}  // extern "C"
