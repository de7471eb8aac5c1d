// SPDX-License-Identifier: MIT
// The library's own elementary functions against long double.
#include "core/exp.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "core/cos.hpp"
#include "support/cosine.hpp"

namespace ovks {
namespace {

using V = Vec<double>;

// The largest error over n points between low and high, in units in the last place of a 64f result.
template <class F, class R>
double largestError(F f, R reference, double low, double high, int n) {
  std::mt19937_64 random(1);
  std::uniform_real_distribution<double> distribution(low, high);
  double worst = 0;
  for (int i = 0; i < n; i += lanes<V>) {
    V x;
    for (int k = 0; k < lanes<V>; ++k) x[k] = distribution(random);
    const V y = f(x);
    for (int k = 0; k < lanes<V>; ++k) {
      const long double exact = reference(static_cast<long double>(x[k]));
      const double near = std::fabs(static_cast<double>(exact));
      const double ulp = near - std::nextafter(near, 0);
      worst = std::fmax(worst, static_cast<double>(std::fabs(exact - y[k]) / ulp));
    }
  }
  return worst;
}

constexpr auto ownExp = [](V x) { return exp(x); };
constexpr auto ownCosine = [](V x) { return cosine(x); };

TEST(Exp, IsWithinItsBound) {
  EXPECT_LT(largestError(ownExp, expl, -0.4, 0.4, 400000), 0.7);
  EXPECT_LT(largestError(ownExp, expl, -708, 709.78, 400000), 0.7);
  EXPECT_LT(largestError(ownExp, expl, -745, -708, 40000), 1.0);
  EXPECT_LT(largestError([](V x) { return expBounded(x); }, expl, -700, 700, 400000), 0.7);
}

TEST(Exp, TakesEveryArgument) {
  const double inf = HUGE_VAL, cases[][2] = {{0, 1},       {-0.0, 1},   {inf, inf}, {-inf, 0},   {710, inf},
                                             {1e300, inf}, {-1e300, 0}, {-746, 0},  {1e-300, 1}, {-745, 0x1p-1074}};
  for (const auto& c : cases) EXPECT_EQ(exp(broadcast<V>(c[0]))[0], c[1]) << c[0];
  EXPECT_TRUE(std::isnan(exp(broadcast<V>(NAN))[0]));
}

TEST(Cosine, IsWithinItsBound) {
  EXPECT_LT(largestError(ownCosine, test::cosineOf, 0, 6.4, 400000), 0.52);
  EXPECT_LT(largestError(ownCosine, test::cosineOf, 1e-9, 1e-2, 100000), 0.52);
  EXPECT_LT(largestError(ownCosine, test::cosineOf, -1000, 1000, 400000), 0.52);
  // At the steps of windows the last bit is right but where the exact value lies halfway.
  for (int n = 4; n < 100000; ++n) {
    const double theta = 2 * std::numbers::pi / (n - 1);
    EXPECT_LT(std::fabs(test::cosineOf(theta) - cosine(broadcast<V>(theta))[0]), 0x1.002p-54L) << n;
  }
}

}  // namespace
}  // namespace ovks
