// SPDX-License-Identifier: MIT
// Generators against the recurrence written out, and their distributions.
#include <cfenv>

#include "support/harness.hpp"

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

// A state in memory of exactly its size, at an odd address.
template <class S>
struct State {
  Guarded memory{256};
  S* get = nullptr;
};

// The exports of one kind and type, with parameters for a test, the size of a state and its tag.
template <class T, class S>
struct Generator {
  Status (*getSize)(int*);
  Status (*init)(S*, T, T, uint32_t);
  Status (*fill)(T*, int, S*);
  T a, b;
  int size, tag;

  State<S> start(T first, T second, uint32_t seed) const {
    int bytes = 0;
    EXPECT_EQ(getSize(&bytes), StatusOk);
    EXPECT_EQ(bytes, size);
    State<S> state;
    const std::vector<char> zeros(static_cast<std::size_t>(bytes));
    state.get = reinterpret_cast<S*>(state.memory.put({false, 13}, zeros.data(), zeros.size()));
    EXPECT_EQ(init(state.get, first, second, seed), StatusOk);
    EXPECT_TRUE(state.memory.intact());
    return state;
  }
  std::vector<T> next(int n, const State<S>& state) const {
    std::vector<T> v(static_cast<std::size_t>(n));
    EXPECT_EQ(fill(v.data(), n, state.get), StatusOk);
    return v;
  }
};

template <class T, class S>
Generator(Status (*)(int*), Status (*)(S*, T, T, uint32_t), Status (*)(T*, int, S*), T, T, int, int) -> Generator<T, S>;

const std::tuple kUniform = {
    Generator{ovksRandUniformGetSize_8u, ovksRandUniformInit_8u, ovksRandUniform_8u, uint8_t{3}, uint8_t{250}, 56, 35},
    Generator{ovksRandUniformGetSize_16s, ovksRandUniformInit_16s, ovksRandUniform_16s, int16_t{-32768}, int16_t{9999},
              56, 36},
    Generator{ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f, -0.3f, 1.7f, 56, 37},
    Generator{ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f, -0.3, 1e6, 64, 38}};
const std::tuple kGauss = {
    Generator{ovksRandGaussGetSize_8u, ovksRandGaussInit_8u, ovksRandGauss_8u, uint8_t{100}, uint8_t{90}, 64, 39},
    Generator{ovksRandGaussGetSize_16s, ovksRandGaussInit_16s, ovksRandGauss_16s, int16_t{-5}, int16_t{12000}, 64, 40},
    Generator{ovksRandGaussGetSize_32f, ovksRandGaussInit_32f, ovksRandGauss_32f, 0.5f, 2.0f, 72, 41},
    Generator{ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f, 0.5, 2.0, 80, 42}};

void forEach(const auto& generators, auto f) {
  std::apply([&](const auto&... generator) { (f(generator), ...); }, generators);
}

template <class T>
T rounded(double x) {
  if constexpr (!std::is_integral_v<T>) return static_cast<T>(x);
  using L = std::numeric_limits<T>;
  return static_cast<T>(std::nearbyint(std::fmin(L::max(), std::fmax(L::min(), x))));
}

constexpr int kMany = 70001;

TEST(Random, UniformFollowsTheRecurrence) {
  for (const uint32_t seed : {0u, 1u, 123456789u, 0xffffffffu}) {
    forEach(kUniform, [&]<class T, class S>(const Generator<T, S>& generator) {
      const double mid = (generator.a + generator.b) * 0.5, scale = (generator.b - generator.a) * 0x1p-32;
      Engine engine = Engine::seeded(seed);
      for (const T got : generator.next(kMany, generator.start(generator.a, generator.b, seed)))
        ASSERT_EQ(got, rounded<T>(std::fma(engine.next(), scale, mid)));
    });
  }
}

TEST(Random, GaussFollowsThePolarMethod) {
  forEach(kGauss, []<class T, class S>(const Generator<T, S>& generator) {
    const std::vector<T> got = generator.next(kMany, generator.start(generator.a, generator.b, 77));
    Engine engine = Engine::seeded(77);
    for (std::size_t i = 0; i < got.size();) {
      const double v1 = engine.next() * 0x1p-31, v2 = engine.next() * 0x1p-31, s = v1 * v1 + v2 * v2;
      if (s >= 1 || s == 0) continue;
      const double f = std::sqrt(-2 * std::log(s) / s);
      for (const double z : {v1 * f, v2 * f}) {
        if (i == got.size()) break;
        const double want = generator.a + generator.b * z;
        if constexpr (std::is_integral_v<T>) ASSERT_EQ(got[i], rounded<T>(want)) << i;
        else ASSERT_NEAR(got[i], want, std::fabs(want) * 2 * std::numeric_limits<T>::epsilon() + 1e-15) << i;
        ++i;
      }
    }
  });
}

// The borrow cannot be told from the sign of x2 - x3 where its other bits are zero: states that come to this after any
// number of steps, found by running the recurrence backwards.
TEST(Random, RareBorrows) {
  const auto& generator = std::get<3>(kUniform);
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
      const auto state = generator.start(-0x1p31, 0x1p31, 1);
      char* const inside = reinterpret_cast<char*>(state.get) + 40;
      std::memcpy(inside, &engine, sizeof engine);
      for (const double got : generator.next(1500, state)) ASSERT_EQ(got, engine.next()) << " after " << steps;
      ASSERT_EQ(std::memcmp(inside, &engine, sizeof engine), 0);
    }
  }
}

