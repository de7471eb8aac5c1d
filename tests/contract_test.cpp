// SPDX-License-Identifier: MIT
// What every export refuses, and what it looks at first: pointers, then lengths, then all else; nothing is written.
#include <climits>

#include "support/call.hpp"

namespace ovks::test {
namespace {

// What an export returns for an argument, and when it looks at that; StatusOk for one that cannot be wrong.
struct Fault {
  Status status;
  int rank;
};

bool isLengthFirst(const Prototype& p) {
  return p.startsWith("ovksFIRSRGet") || p.startsWith("ovksFIRSRInit") || p.startsWith("ovksWinBlackmanOpt");
}

// Makes argument k wrong in one of several ways.
Fault spoil(Call& call, std::size_t k, int way) {
  const Prototype& p = call.prototype();
  const Parameter& q = p.parameters[k];
  const bool isTransform = p.startsWith("ovksFFT") && q.name == "pSpec";
  if (way > 0 && (isTransform || (q.name == "pState" && p.has("len")))) {
    const int tag = loadElement<std::int32_t>(call.arguments[k].as<void*>());
    call.damageTag(k, tag == way - 1 ? 0 : way - 1);
    return {StatusContextMismatch, isTransform ? 1 : 5};
  }
  if (q.isPointer && !q.startsWith("pDly")) {
    call.arguments[k].set(nullptr);
    return {StatusNullPtr, isTransform ? 0 : 3};
  }
  const bool isMode = q.name == "algType" || (q.name == "rndMode" && p.startsWith("ovksDiv"));
  constexpr int kLengths[] = {0, -1, INT_MIN}, kModes[] = {3, 255, INT_MAX};
  if (q.isLength()) call.arguments[k].set(kLengths[way % 3]);
  if (isMode) call.arguments[k].set(kModes[way % 3]);
  if (q.isLength()) return {StatusBadSize, isLengthFirst(p) ? 2 : 4};
  return {!isMode ? StatusOk : q.name == "algType" ? StatusBadAlgType : StatusBadRoundMode, 5};
}

// Two arguments at a time, or the same one twice.
void check(const Prototype& p, std::size_t first, std::size_t second, int way, Random& random) {
  Shape shape;
  if (!isLengthFirst(p)) shape.len = 1;  // which some sorts have a short way for
  Call call(p, shape, random);
  call.place();
  const Fault a = spoil(call, first, way), b = first == second ? a : spoil(call, second, way);
  const Fault& seen = b.status == StatusOk || (a.status != StatusOk && a.rank <= b.rank) ? a : b;
  if (seen.status == StatusOk) return;
  EXPECT_EQ(call.run(), seen.status) << p.parameters[first].name << ' ' << p.parameters[second].name << ' ' << way;
  EXPECT_EQ(call.changed(true), "");
}

TEST(Contract, WrongArgumentsAreRefusedInTheirOrder) {
  for (const Prototype& p : prototypes()) {
    if (p.startsWith("ovksFFTGet") || p.startsWith("ovksFFTInit")) continue;  // look at them by turns
    SCOPED_TRACE(p.name);
    Random random(p.name);
    for (int way = 0; way < (p.has("pSpec") || p.has("pState") ? 11 : 3); ++way) {
      for (std::size_t k = 0; k < p.parameters.size(); ++k) {
        for (std::size_t i = 0; i <= k; ++i) check(p, i, k, way, random);
      }
    }
  }
}

}  // namespace
}  // namespace ovks::test
