// SPDX-License-Identifier: MIT
#include "ovkcore.h"
#include "support/family.hpp"

namespace {
int questions = 0;
}

// Stands in for the companion's: a cache small enough for tests to exceed.
extern "C" int32_t ovkGetMaxCacheSizeB(int32_t* pSize) {
  ++questions;
  *pSize = 8 << 20;
  return 0;
}

namespace ovks::test {
namespace {

constexpr auto kIdentity = [](auto x) { return x; };

TEST(Copy, Vectors) { checkFamilies<"ovksCopy_", "ovksSet_", "ovksConvert_16s32f">(kIdentity); }

TEST(Zero, Vectors) {
  forFamilies<"ovksZero_">([]<class T>(Status (*zero)(T*, int)) {
    const auto nothing = [] {
      if constexpr (ComplexElement<T>) return Complex<Real<T>>{};
      else return T{};
    };
    checkExports(nothing, zero);
  });
}

constexpr auto kRounded = [](float x) { return Exact(x); };

TEST(Convert, FloatsToIntegers) { checkFamilies<"ovksConvert_32f16s">(kRounded); }

TEST(Convert, AnyRoundMode) {
  Export e = describe(kRounded, ovksConvert_32f16s_Sfs);
  e.prepare = [](Call& call, Random& random) { call.setConstant("rndMode", random.value<int>()); };
  check(e);
}

// Vectors that exceed the cache are written past it, whatever their alignment.
TEST(Streaming, Vectors) {
#ifdef _WIN32
  GTEST_SKIP() << "a DLL calls the companion that it was linked with: none can stand in for it";
#endif
  constexpr int kAbove = 4 << 20;
  std::vector<std::uint8_t> bytes(kAbove);
  questions = 0;
  EXPECT_EQ(ovksZero_8u(bytes.data(), kAbove), StatusOk);
  EXPECT_EQ(questions, 0) << "asked for the cache's size too early";
  const auto checkLong = [](auto reference, auto... functions) {
    for (const Export& e : {describe(reference, functions)...}) {
      questions = 0;
      const std::size_t size = e.prototype->parameters[e.prototype->vectors(false, true)[0]].element->size;
      const int n = kAbove / static_cast<int>(size);
      check(e, std::vector{n + 1, n + 77});  // the first one begins one element before a vector's boundary
      EXPECT_GT(questions, 0) << e.prototype->name;
    }
  };
  checkLong(kIdentity, ovksCopy_32s, ovksCopy_64fc, ovksSet_16s, ovksConvert_16s32f);
  checkLong([](auto a, auto b) { return a + b; }, ovksAdd_16s_Sfs, ovksAdd_64f);
}

}  // namespace
}  // namespace ovks::test
