// SPDX-License-Identifier: MIT
#include "core/log.hpp"

#include "support/random.hpp"

namespace ovks::test {
namespace {

// The largest error in ulp over random operands made by make(random).
template <class F>
double worst(const char* name, F (*make)(Random&)) {
  using V = Vec<F>;
  Random random(name);
  long double most = 0;
  for (int k = 0; k < 100000; ++k) {
    V v;
    for (int i = 0; i < lanes<V>; ++i) v[i] = make(random);
    const V result = log(v);
    for (int i = 0; i < lanes<V>; ++i) {
      const long double exact = std::log(static_cast<long double>(v[i]));
      const int exponent = std::ilogb(static_cast<F>(exact)) + 1 - std::numeric_limits<F>::digits;
      most = std::max(most, std::fabs(result[i] - exact) / std::ldexp(1.0L, exponent));
    }
  }
  return static_cast<double>(most);
}

// Of any size, denormals among them; and near 1, at every distance from it.
template <class F>
F anySize(Random& random) {
  using L = std::numeric_limits<F>;
  const F x = static_cast<F>(std::ldexp(1 + static_cast<double>(random.bits() >> 12) * 0x1p-52,
                                        random.between(L::min_exponent - L::digits, L::max_exponent - 2)));
  return x == 1 ? 2 : x;
}
template <class F>
F nearOne(Random& random) {
  const F x = static_cast<F>(static_cast<double>(random.bits() >> 12) * 0x1p-53 + 0x1p-53);
  const F distance = std::ldexp(x, -random.below(std::numeric_limits<F>::digits - 1));
  return random.below(2) ? 1 + distance : 1 - distance / 2;
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
  EXPECT_LT(worst<double>("double", anySize), 0.9);
  EXPECT_LT(worst<double>("double near 1", nearOne), 0.9);
  EXPECT_LT(worst<float>("float", anySize), 0.9);
  EXPECT_LT(worst<float>("float near 1", nearOne), 0.9);
}

TEST(Log, Special) {
  checkSpecial<float>();
  checkSpecial<double>();
}

}  // namespace
}  // namespace ovks::test
