// SPDX-License-Identifier: MIT
#include "support/harness.hpp"

#include "support/trial.hpp"

namespace ovks::test {

namespace {

// Integer results must not depend on any of it; exact floating-point ones follow the caller's rounding.
unsigned floatControl(const Export& e, Random& random) {
  const auto bits = static_cast<unsigned>(random.bits());
  if (e.operands.back()->integer) return bits & kModes;
  return e.exact && bits % 2 ? kDefaultControl | (bits & kRounding) : kDefaultControl;
}

// Some calls have the same elements in all operands of the destination's type, so that one may lie over another.
std::vector<Overlap> sharings(const Export& e, Trial& t, Random& random) {
  std::vector<Overlap> found = e.accumulates ? std::vector<Overlap>() : t.permitted();
  const std::size_t last = e.operands.size() - 1;
  for (std::size_t k = 0; k < last && random.below(4) == 0; ++k) {
    if (!t.call.prototype().parameters[k].isPointer || e.operands[k] != e.operands[last]) continue;
    t.call.data(k) = t.call.data(last);
    found.push_back({last, k, 0});
  }
  return found;
}

// Holds the first call's results against the reference.
void judge(const Export& e, Trial& t, RoundMode mode, int scaleFactor, unsigned control) {
  const std::size_t last = e.operands.size() - 1;
  std::vector<const void*> in;
  for (std::size_t k = 0; k <= last; ++k) {
    const bool isVector = t.call.prototype().parameters[k].isPointer;
    in.push_back(isVector ? static_cast<const void*>(t.call.data(k).data()) : &t.call.arguments[k]);
  }
  const Bytes& result = t.results()[last];
  Verdict v;
  {
    const FloatControl rounding(e.operands[last]->integer ? kDefaultControl : control);
    v = e.judge(in.data(), result.data(), t.call.shape().len, mode, scaleFactor);
  }
  if (t.status() != v.status) t.fail("status ", t.status(), " instead of ", v.status);
  if (v.wrong < 0) return;
  std::ostringstream sources;
  for (std::size_t k = 0; k <= last - !e.accumulates; ++k) {
    const bool isVector = t.call.prototype().parameters[k].isPointer;
    const std::size_t at = isVector ? static_cast<std::size_t>(v.wrong) * e.operands[k]->size : 0;
    sources << ' ' << e.operands[k]->text(static_cast<const std::byte*>(in[k]) + at);
  }
  const std::string got = e.operands[last]->text(&result[static_cast<std::size_t>(v.wrong) * e.operands[last]->size]);
  t.fail("element ", v.wrong, " of", sources.str(), " is ", got, " instead of ", v.expected);
}

// One length with one pair of modes, in every place: what went wrong.
std::string check(const Export& e, int len, RoundMode mode, int scaleFactor, Random& random) {
  Shape shape;
  shape.len = len;
  const unsigned control = floatControl(e, random);
  Trial t(*e.prototype, shape, random, control);
  t.keepsFlags = e.operands.back()->integer;
  t.call.setConstant("rndMode", mode);
  t.call.setConstant("scaleFactor", scaleFactor);
  std::copy(e.constants.rbegin(), e.constants.rend(), t.call.arguments.rbegin());
  const std::vector<Overlap> overlaps = sharings(e, t, random);
  t.first();
  judge(e, t, mode, scaleFactor, control);
  t.again();
  for (const Overlap& overlap : overlaps) t.again(overlap);
  return t.error();
}

}  // namespace

std::string exportName(const void* function) { return prototypeOf(function).name; }

std::vector<int> usualLengths() {
  std::vector<int> lengths(140);
  std::iota(lengths.begin(), lengths.end(), 1);
  for (const int n : {255, 256, 257, 1000, 2047, 4099}) lengths.push_back(n);
  return lengths;
}

void check(const Export& e, std::span<const int> lengths) {
  constexpr int kFactors[] = {1,   -1,  2,   4,   7,   8,   9,   12,  14,  15,  16,  17,  18,   30,      31,     32,
                              33,  48,  62,  63,  64,  65,  66,  127, -2,  -5,  -7,  -8,  -9,   -14,     -15,    -16,
                              -17, -19, -20, -30, -31, -32, -33, -62, -63, -64, -65, 128, -128, INT_MIN, INT_MAX};
  Random random(e.name);
  const bool isScaled = e.prototype->has("scaleFactor");
  std::size_t next = 0;
  for (const int len : lengths) {
    for (int round = 0; round < (isScaled ? 4 : 2); ++round) {
      const RoundMode mode = e.prototype->has("rndMode") ? (len + round) % 3 : RoundNear;
      const int factor = round == 0 || !isScaled ? 0 : kFactors[next++ % std::size(kFactors)];
      const std::string error = check(e, len, mode, factor, random);
      // One message an export is enough.
      ASSERT_EQ(error, "");
    }
  }
}

void checkOn(const Export& e, std::vector<const void*> sources, int len, RoundMode mode, int scaleFactor) {
  Bytes out(e.operands.back()->size * static_cast<std::size_t>(len));
  sources.push_back(out.data());
  std::vector<Argument> arguments(e.prototype->parameters.size());
  for (std::size_t k = 0; k < sources.size(); ++k) {
    if (e.prototype->parameters[k].isPointer) arguments[k].set(sources[k]);
    else std::memcpy(&arguments[k], sources[k], e.operands[k]->size);
  }
  arguments[e.prototype->find("len")].set(len);
  if (e.prototype->has("rndMode")) arguments[e.prototype->find("rndMode")].set(mode);
  if (e.prototype->has("scaleFactor")) arguments[e.prototype->find("scaleFactor")].set(scaleFactor);
  const Status status = e.prototype->call(arguments.data());
  const Verdict v = e.judge(sources.data(), out.data(), len, mode, scaleFactor);
  EXPECT_EQ(status, v.status) << e.name;
  EXPECT_EQ(v.wrong, -1) << e.name << " mode " << mode << " scaleFactor " << scaleFactor << ": expected " << v.expected;
}

std::pair<std::vector<std::uint8_t>, std::vector<std::uint8_t>> allBytePairs() {
  std::vector<std::uint8_t> fast, slow;
  for (const unsigned i : allShorts<std::uint16_t>()) {
    fast.push_back(static_cast<std::uint8_t>(i));
    slow.push_back(static_cast<std::uint8_t>(i >> 8));
  }
  return {fast, slow};
}

}  // namespace ovks::test
