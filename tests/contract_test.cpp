// SPDX-License-Identifier: MIT
// What every export promises, over all of them: null pointers before lengths, nothing written on an error.
#include <climits>

#include "support/call.hpp"

namespace ovks::test {
namespace {

// The call without one of its pointers.
Status without(Call& call, std::size_t k) {
  const Argument kept = call.arguments[k];
  call.arguments[k].set(nullptr);
  const Status status = call.run();
  call.arguments[k] = kept;
  return status;
}

// Lengths come first in few families. Objects' tags come after both, and delay lines may be missing.
TEST(Contract, NullPointersComeBeforeLengths) {
  for (const Prototype& p : prototypes()) {
    if (p.startsWith("ovksFFT")) continue;
    SCOPED_TRACE(p.name);
    const bool isLengthFirst =
        p.startsWith("ovksFIRSRGet") || p.startsWith("ovksFIRSRInit") || p.startsWith("ovksWinBlackmanOpt");
    Random random(p.name);
    Call call(p, Shape(), random);
    call.place();
    if (p.startsWith("ovksRand") && p.has("len")) {
      call.damageTag(p.find("pState"), 39);  // a tag, but only one of theirs
      EXPECT_EQ(call.run(), StatusContextMismatch);
    }
    for (const int len : {Shape().len, 0, -1, INT_MIN}) {
      bool isBad = false;
      for (std::size_t k = 0; k < p.parameters.size() && len < 1; ++k) {
        isBad |= p.parameters[k].isLength();
        if (p.parameters[k].isLength()) call.arguments[k].set(len);
      }
      for (std::size_t k = 0; k < p.parameters.size(); ++k) {
        if (!p.parameters[k].isPointer || p.parameters[k].startsWith("pDly")) continue;
        EXPECT_EQ(without(call, k), isBad && isLengthFirst ? StatusBadSize : StatusNullPtr)
            << p.parameters[k].name << ' ' << len;
      }
      EXPECT_TRUE(!isBad || call.run() == StatusBadSize) << len;
    }
    EXPECT_EQ(call.changed(true), "");
  }
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
