// SPDX-License-Identifier: MIT
#include "support/harness.hpp"

#include <climits>
#include <numeric>

namespace ovks::test {

namespace {

// Some calls have the same elements in all operands of the destination's type, so that one may lie over another.
std::vector<Overlap> sharings(Trial& t, std::size_t destination, Random& random) {
  const Prototype& p = t.call.prototype();
  std::vector<Overlap> found = t.permitted();
  for (std::size_t k = 0; k < destination && destination < p.find("len") && random.below(4) == 0; ++k) {
    if (!p.parameters[k].isPointer || p.parameters[k].element != p.parameters[destination].element) continue;
    t.call.data(k) = t.call.data(destination);
    found.push_back({destination, k, 0});
  }
  return found;
}

// One length with one pair of modes, in every place: what went wrong.
std::string check(const Export& e, int len, int mode, int scaleFactor, Random& random) {
  const std::size_t destination = e.prototype->vectors(false, true)[0];
  const bool integer = e.prototype->parameters[destination].element->integer;
  // Integer results must not depend on any of it; exact floating-point ones follow the caller's rounding.
  unsigned control = static_cast<unsigned>(random.bits()) & kModes;
  if (!integer) control = kDefaultControl | (e.exact && random.below(2) ? control & kRounding : 0);
  Shape shape;
  shape.len = len;
  Trial t(*e.prototype, shape, random, control);
  t.keepsFlags = integer;
  t.call.setConstant("rndMode", mode);
  t.call.setConstant("hint", mode);
  t.call.setConstant("scaleFactor", scaleFactor);
  if (e.prepare) e.prepare(t.call, random);
  const std::vector<Overlap> overlaps = sharings(t, destination, random);
  t.first();
  {
    const FloatControl rounding(integer ? kDefaultControl : control);
    e.judge(t);
  }
  t.again();
  for (const Overlap& overlap : overlaps) t.again(overlap);
  return t.error();
}

}  // namespace

const std::vector<int>& usualLengths() {
  static const std::vector<int> all = [] {
    std::vector<int> lengths(140);
    std::iota(lengths.begin(), lengths.end(), 1);
    lengths.insert(lengths.end(), {255, 256, 257, 1000, 2047, 4099});
    return lengths;
  }();
  return all;
}

void check(const Export& e, std::span<const int> lengths) {
  constexpr int kFactors[] = {1,   -1,  2,   4,   7,   8,   9,   12,  14,  15,  16,  17,  18,   30,      31,     32,
                              33,  48,  62,  63,  64,  65,  66,  127, -2,  -5,  -7,  -8,  -9,   -14,     -15,    -16,
                              -17, -19, -20, -30, -31, -32, -33, -62, -63, -64, -65, 128, -128, INT_MIN, INT_MAX};
  Random random(e.prototype->name);
  const bool isScaled = e.prototype->has("scaleFactor");
  std::size_t next = 0;
  for (const int len : lengths) {
    for (int round = 0; round < (isScaled ? 4 : 2); ++round) {
      const int factor = round == 0 ? 0 : kFactors[next++ % std::size(kFactors)];
      // One message an export is enough.
      ASSERT_EQ(check(e, len, (len + round) % 3, factor, random), "");
    }
  }
}

void checkAll(Export e, int firstFactor, int lastFactor) {
  constexpr int kLen = 1 << 16;
  e.prepare = [](Call& call, Random& random) {
    for (const std::size_t k : call.prototype().vectors(true, false)) {
      const std::size_t size = call.size(k) / kLen;
      const int some = random.value<std::int16_t>();
      for (int i = 0; i < kLen; ++i) {
        const int x = k == 0 ? i : size == 1 ? i >> 8 : some;
        std::memcpy(&call.data(k)[static_cast<std::size_t>(i) * size], &x, size);
      }
    }
  };
  Random random(e.prototype->name);
  for (int factor = firstFactor; factor <= lastFactor; ++factor)
    ASSERT_EQ(check(e, kLen, (factor & INT_MAX) % 3, factor, random), "");
}

}  // namespace ovks::test
