// SPDX-License-Identifier: MIT
#include "support/family.hpp"

namespace ovks::test {
namespace {

TEST(Add, VectorsAndConstants) {
  checkFamilies<"ovksAdd_", "ovksAddC_">([](auto a, auto b) { return a + b; });
}

TEST(Sub, Vectors) {
  checkFamilies<"ovksSub_">([](auto a, auto b) { return b - a; });
}

TEST(Sub, Constants) {
  checkFamilies<"ovksSubC_">([](auto a, auto c) { return a - c; });
  checkFamilies<"ovksSubCRev_">([](auto a, auto c) { return c - a; });
}

// The smallest integer is its own magnitude.
template <auto lowest>
Exact magnitude(Exact x) {
  return x.numerator < 0 && x.numerator != lowest ? Exact() - x : x;
}

TEST(Abs, Vectors) {
  checkFamilies<"ovksAbs_16s">(magnitude<INT16_MIN>);
  checkFamilies<"ovksAbs_32s">(magnitude<INT32_MIN>);
  checkFamilies<"ovksAbs_32f", "ovksAbs_64f">([](auto x) { return std::fabs(x); });
}

}  // namespace
}  // namespace ovks::test
