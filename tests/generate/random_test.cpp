// SPDX-License-Identifier: MIT
// Generators against the recurrence written out, and their distributions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <cmath>
#include <numeric>

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

// The exports of one kind and type.
template <class T, class S>
struct Generator {
  Status (*getSize)(int*);
  Status (*init)(S*, T, T, uint32_t);
  Status (*fill)(T*, int, S*);
  using Value = T;
  using Opaque = S;

  // A state in memory of exactly its size, at an odd address.
  struct State {
    Guarded memory{256};
    std::byte* bytes;
    S* get() const { return reinterpret_cast<S*>(bytes); }
  };
  State start(T a, T b, uint32_t seed) const {
    int size = 0;
    EXPECT_EQ(getSize(&size), StatusOk);
    State state;
    const std::vector<char> zeros(static_cast<std::size_t>(size));
    state.bytes = state.memory.put({false, 13}, zeros.data(), zeros.size());
    EXPECT_EQ(init(state.get(), a, b, seed), StatusOk);
    EXPECT_TRUE(state.memory.intact());
    return state;
  }
};

template <class T, class S>
Generator(Status (*)(int*), Status (*)(S*, T, T, uint32_t), Status (*)(T*, int, S*)) -> Generator<T, S>;

template <class F>
void forUniform(F f) {
  f(Generator{ovksRandUniformGetSize_8u, ovksRandUniformInit_8u, ovksRandUniform_8u}, uint8_t{3}, uint8_t{250}, 56, 35);
  f(Generator{ovksRandUniformGetSize_16s, ovksRandUniformInit_16s, ovksRandUniform_16s}, int16_t{-32768}, int16_t{9999},
    56, 36);
  f(Generator{ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f}, -0.3f, 1.7f, 56, 37);
  f(Generator{ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f}, -0.3, 1e6, 64, 38);
}

template <class F>
void forGauss(F f) {
  f(Generator{ovksRandGaussGetSize_8u, ovksRandGaussInit_8u, ovksRandGauss_8u}, uint8_t{100}, uint8_t{90}, 64, 39);
  f(Generator{ovksRandGaussGetSize_16s, ovksRandGaussInit_16s, ovksRandGauss_16s}, int16_t{-5}, int16_t{12000}, 64, 40);
  f(Generator{ovksRandGaussGetSize_32f, ovksRandGaussInit_32f, ovksRandGauss_32f}, 0.5f, 2.0f, 72, 41);
  f(Generator{ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f}, 0.5, 2.0, 80, 42);
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
    forUniform([&](auto generator, auto low, auto high, int, int) {
      using T = decltype(low);
      const double mid = (low + high) * 0.5, scale = (high - low) * 0x1p-32;
      const auto state = generator.start(low, high, seed);
      std::vector<T> got(kMany);
      ASSERT_EQ(generator.fill(got.data(), kMany, state.get()), StatusOk);
      Engine engine = Engine::seeded(seed);
      for (int i = 0; i < kMany; ++i) ASSERT_EQ(got[i], rounded<T>(std::fma(engine.next(), scale, mid))) << i;
    });
  }
}

