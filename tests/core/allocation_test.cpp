// SPDX-License-Identifier: MIT
#include "ovkcore.h"
#include "support/family.hpp"

namespace ovks::test {
namespace {

bool isAligned(const void* p) { return reinterpret_cast<std::uintptr_t>(p) % 64 == 0; }

// Every element of an allocation is there, and its length is limited to 2^31 - 1 bytes.
template <class T>
void checkMalloc(T* (*allocate)(int)) {
  for (const int len : {1, 3, 1000}) {
    T* p = allocate(len);
    ASSERT_NE(p, nullptr);
    EXPECT_TRUE(isAligned(p));
    std::memset(static_cast<void*>(p), 0x5a, static_cast<std::size_t>(len) * sizeof(T));
    ovksFree(p);
  }
  for (const int len : {0, -1, INT32_MIN}) EXPECT_EQ(allocate(len), nullptr);
  if constexpr (sizeof(T) > 1) {
    constexpr auto kTooLong = static_cast<int>((std::int64_t{1} << 31) / std::int64_t{sizeof(T)});
    EXPECT_EQ(allocate(kTooLong), nullptr);
    EXPECT_EQ(allocate(INT32_MAX), nullptr);
    T* longest = allocate(kTooLong - 1);  // never touched, so it costs address space only
    EXPECT_NE(longest, nullptr);
    ovksFree(longest);
  }
}

TEST(Malloc, EveryType) {
  forFamilies<"ovksMalloc_">([](auto allocate) { checkMalloc(allocate); });
  ovksFree(nullptr);
}

TEST(LibraryVersion, Record) {
  const LibraryVersion& v = *ovksGetLibVersion();
  EXPECT_EQ(v.major, 9);
  EXPECT_EQ(v.minor, 0);
  EXPECT_EQ(v.majorBuild, 2);
  EXPECT_EQ(v.build, 49912);
  const bool avx512 = std::memcmp(v.targetCpu, "n0\0", 4) == 0;
  EXPECT_TRUE(avx512 || std::memcmp(v.targetCpu, "a2\0", 4) == 0);
  EXPECT_STREQ(v.Name, avx512 ? "ovkSP AVX-512F/CD/ER/PF (n0)" : "ovkSP AVX2/FMA (a2)");
  EXPECT_STREQ(v.Version, "9.0.2 (r49912)");
  EXPECT_STREQ(v.BuildDate, "Dec 28 2015");
}

TEST(Companion, Allocates) {
  for (const std::int64_t size : {1, 64, 65, 1 << 20}) {
    void* p = ovkMalloc(size);
    ASSERT_TRUE(p && isAligned(p));
    std::memset(p, 0, static_cast<std::size_t>(size));
    ovkFree(p);
  }
  for (const std::int64_t size : {std::int64_t{0}, std::int64_t{-1}, INT64_MIN}) EXPECT_EQ(ovkMalloc(size), nullptr);
#ifndef __SANITIZE_ADDRESS__  // whose allocator takes such sizes for a mistake
  EXPECT_EQ(ovkMalloc(INT64_MAX), nullptr);
  EXPECT_EQ(ovkMalloc(std::int64_t{1} << 60), nullptr);
#endif
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
  const auto expectFeature = [](auto feature, int supported) { EXPECT_EQ(ownGetFeature(feature), supported != 0); };
  expectFeature(OvkFeatureFMA, __builtin_cpu_supports("fma"));
  expectFeature(OvkFeatureAVX2, __builtin_cpu_supports("avx2"));
  expectFeature(OvkFeatureAVX512F, __builtin_cpu_supports("avx512f"));
  expectFeature(OvkFeatureAVX512CD, __builtin_cpu_supports("avx512cd"));
  expectFeature(OvkFeatureAVX512BW, __builtin_cpu_supports("avx512bw"));
  expectFeature(OvkFeatureAVX512DQ, __builtin_cpu_supports("avx512dq"));
  expectFeature(OvkFeatureAVX512VL, __builtin_cpu_supports("avx512vl"));
}

TEST(Companion, KnowsTheCache) {
  std::int32_t size = -7;
  EXPECT_EQ(ovkGetMaxCacheSizeB(nullptr), StatusNullPtr);
  const std::int32_t status = ovkGetMaxCacheSizeB(&size);
  EXPECT_TRUE(status == 0 ? size >= 1 << 14 : size == -7);
}

}  // namespace
}  // namespace ovks::test
