// SPDX-License-Identifier: MIT
#include "filter/sequences.hpp"

namespace ovks::test {
namespace {

template <class T>
Sequence<T> convolved(const Sequence<T>& a, const Sequence<T>& b, FilterAlg algorithm) {
  Random random("places");
  Shape shape;
  shape.len = static_cast<int>(a.size());
  shape.len2 = static_cast<int>(b.size());
  shape.algType = algorithm;
  Trial t(prototype(sizeof(T) == 4 ? "ovksConvolve_32f" : "ovksConvolve_64f"), shape, random);
  t.call.data(0) = bytesOf(a);
  t.call.data(2) = bytesOf(b);
  t.first();
  t.again();
  EXPECT_EQ(t.error(), "");
  return sequence<T>(t.results()[4]);
}

template <class T>
void checkOf(std::size_t m, std::size_t n, FilterAlg algorithm) {
  SCOPED_TRACE(testing::Message() << m << " by " << n << ' ' << sizeof(T) << " by algorithm " << algorithm);
  Random random("samples");
  const auto a = noise<T>(random, m), b = noise<T>(random, n);
  const auto got = convolved(a, b, algorithm);
  ASSERT_EQ(got.size(), m + n - 1);
  if (m < n) expectConvolution(got, a, b, algorithm != FilterAlgDirect);
  else expectConvolution(got, b, a, algorithm != FilterAlgDirect);
  EXPECT_TRUE(m == n || sameBits(convolved(b, a, algorithm), got));
}

void check(std::size_t m, std::size_t n, std::initializer_list<FilterAlg> algorithms) {
  for (const FilterAlg algorithm : algorithms) {
    checkOf<float>(m, n, algorithm);
    checkOf<double>(m, n, algorithm);
  }
}

TEST(Convolve, AgainstTheSum) {
  for (const std::size_t m : {1, 2, 3, 15, 16, 17, 40, 64, 100}) {
    for (const std::size_t n : {1, 2, 5, 16, 31, 33, 64, 129}) check(m, n, {FilterAlgDirect, FilterAlgFFT});
  }
  // Block path and single transform on either side of 3 : 1, tiles at the ends of long direct ones.
  for (const auto& [m, n] : {std::pair{600u, 200u}, {599, 200}, {700, 513}, {1100, 1024}, {2000, 1500}, {5000, 70}})
    check(m, n, {FilterAlgDirect, FilterAlgFFT, FilterAlgAuto});
  check(6000, 5000, {FilterAlgFFT});
}

// With impulses as one sequence the sum is short. Long transforms of both treat them alike to the bit.
template <class T>
void checkImpulses(std::size_t n) {
  SCOPED_TRACE(testing::Message() << n << ' ' << sizeof(T));
  Random random("samples");
  const auto x = noise<T>(random, n);
  Sequence<T> impulses(n);
  impulses[7] = T(0.75);
  impulses[n / 3] = T(-0.5);
  impulses[n - 1] = 1;
  const auto got = convolved(x, impulses, FilterAlgFFT);
  ASSERT_EQ(got.size(), 2 * n - 1);
  for (std::size_t i = 0; i < got.size(); ++i) {
    long double want = 0;
    for (const std::size_t k : {std::size_t{7}, n / 3, n - 1})
      if (i >= k && i - k < n) want += wide(impulses[k]) * wide(x[i - k]);
    ASSERT_LE(std::abs(wide(got[i]) - want), 32 * std::numeric_limits<T>::epsilon()) << i;
  }
  EXPECT_TRUE(sameBits(convolved(impulses, x, FilterAlgFFT), got));
}

TEST(Convolve, LongSequences) {
  for (const std::size_t n : {1024, 20000, 65536, 100001}) {
    checkImpulses<float>(n);
    checkImpulses<double>(n);
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

TEST(Convolve, SizesThatThereAreNot) {
  for (const auto& [length, type, status] : {std::tuple{1, DataType32fc, StatusBadDataType},
                                             {1 << 30, DataType32f, StatusBadFFTOrder},
                                             {1 << 27, DataType64f, StatusBadSize}}) {
    int size = 5;
    EXPECT_EQ(ovksConvolveGetBufferSize(length, length, type, FilterAlgFFT, &size), status);
    EXPECT_EQ(size, 0);
  }
}

TEST(Convolve, OnlyTheAlgorithmsLowByteCounts) {
  const float x = 3;
  float y = 0;
  uint8_t buffer[64];
  EXPECT_EQ(ovksConvolve_32f(&x, 1, &x, 1, &y, 0x100, buffer), StatusOk);
  EXPECT_EQ(y, 9);
}

}  // namespace
}  // namespace ovks::test
