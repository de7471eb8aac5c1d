// SPDX-License-Identifier: MIT
// What every export promises, over all of them: null pointers before lengths, nothing written on an error.
#include <climits>

#include "support/call.hpp"

namespace ovks::test {
namespace {

// Beginnings of names of exports that have no length, may do without a pointer, or look at something else first.
bool isOtherwise(const Prototype& p) {
  constexpr const char* kNames[] = {
      "ovksFFT",           "ovksFIRSRGetSize",       "ovksFIRSRInit",       "ovksRandGaussGetSize",
      "ovksRandGaussInit", "ovksRandUniformGetSize", "ovksRandUniformInit", "ovksSortRadixGetBufferSize",
      "ovksWinBlackmanOpt"};
  return std::any_of(std::begin(kNames), std::end(kNames), [&](const char* name) { return p.startsWith(name); });
}

// The call without one of its pointers.
Status without(Call& call, std::size_t k) {
  const Argument kept = call.arguments[k];
  call.arguments[k].set(nullptr);
  const Status status = call.run();
  call.arguments[k] = kept;
  return status;
}

TEST(Contract, NullPointersComeBeforeLengths) {
  int checked = 0;
  for (const Prototype& p : prototypes()) {
    if (isOtherwise(p)) continue;
    SCOPED_TRACE(p.name);
    Random random(p.name);
    Call call(p, Shape(), random);
    call.place();
    for (const int len : {1, 0, -1, INT_MIN}) {
      for (std::size_t k = 0; k < p.parameters.size(); ++k) {
        if (p.parameters[k].isLength()) call.arguments[k].set(len);
      }
      for (std::size_t k = 0; k < p.parameters.size(); ++k) {
        if (!p.parameters[k].isPointer || p.parameters[k].startsWith("pDly")) continue;
        EXPECT_EQ(without(call, k), StatusNullPtr) << p.parameters[k].name << ' ' << len;
      }
      EXPECT_TRUE(len == 1 || call.run() == StatusBadSize) << len;
    }
    EXPECT_EQ(call.changed(true), "");
    ++checked;
  }
  EXPECT_GE(checked, 287);
}

TEST(Contract, TransformsLookAtTheirObjectFirst) {
  for (const Prototype& p : prototypes()) {
    const std::size_t spec = p.find("pSpec"), buffer = p.find("pBuffer");
    if (!p.startsWith("ovksFFT") || buffer == p.parameters.size()) continue;
    SCOPED_TRACE(p.name);
    Random random(p.name);
    Call call(p, Shape(), random);
    call.place();
    EXPECT_EQ(without(call, spec), StatusNullPtr);
    for (std::size_t k = 0; k <= buffer; ++k) EXPECT_EQ(without(call, k), StatusNullPtr) << k;
    // Other kinds of specifications, and what Init has not accepted.
    const auto tag = loadElement<std::int32_t>(call.arguments[spec].as<void*>());
    for (std::int32_t other = 0; other < 10; ++other) {
      if (other == tag) continue;
      call.damageTag(spec, other);
      for (std::size_t k = 0; k <= buffer; ++k)
        EXPECT_EQ(without(call, k), k == spec ? StatusNullPtr : StatusContextMismatch) << k;
    }
    EXPECT_EQ(call.changed(true), "");
  }
}

}  // namespace
}  // namespace ovks::test
