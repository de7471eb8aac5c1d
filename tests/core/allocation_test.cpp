// SPDX-License-Identifier: MIT
#include "ovkcore.h"
#include "support/family.hpp"

namespace ovks::test {
namespace {

// Every byte of an allocation is there, at an aligned address.
template <class T>
void checkAllocation(T* p, std::size_t bytes, auto release) {
  ASSERT_TRUE(p && reinterpret_cast<std::uintptr_t>(p) % 64 == 0);
  std::memset(static_cast<void*>(p), 0x5a, bytes);
  release(p);
}

// Lengths are limited to 2^31 - 1 bytes.
template <class T>
void checkMalloc(T* (*allocate)(int)) {
  for (const int len : {1, 3, 1000})
    checkAllocation(allocate(len), static_cast<std::size_t>(len) * sizeof(T), ovksFree);
  for (const int len : {0, -1, INT32_MIN}) EXPECT_EQ(allocate(len), nullptr);
  if constexpr (sizeof(T) > 1) {
    constexpr auto kTooLong = static_cast<int>((std::int64_t{1} << 31) / std::int64_t{sizeof(T)});
    for (const int len : {kTooLong, INT32_MAX}) EXPECT_EQ(allocate(len), nullptr);
    checkAllocation(allocate(kTooLong - 1), 1, ovksFree);  // never touched, so it costs address space only
  }
}

TEST(Malloc, EveryType) {
  forFamilies<"ovksMalloc_">([](auto allocate) { checkMalloc(allocate); });
  ovksFree(nullptr);
}

TEST(LibraryVersion, Record) {
  const LibraryVersion& v = *ovksGetLibVersion();
  EXPECT_EQ((std::array{v.major, v.minor, v.majorBuild, v.build}), (std::array{9, 0, 2, 49912}));
  const bool avx512 = std::memcmp(v.targetCpu, "n0\0", 4) == 0;
  EXPECT_TRUE(avx512 || std::memcmp(v.targetCpu, "a2\0", 4) == 0);
  EXPECT_STREQ(v.Name, avx512 ? "ovkSP AVX-512F/CD/ER/PF (n0)" : "ovkSP AVX2/FMA (a2)");
  EXPECT_STREQ(v.Version, "9.0.2 (r49912)");
  EXPECT_STREQ(v.BuildDate, "Dec 28 2015");
}

TEST(Companion, Allocates) {
  for (const std::int64_t size : {1, 64, 65, 1 << 20})
    checkAllocation(ovkMalloc(size), static_cast<std::size_t>(size), ovkFree);
  for (const std::int64_t size : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) EXPECT_EQ(ovkMalloc(size), nullptr);
#ifndef __SANITIZE_ADDRESS__  // whose allocator takes such sizes for a mistake
  for (const std::int64_t size : {INT64_MAX, std::int64_t{1} << 60}) EXPECT_EQ(ovkMalloc(size), nullptr);
#endif
}

// Large blocks that are in use together differ in the cache lines of a page where they begin.
TEST(Companion, SpreadsLargeBlocks) {
  constexpr int kBlocks = 16;
  std::set<std::uintptr_t> lines;
  std::vector<void*> blocks;
  for (int i = 0; i < kBlocks; ++i) {
    blocks.push_back(ovkMalloc(1 << 20));
    lines.insert(reinterpret_cast<std::uintptr_t>(blocks.back()) % 4096 / 64);
  }
  std::for_each(blocks.begin(), blocks.end(), ovkFree);
  EXPECT_EQ(lines.size(), static_cast<std::size_t>(kBlocks));
}

TEST(Companion, Aligns) {
  alignas(128) static char memory[256];
  for (const std::int32_t alignment : {1, 2, 32, 128}) {
    for (std::int32_t offset = 0; offset <= 128; ++offset) {
      const std::int32_t up = (offset + alignment - 1) / alignment * alignment;
      EXPECT_EQ(ovkAlignPtr(memory + offset, alignment), memory + up);
    }
  }
}

TEST(Companion, KnowsTheProcessor) {
  EXPECT_EQ(ownGetFeature(0), 1);
  EXPECT_EQ(ownGetFeature(std::uint64_t{1} << 63), 0);
  EXPECT_GE(ownGetFeature(OvkFeatureF16C), ownGetFeature(OvkFeatureAVX2));
  const std::pair<std::uint64_t, int> features[] = {{OvkFeatureFMA, __builtin_cpu_supports("fma")},
                                                    {OvkFeatureAVX2, __builtin_cpu_supports("avx2")},
                                                    {OvkFeatureAVX512F, __builtin_cpu_supports("avx512f")},
                                                    {OvkFeatureAVX512CD, __builtin_cpu_supports("avx512cd")},
                                                    {OvkFeatureAVX512BW, __builtin_cpu_supports("avx512bw")},
                                                    {OvkFeatureAVX512DQ, __builtin_cpu_supports("avx512dq")},
                                                    {OvkFeatureAVX512VL, __builtin_cpu_supports("avx512vl")}};
  for (const auto& [feature, supported] : features) EXPECT_EQ(ownGetFeature(feature), supported != 0) << feature;
}

TEST(Companion, KnowsTheCache) {
  std::int32_t size = -7;
  EXPECT_EQ(ovkGetMaxCacheSizeB(nullptr), StatusNullPtr);
  const std::int32_t status = ovkGetMaxCacheSizeB(&size);
  EXPECT_TRUE(status == 0 ? size >= 1 << 14 : size == -7);
}

}  // namespace
}  // namespace ovks::test
