// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "filter/filter_support.hpp"

namespace ovks::test {
namespace {

Status convolve(const float* a, int m, const float* b, int n, float* d, FilterAlg alg, uint8_t* buffer) {
  return ovksConvolve_32f(a, m, b, n, d, alg, buffer);
}
Status convolve(const double* a, int m, const double* b, int n, double* d, FilterAlg alg, uint8_t* buffer) {
  return ovksConvolve_64f(a, m, b, n, d, alg, buffer);
}

template <class T>
constexpr DataType kType = sizeof(T) == 4 ? DataType32f : DataType64f;

template <class T>
Sequence<T> convolved(const Sequence<T>& a, const Sequence<T>& b, FilterAlg alg) {
  const int m = static_cast<int>(a.size()), n = static_cast<int>(b.size());
  int size;
  EXPECT_EQ(ovksConvolveGetBufferSize(m, n, kType<T>, alg, &size), StatusOk);
  const Exactly buffer(static_cast<std::size_t>(size), 7), out((a.size() + b.size() - 1) * sizeof(T)), x(a), y(b);
  EXPECT_EQ(convolve(x.template as<T>(), m, y.template as<T>(), n, out.template as<T>(), alg, buffer.as<uint8_t>()),
            StatusOk);
  EXPECT_TRUE(buffer.intact() && out.intact());
  return out.template values<T>(a.size() + b.size() - 1);
}

template <class T>
void check(std::size_t m, std::size_t n, FilterAlg alg) {
  Noise noise(static_cast<unsigned>(m * 131 + n));
  const auto a = noise.sequence<T>(m), b = noise.sequence<T>(n);
  const auto got = convolved(a, b, alg);
  const auto want = convolution(a, b, 0, m + n - 1);
  const long double unit = std::numeric_limits<T>::epsilon() / 2, spread = alg == FilterAlgDirect ? 0 : 16;
  for (std::size_t i = 0; i < want.size(); ++i) {
    const long double least = static_cast<long double>(std::min(m, n));
    ASSERT_NEAR(got[i], want[i].first, unit * (2 * least * want[i].second + spread * std::sqrt(least)))
        << m << " by " << n << " by algorithm " << alg << " at " << i;
  }
  EXPECT_TRUE(m == n || sameBits(convolved(b, a, alg), got)) << m << " by " << n;
}

template <class T>
class ConvolveTest : public testing::Test {};
using Floating = testing::Types<float, double>;
TYPED_TEST_SUITE(ConvolveTest, Floating);

TYPED_TEST(ConvolveTest, AgainstTheSum) {
  for (const std::size_t m : {1, 2, 3, 15, 16, 17, 40, 64, 100}) {
    for (const std::size_t n : {1, 2, 5, 16, 31, 33, 64, 129}) {
      for (const FilterAlg alg : {FilterAlgDirect, FilterAlgFFT}) check<TypeParam>(m, n, alg);
    }
  }
  // Block path and single transform on either side of 3 : 1, tiles at the ends of long direct ones.
  for (const auto& [m, n] : {std::pair{600, 200}, {599, 200}, {700, 513}, {1100, 1024}, {2000, 1500}, {5000, 70}}) {
    for (const FilterAlg alg : {FilterAlgDirect, FilterAlgFFT, FilterAlgAuto})
      check<TypeParam>(static_cast<std::size_t>(m), static_cast<std::size_t>(n), alg);
  }
}

// What Auto takes shows in the size of its buffer.
TEST(Convolve, AutomaticChoice) {
  int size;
  for (const auto& [m, n, direct] :
       {std::tuple{63, 100000, true}, {64, 448, true}, {64, 449, false}, {449, 64, false}}) {
    EXPECT_EQ(ovksConvolveGetBufferSize(m, n, DataType32f, 0x7700, &size), StatusOk);
    EXPECT_EQ(size == 64, direct) << m << ' ' << n;
  }
}

TEST(Convolve, ChecksInTheirOrder) {
  int size = 5;
  EXPECT_EQ(ovksConvolveGetBufferSize(0, 0, 0, 9, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksConvolveGetBufferSize(0, 1, 0, 9, &size), StatusBadSize);
  EXPECT_EQ(ovksConvolveGetBufferSize(1, 1, 0, 0x103, &size), StatusBadAlgType);
  EXPECT_EQ(size, 5);
  EXPECT_EQ(ovksConvolveGetBufferSize(1, 1, DataType32fc, 0, &size), StatusBadDataType);
  EXPECT_EQ(size, 0);
  size = 5;
  EXPECT_EQ(ovksConvolveGetBufferSize(1 << 30, 1 << 29, DataType32f, FilterAlgFFT, &size), StatusBadFFTOrder);
  EXPECT_EQ(size, 0);
  size = 5;
  EXPECT_EQ(ovksConvolveGetBufferSize(1 << 27, 1 << 27, DataType64f, FilterAlgFFT, &size), StatusBadSize);
  EXPECT_EQ(size, 0);
  const float x = 3;
  float y = 9;
  uint8_t buffer[64];
  EXPECT_EQ(ovksConvolve_32f(nullptr, 0, &x, 0, &y, 9, buffer), StatusNullPtr);
  EXPECT_EQ(ovksConvolve_32f(&x, 1, &x, 1, &y, 9, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksConvolve_32f(&x, 1, &x, 0, &y, 9, buffer), StatusBadSize);
  EXPECT_EQ(ovksConvolve_32f(&x, 1, &x, 1, &y, 9, buffer), StatusBadAlgType);
  EXPECT_EQ(y, 9);
  EXPECT_EQ(ovksConvolve_32f(&x, 1, &x, 1, &y, 0x100, buffer), StatusOk);
  EXPECT_EQ(y, 9);
}

}  // namespace
}  // namespace ovks::test
