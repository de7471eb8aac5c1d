// SPDX-License-Identifier: MIT
// The library's own elementary functions against long double.
#include <numbers>

#include "core/cos.hpp"
#include "core/exp.hpp"
#include "core/log.hpp"
#include "core/root.hpp"
#include "support/cosine.hpp"
#include "support/random.hpp"

namespace ovks::test {
namespace {

using V = Vec<double>;

// The largest error of f over n random points made by make(random), in units in the last place of the exact result.
template <class F = double>
double largestError(auto f, auto exactly, int n, auto make) {
  using Exact = std::conditional_t<sizeof(F) == 4, double, long double>;
  Random random("elementary");
  Exact worst = 0;
  for (int i = 0; i < n; i += lanes<Vec<F>>) {
    Vec<F> x;
    for (int k = 0; k < lanes<Vec<F>>; ++k) x[k] = make(random);
    const Vec<F> y = f(x);
    for (int k = 0; k < lanes<Vec<F>>; ++k) {
      if (std::isnan(y[k])) return HUGE_VAL;
      const Exact exact = exactly(Exact{x[k]});
      const int place =
          std::max(std::ilogb(exact) + 1, std::numeric_limits<F>::min_exponent) - std::numeric_limits<F>::digits;
      worst = std::max(worst, std::fabs(y[k] - exact) / std::ldexp(Exact{1}, place));
    }
  }
  return static_cast<double>(worst);
}

double unit(Random& random) { return static_cast<double>(random.bits() >> 12) * 0x1p-52; }
auto between(double low, double high) {
  return [=](Random& random) { return low + unit(random) * (high - low); };
}

constexpr auto exactPower = [](long double x) { return std::exp2(x / 16); };
constexpr auto ownPower = [](V x) {
  V powers[] = {x};
  exp2Sixteenths(powers);
  return powers[0];
};
constexpr auto ownCosine = [](V x) { return ovks::cosine(x); };

TEST(PowerOfTwo, IsWithinItsBound) {
  EXPECT_LT(largestError(ownPower, exactPower, 400000, between(-16000, 16000)), 2.2);
}

TEST(InverseRoot, IsWithinItsBound) {
  const auto exactly = [](long double x) { return 1 / std::sqrt(x); };
  const auto own = [](V x) {
    V roots[1];
    inverseRoots(roots, {x});
    return roots[0];
  };
  EXPECT_LT(largestError(own, exactly, 400000, between(1, 4)), 1.4);
}

TEST(Cosine, IsWithinItsBound) {
  EXPECT_LT(largestError(ownCosine, cosineOf, 400000, between(0, 6.4)), 0.52);
  EXPECT_LT(largestError(ownCosine, cosineOf, 100000, between(1e-9, 1e-2)), 0.52);
  EXPECT_LT(largestError(ownCosine, cosineOf, 400000, between(-1000, 1000)), 0.52);
  // At the steps of windows the last bit is right but where the exact value lies halfway.
  for (int n = 4; n < 100000; ++n) {
    const double theta = 2 * std::numbers::pi / (n - 1);
    EXPECT_LT(std::fabs(cosineOf(theta) - ovks::cosine(broadcast<V>(theta))[0]), 0x1.002p-54L) << n;
  }
}

constexpr auto exactLog = [](auto x) { return std::log(x); };
constexpr auto ownLog = [](auto x) { return log(x); };

// Of any size, denormals among them; and near 1, at every distance from it.
TEST(Log, IsWithinItsBound) {
  const auto anySize = [](Random& random) { return std::ldexp(1 + unit(random), random.between(-1074, 1022)); };
  const auto nearOne = [](Random& random) {
    const double distance = std::ldexp(unit(random) / 2 + 0x1p-53, -random.below(52));
    return random.below(2) ? 1 + distance : 1 - distance / 2;
  };
  const auto anyFloat = [](Random& random) { return bits<float>(static_cast<uint32_t>(1 + random.below(0x7f7fffff))); };
  EXPECT_LT(largestError(ownLog, exactLog, 800000, anySize), 0.9);
  EXPECT_LT(largestError(ownLog, exactLog, 800000, nearOne), 0.9);
  EXPECT_LT(largestError<float>(ownLog, exactLog, 2000000, anyFloat), 0.9);
}

// Like the C library's at these, any NaN for a NaN.
template <class F>
void expectLike(auto own, auto exactly, std::initializer_list<F> arguments) {
  for (const F x : arguments) {
    const F got = own(broadcast<Vec<F>>(x))[0], want = static_cast<F>(exactly(x));
    EXPECT_TRUE(got == want || (std::isnan(got) && std::isnan(want))) << x << ' ' << got;
  }
}

TEST(Log, TakesEveryArgument) {
  expectLike<float>(ownLog, exactLog, {0, -0.0f, 1, HUGE_VALF, -1, -0x1p-149f, -HUGE_VALF, NAN});
  expectLike<double>(ownLog, exactLog, {0, -0.0, 1, HUGE_VAL, -1, -0x1p-1074, -HUGE_VAL, NAN});
}

}  // namespace
}  // namespace ovks::test
