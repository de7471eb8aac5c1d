// SPDX-License-Identifier: MIT
// Generators against the recurrence written out, and their distributions.
#include "support/trial.hpp"

namespace ovks::test {
namespace {

struct Engine {
  uint32_t lcg, x1, x2, x3;
  int32_t borrow;

  static Engine seeded(uint32_t seed) {
    const uint32_t x2 = 69069 * seed + 1013904243;
    return {1131199209, seed, x2, 69069 * x2 + 1013904243, -1};
  }

  int32_t next() {
    uint32_t s = x2 - x3 + static_cast<uint32_t>(borrow);
    borrow = static_cast<int32_t>(s) < 0 ? -1 : 0;
    if (borrow) s -= 18;
    x3 = x2, x2 = x1, x1 = s;
    lcg = 69069 * lcg + 1013904243;
    return static_cast<int32_t>(s + lcg);
  }
};

constexpr char kUniform[] = "ovksRandUniform", kGauss[] = "ovksRandGauss";

// A sequence of numbers of type T, taken in pieces, to any address.
template <class T>
class Numbers {
 public:
  Bytes state;

  Numbers(const std::string& kind, T a, T b, uint32_t seed) : fill_(prototype(kind + kType)) {
    Call init(prototype(kind + "Init" + kType), Shape(), random_);
    init.arguments[1].set(a);
    init.arguments[2].set(b);
    init.arguments[3].set(seed);
    init.place();
    EXPECT_EQ(init.run(), StatusOk);
    state = init.bytes(0);
  }

  // The caller's rounding has no say in Gaussian sequences.
  std::vector<T> next(int n) {
    constexpr unsigned kDown = 0x2000;
    Shape shape;
    shape.len = n;
    Trial t(fill_, shape, random_, kDefaultControl | (fill_.startsWith(kGauss) ? kDown : 0));
    t.call.data(2) = state;
    t.call.place(t.everywhere());
    EXPECT_EQ(t.execute(t.call), StatusOk);
    EXPECT_EQ(t.error(), "");
    state = t.call.bytes(2);
    return sequence<T>(t.call.bytes(0));
  }

 private:
  static constexpr const char* kType = sizeof(T) == 1   ? "_8u"
                                       : sizeof(T) == 2 ? "_16s"
                                       : sizeof(T) == 4 ? "_32f"
                                                        : "_64f";