TEST(Random, GaussFollowsThePolarMethod) {
  forGauss([](auto generator, auto mean, auto stdDev, int, int) {
    using T = decltype(mean);
    const auto state = generator.start(mean, stdDev, 77);
    std::vector<T> got(kMany);
    ASSERT_EQ(generator.fill(got.data(), kMany, state.get()), StatusOk);
    Engine engine = Engine::seeded(77);
    for (int i = 0; i < kMany;) {
      const double v1 = engine.next() * 0x1p-31, v2 = engine.next() * 0x1p-31, s = v1 * v1 + v2 * v2;
      if (s >= 1 || s == 0) continue;
      const double f = std::sqrt(-2 * std::log(s) / s);
      for (const double z : {v1 * f, v2 * f}) {
        if (i == kMany) break;
        const double want = mean + stdDev * z;
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
      const Generator generator{ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f};
      const auto state = generator.start(-0x1p31, 0x1p31, 1);
      std::memcpy(state.bytes + 40, &engine, sizeof engine);
      double got[1500];
      ASSERT_EQ(generator.fill(got, 1500, state.get()), StatusOk);
      for (int i = 0; i < 1500; ++i) ASSERT_EQ(got[i], engine.next()) << i << " after " << steps;
      ASSERT_EQ(std::memcmp(state.bytes + 40, &engine, sizeof engine), 0);
    }
  }
}

TEST(Random, StatesSizesAndCuts) {
  const auto check = [](auto generator, auto a, auto b, int size, int context) {
    using T = typename decltype(generator)::Value;
    int got = 0, tag = 0;
    EXPECT_EQ(generator.getSize(nullptr), StatusNullPtr);
    EXPECT_EQ(generator.getSize(&got), StatusOk);
    EXPECT_EQ(got, size);
    EXPECT_EQ(generator.init(nullptr, a, b, 1), StatusNullPtr);

    const auto whole = generator.start(a, b, 42), cut = generator.start(a, b, 42);
    std::memcpy(&tag, whole.bytes, sizeof tag);
    EXPECT_EQ(tag, context);
    std::vector<T> expected(9000), pieces(9000);
    ASSERT_EQ(generator.fill(expected.data(), 9000, whole.get()), StatusOk);
    Random random("cuts");
    Guarded memory(4096 * sizeof(T));
    for (int i = 0; i < 9000;) {
      const int n = std::min(9000 - i, random.below(8) ? 1 + random.below(70) : 1 + random.below(4000));
      const std::size_t bytes = static_cast<std::size_t>(n) * sizeof(T);
      T* dst = reinterpret_cast<T*>(memory.put({random.below(2) == 0, 7}, pieces.data(), bytes));
      ASSERT_EQ(generator.fill(dst, n, cut.get()), StatusOk);
      ASSERT_TRUE(memory.intact() && cut.memory.intact());
      std::memcpy(&pieces[static_cast<std::size_t>(i)], dst, bytes);
      i += n;
    }
    EXPECT_EQ(pieces, expected);
    for (std::vector<T>* next : {&expected, &pieces}) {
      const auto& state = next == &expected ? whole : cut;
      EXPECT_EQ(generator.fill(next->data(), 9000, state.get()), StatusOk);
    }
    EXPECT_EQ(pieces, expected);

    T one = a;
    EXPECT_EQ(generator.fill(nullptr, 0, whole.get()), StatusNullPtr);
    EXPECT_EQ(generator.fill(&one, 0, nullptr), StatusNullPtr);
    tag = context == 35 ? 39 : 35;
    std::memcpy(whole.bytes, &tag, sizeof tag);
    EXPECT_EQ(generator.fill(&one, 0, whole.get()), StatusBadSize);
    EXPECT_EQ(generator.fill(&one, -1, whole.get()), StatusBadSize);
    EXPECT_EQ(generator.fill(&one, 1, whole.get()), StatusContextMismatch);
    EXPECT_EQ(one, a);
  };
  forUniform(check);
  forGauss(check);
}

// Sequences stay what they are from release to release.
TEST(Random, GoldenValues) {
  const Generator uniform{ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f};
  const Generator gauss{ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f};
  const auto u = uniform.start(0, 1, 2024);
  const auto g = gauss.start(0, 1, 2024);
  float a[1000];
  double z[1000];
  ASSERT_EQ(uniform.fill(a, 1000, u.get()), StatusOk);
  // The caller's rounding has no say in Gaussian sequences.
  std::fesetround(FE_DOWNWARD);
  const Status status = gauss.fill(z, 1000, g.get());
  EXPECT_EQ(std::fegetround(), FE_DOWNWARD);
  std::fesetround(FE_TONEAREST);
  ASSERT_EQ(status, StatusOk);
  const float uniformValues[] = {0x1.da5b26p-1f, 0x1.8fd0a8p-4f, 0x1.190a12p-3f, 0x1.3d79c8p-1f};
  const double gaussValues[] = {-0x1.19a35e7fe628dp+0, -0x1.54ed0a3c9ecf6p-3, -0x1.b99238c4fd91ep-2,
                                0x1.2e1b0ea364d2fp+0};
  for (int i = 0; i < 4; ++i) {
    EXPECT_EQ(a[i < 3 ? i : 999], uniformValues[i]);
    EXPECT_EQ(z[i < 3 ? i : 999], gaussValues[i]);
  }
}

// The largest distance of n values' distribution from the evenly distributed one, times sqrt(n).
double kolmogorov(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const auto n = static_cast<double>(values.size());
  double distance = 0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const double above = static_cast<double>(i + 1) / n - values[i];
    distance = std::max({distance, above, 1 / n - above});
  }
  return distance * std::sqrt(n);
}

// Counts against equal expectations, in standard deviations.
double chiSquare(const std::vector<int>& counts) {
  const double total = std::accumulate(counts.begin(), counts.end(), 0.0), cells = static_cast<double>(counts.size());
  double sum = 0;
  for (const int count : counts) sum += std::pow(count - total / cells, 2) / (total / cells);
  return (sum - (cells - 1)) / std::sqrt(2 * (cells - 1));
}

TEST(Random, Distributions) {
  constexpr int n = 200000;
  constexpr double kRare = 2.2;  // one time in ten thousand
  for (const uint32_t seed : {1u, 99u}) {
    const Generator uniform{ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f};
    const Generator gauss{ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f};
    const Generator bytes{ovksRandUniformGetSize_8u, ovksRandUniformInit_8u, ovksRandUniform_8u};
    std::vector<double> x(n);
    ASSERT_EQ(uniform.fill(x.data(), n, uniform.start(0, 1, seed).get()), StatusOk);
    EXPECT_LT(kolmogorov(x), kRare);
    std::vector<int> pairs(64 * 64), triples(16 * 16 * 16);
    const auto cell = [&](int i, int cells) { return static_cast<int>(x[static_cast<std::size_t>(i)] * cells); };
    for (int i = 0; i + 1 < n; i += 2) ++pairs[static_cast<std::size_t>(cell(i, 64) * 64 + cell(i + 1, 64))];
    for (int i = 0; i + 2 < n; i += 3)
      ++triples[static_cast<std::size_t>((cell(i, 16) * 16 + cell(i + 1, 16)) * 16 + cell(i + 2, 16))];
    EXPECT_LT(std::fabs(chiSquare(pairs)), 4);
    EXPECT_LT(std::fabs(chiSquare(triples)), 4);

    ASSERT_EQ(gauss.fill(x.data(), n, gauss.start(0, 1, seed).get()), StatusOk);
    for (double& z : x) z = 0.5 * std::erfc(-z / std::sqrt(2));
    EXPECT_LT(kolmogorov(x), kRare);
    std::fill(pairs.begin(), pairs.end(), 0);
    for (int i = 0; i + 1 < n; i += 2) ++pairs[static_cast<std::size_t>(cell(i, 64) * 64 + cell(i + 1, 64))];
    EXPECT_LT(std::fabs(chiSquare(pairs)), 4);

    std::vector<uint8_t> b(n);
    ASSERT_EQ(bytes.fill(b.data(), n, bytes.start(10, 20, seed).get()), StatusOk);
    std::vector<int> counts(11);
    for (const uint8_t v : b) {
      ASSERT_TRUE(v >= 10 && v <= 20);
      ++counts[v - 10u];
    }
    counts[0] += std::exchange(counts[10], 0);  // half a step each
    counts.pop_back();
    EXPECT_LT(std::fabs(chiSquare(counts)), 4);
  }
}

}  // namespace
}  // namespace ovks::test
