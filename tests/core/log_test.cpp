// SPDX-License-Identifier: MIT
#include "core/log.hpp"

#include "support/random.hpp"

namespace ovks::test {
namespace {

// The error of log(x) in ulp, got beside exact.
template <class F, class X>
X error(F got, X exact) {
  const int exponent = std::ilogb(static_cast<F>(exact)) + 1 - std::numeric_limits<F>::digits;
  return std::fabs(got - exact) / std::ldexp(X{1}, exponent);
}

// The largest error over random doubles made by make(random).
double worst(const char* name, double (*make)(Random&)) {
  using V = Vec<double>;
  Random random(name);
  long double most = 0;
  for (int k = 0; k < 100000; ++k) {
    V v;
    for (int i = 0; i < lanes<V>; ++i) v[i] = make(random);
    const V result = log(v);
    for (int i = 0; i < lanes<V>; ++i)
      most = std::max(most, error(result[i], std::log(static_cast<long double>(v[i]))));
  }
  return static_cast<double>(most);
}

// Of any size, denormals among them; and near 1, at every distance from it.
double anySize(Random& random) {
  const double x = std::ldexp(1 + static_cast<double>(random.bits() >> 12) * 0x1p-52, random.between(-1074, 1022));
  return x == 1 ? 2 : x;
}
double nearOne(Random& random) {
  const double x = static_cast<double>(random.bits() >> 12) * 0x1p-53 + 0x1p-53;
  const double distance = std::ldexp(x, -random.below(52));
  return random.below(2) ? 1 + distance : 1 - distance / 2;
}

// The largest error over the positive floats, one in so many of them. Logarithms in double precision are exact enough.
double worstOfFloats(uint32_t step) {
  using V = Vec<float>;
  constexpr uint32_t kInfinity = 0x7f800000, kOne = 0x3f800000;
  Random random("float");
  double most = 0;
  for (uint32_t next = 1 + static_cast<uint32_t>(random.below(static_cast<int>(step))); next < kInfinity;) {
    V v;
    for (int i = 0; i < lanes<V>; ++i, next += step) v[i] = bits<float>(next < kInfinity && next != kOne ? next : 1);
    const V result = log(v);
    for (int i = 0; i < lanes<V>; ++i) most = std::max(most, error(result[i], std::log(double{v[i]})));
  }
  return most;
}

template <class F>
void checkSpecial() {
  using L = std::numeric_limits<F>;
  const F cases[][2] = {{0, -L::infinity()},
                        {F{-0.0}, -L::infinity()},
                        {-1, L::quiet_NaN()},
                        {-L::denorm_min(), L::quiet_NaN()},
                        {-L::infinity(), L::quiet_NaN()},
                        {L::infinity(), L::infinity()},
                        {L::quiet_NaN(), L::quiet_NaN()},
                        {1, 0}};
  for (const auto& [x, want] : cases) {
    const F got = log(broadcast<Vec<F>>(x))[0];
    EXPECT_TRUE(got == want || (std::isnan(got) && std::isnan(want))) << x << ' ' << got;
  }
}

TEST(Log, Error) {
  EXPECT_LT(worst("double", anySize), 0.9);
  EXPECT_LT(worst("double near 1", nearOne), 0.9);
  EXPECT_LT(worstOfFloats(1021), 0.9);
}

// All of them, in a minute: --gtest_also_run_disabled_tests --gtest_filter=*EveryFloat
TEST(Log, DISABLED_EveryFloat) {
  const double most = worstOfFloats(1);
  std::printf("%.4f ulp\n", most);
  EXPECT_LT(most, 0.9);
}

TEST(Log, Special) {
  checkSpecial<float>();
  checkSpecial<double>();
}

}  // namespace
}  // namespace ovks::test