  Random random_{"numbers"};
  const Prototype& fill_;
};

// Pieces give what the whole gives, and states have the size and the tag of their kind and type.
template <class T>
void expectPieces(Numbers<T> whole, Numbers<T> cut, std::size_t size, int tag) {
  EXPECT_EQ(whole.state.size(), size);
  EXPECT_EQ(loadElement<int>(whole.state.data()), tag);
  const std::vector<T> expected = whole.next(9000);
  Random random("cuts");
  constexpr int kLongest[] = {3, 70, 4000};
  for (int i = 0, n; i < 9000; i += n) {
    n = std::min(9000 - i, random.between(1, kLongest[random.below(16) ? random.below(2) : 2]));
    ASSERT_EQ(cut.next(n), std::vector(&expected[i], &expected[i] + n)) << n << " from " << i;
  }
  EXPECT_EQ(whole.state, cut.state);
}

constexpr int kMany = 70001;

template <class T>
void checkUniform(T low, T high, std::size_t size, int tag) {
  expectPieces(Numbers(kUniform, low, high, 42), Numbers(kUniform, low, high, 42), size, tag);
  const double mid = (low + high) * 0.5, scale = (high - low) * 0x1p-32;
  for (const uint32_t seed : {0u, 1u, 123456789u, 0xffffffffu}) {
    Engine engine = Engine::seeded(seed);
    for (const T got : Numbers(kUniform, low, high, seed).next(kMany)) {
      const double want = std::fma(engine.next(), scale, mid);
      if constexpr (std::is_integral_v<T>) ASSERT_EQ(got, Exact(want).rounded<T>(0, RoundNear));
      else ASSERT_EQ(got, static_cast<T>(want));
    }
  }
}

TEST(Random, UniformFollowsTheRecurrence) {
  checkUniform<uint8_t>(3, 250, 56, 35);
  checkUniform<int16_t>(-32768, 9999, 56, 36);
  checkUniform(-0.3f, 1.7f, 56, 37);
  checkUniform(-0.3, 1e6, 64, 38);
}

template <class T>
void checkGauss(T mean, T deviation, std::size_t size, int tag) {
  expectPieces(Numbers(kGauss, mean, deviation, 42), Numbers(kGauss, mean, deviation, 42), size, tag);
  const std::vector<T> got = Numbers(kGauss, mean, deviation, 77).next(kMany);
  Engine engine = Engine::seeded(77);
  for (std::size_t i = 0; i < got.size();) {
    const double v1 = engine.next() * 0x1p-31, v2 = engine.next() * 0x1p-31, s = v1 * v1 + v2 * v2;
    if (s >= 1 || s == 0) continue;
    const double f = std::sqrt(-2 * std::log(s) / s);
    for (const double z : {v1 * f, v2 * f}) {
      if (i == got.size()) break;
      const double want = mean + deviation * z;
      if constexpr (std::is_integral_v<T>) ASSERT_EQ(got[i], Exact(want).rounded<T>(0, RoundNear)) << i;
      else ASSERT_NEAR(got[i], want, std::fabs(want) * 2 * std::numeric_limits<T>::epsilon() + 1e-15) << i;
      ++i;
    }
  }
}

TEST(Random, GaussFollowsThePolarMethod) {
  checkGauss<uint8_t>(100, 90, 64, 39);
  checkGauss<int16_t>(-5, 12000, 64, 40);
  checkGauss(0.5f, 2.0f, 72, 41);
  checkGauss(0.5, 2.0, 80, 42);
}

// The borrow cannot be told from the sign of x2 - x3 where its other bits are zero: states that come to this after any
// number of steps, found by running the recurrence backwards.
TEST(Random, RareBorrows) {
  Random random("rare borrows");
  for (int steps = 0; steps < 1200; steps += steps < 20 ? 1 : 57) {
    for (const uint32_t difference : {0u, 0x80000000u}) {
      const auto x1 = static_cast<uint32_t>(random.bits()) | 0x80000000u, x3 = static_cast<uint32_t>(random.bits());
      Engine engine{5, x1, x3 + difference, x3, -1};
      for (int i = 0; i < steps; ++i) {
        const uint32_t s = engine.x1 - 18 * static_cast<uint32_t>(engine.borrow);
        const int32_t before = static_cast<int32_t>(engine.x2 + 18) < 0 ? -1 : 0;
        const uint32_t oldest = engine.x3 + static_cast<uint32_t>(before) - s;
        engine = {5, engine.x2, engine.x3, oldest, before};
      }
      Numbers<double> numbers(kUniform, -0x1p31, 0x1p31, 1);
      std::memcpy(&numbers.state[40], &engine, sizeof engine);
      for (const double got : numbers.next(1500)) ASSERT_EQ(got, engine.next()) << " after " << steps;
      ASSERT_EQ(std::memcmp(&numbers.state[40], &engine, sizeof engine), 0);
    }
  }
}

// Sequences stay what they are from release to release.
TEST(Random, GoldenValues) {
  const auto u = Numbers(kUniform, 0.0f, 1.0f, 2024).next(1000);
  const auto g = Numbers(kGauss, 0.0, 1.0, 2024).next(1000);
  EXPECT_EQ((std::vector{u[0], u[1], u[2], u[999]}),
            (std::vector{0x1.da5b26p-1f, 0x1.8fd0a8p-4f, 0x1.190a12p-3f, 0x1.3d79c8p-1f}));
  EXPECT_EQ((std::vector{g[0], g[1], g[2], g[999]}),
            (std::vector{-0x1.19a35e7fe628dp+0, -0x1.54ed0a3c9ecf6p-3, -0x1.b99238c4fd91ep-2, 0x1.2e1b0ea364d2fp+0}));
}

// An even distribution over [0, 1) of values, by Kolmogorov's and Smirnov's distance, and of their pairs over the
// square, by chi-square: one in a thousand is farther off.
void expectEven(std::vector<double> values) {
  constexpr int kCells = 64, kSquares = kCells * kCells;
  const double n = static_cast<double>(values.size()), expected = n / 2 / kSquares;
  std::vector<int> counts(kSquares);
  for (std::size_t i = 0; i < values.size(); i += 2)
    ++counts[static_cast<std::size_t>(values[i] * kCells) * kCells + static_cast<std::size_t>(values[i + 1] * kCells)];
  double chiSquare = 0, distance = 0;
  for (const int count : counts) chiSquare += (count - expected) * (count - expected) / expected;
  EXPECT_LT(std::fabs(chiSquare - (kSquares - 1)) / std::sqrt(2.0 * (kSquares - 1)), 3.3);
  std::sort(values.begin(), values.end());
  for (std::size_t i = 0; i < values.size(); ++i)
    distance = std::fmax(distance, std::fabs(values[i] - (static_cast<double>(i) + 0.5) / n));
  EXPECT_LT(std::sqrt(n) * distance, 1.95);
}

TEST(Random, Distributions) {
  for (const uint32_t seed : {1u, 99u}) {
    expectEven(Numbers(kUniform, 0.0, 1.0, seed).next(200000));
    std::vector<double> z = Numbers(kGauss, 0.0, 1.0, seed).next(200000);
    for (double& x : z) x = 0.5 * std::erfc(-x / std::sqrt(2));
    expectEven(z);
  }
}

}  // namespace
}  // namespace ovks::test