// A sequence may be taken in pieces of any length, to any address. Only a state of the right kind gives one.
TEST(Random, CutsAndStates) {
  const auto check = []<class T, class S>(const Generator<T, S>& generator) {
    EXPECT_EQ(generator.getSize(nullptr), StatusNullPtr);
    EXPECT_EQ(generator.init(nullptr, generator.a, generator.b, 1), StatusNullPtr);
    const auto whole = generator.start(generator.a, generator.b, 42);
    const auto cut = generator.start(generator.a, generator.b, 42);
    const std::vector<T> expected = generator.next(9000, whole);
    Random random("cuts");
    Guarded memory(4096 * sizeof(T));
    constexpr int kLongest[] = {3, 70, 4000};
    for (int i = 0, n; i < 9000; i += n) {
      n = std::min(9000 - i, random.between(1, kLongest[random.below(16) ? random.below(2) : 2]));
      const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(T);
      const std::vector<T> zeros(static_cast<std::size_t>(n));
      std::byte* const dst = memory.put({random.below(2) == 0, 7}, zeros.data(), bytes);
      ASSERT_EQ(generator.fill(reinterpret_cast<T*>(dst), n, cut.get), StatusOk);
      ASSERT_TRUE(memory.intact() && cut.memory.intact());
      ASSERT_EQ(std::memcmp(dst, &expected[static_cast<std::size_t>(i)], bytes), 0) << n << " from " << i;
    }
    EXPECT_EQ(generator.next(9000, whole), generator.next(9000, cut));

    EXPECT_EQ(loadElement<int>(whole.get), generator.tag);
    const int other = generator.tag == 35 ? 39 : 35;
    std::memcpy(whole.get, &other, sizeof other);
    T one = generator.a;
    EXPECT_EQ(generator.fill(&one, 0, whole.get), StatusBadSize);
    EXPECT_EQ(generator.fill(&one, 1, whole.get), StatusContextMismatch);
    EXPECT_EQ(one, generator.a);
  };
  forEach(kUniform, check);
  forEach(kGauss, check);
}

// Sequences stay what they are from release to release. The caller's rounding has no say in Gaussian ones.
TEST(Random, GoldenValues) {
  const auto& uniform = std::get<2>(kUniform);
  const auto& gauss = std::get<3>(kGauss);
  const auto u = uniform.next(1000, uniform.start(0, 1, 2024));
  const auto state = gauss.start(0, 1, 2024);
  std::fesetround(FE_DOWNWARD);
  const auto g = gauss.next(1000, state);
  EXPECT_EQ(std::fegetround(), FE_DOWNWARD);
  std::fesetround(FE_TONEAREST);
  EXPECT_EQ((std::vector{u[0], u[1], u[2], u[999]}),
            (std::vector{0x1.da5b26p-1f, 0x1.8fd0a8p-4f, 0x1.190a12p-3f, 0x1.3d79c8p-1f}));
  EXPECT_EQ((std::vector{g[0], g[1], g[2], g[999]}),
            (std::vector{-0x1.19a35e7fe628dp+0, -0x1.54ed0a3c9ecf6p-3, -0x1.b99238c4fd91ep-2, 0x1.2e1b0ea364d2fp+0}));
}

// Even distribution of pairs over [0, 1)^2: counts against equal expectations, in standard deviations.
void expectEven(const std::vector<double>& values) {
  constexpr int kCells = 64, kSquares = kCells * kCells;
  std::vector<int> counts(kSquares);
  for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
    const int row = static_cast<int>(values[i] * kCells), column = static_cast<int>(values[i + 1] * kCells);
    ++counts[static_cast<std::size_t>(row * kCells + column)];
  }
  const double expected = static_cast<double>(values.size()) / 2 / kSquares;
  double chiSquare = 0;
  for (const int count : counts) chiSquare += (count - expected) * (count - expected) / expected;
  EXPECT_LT(std::fabs(chiSquare - (kSquares - 1)) / std::sqrt(2.0 * (kSquares - 1)), 4);
}

// Kolmogorov and Smirnov's distance from the even distribution, times the root of the number.
void expectNear(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const double n = static_cast<double>(values.size());
  double distance = 0;
  for (std::size_t i = 0; i < values.size(); ++i)
    distance = std::fmax(distance, std::fabs(values[i] - (static_cast<double>(i) + 0.5) / n));
  EXPECT_LT(std::sqrt(n) * distance, 1.95);  // one in a thousand is farther off
}

TEST(Random, Distributions) {
  const auto& uniform = std::get<3>(kUniform);
  const auto& gauss = std::get<3>(kGauss);
  for (const uint32_t seed : {1u, 99u}) {
    const std::vector<double> u = uniform.next(200000, uniform.start(0, 1, seed));
    expectEven(u);
    expectNear(u);
    std::vector<double> z = gauss.next(200000, gauss.start(0, 1, seed));
    for (double& x : z) x = 0.5 * std::erfc(-x / std::sqrt(2));
    expectEven(z);
    expectNear(z);
  }
}

}  // namespace
}  // namespace ovks::test
