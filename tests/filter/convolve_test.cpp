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
void check(std::size_t m, std::size_t n, FilterAlg algorithm) {
  SCOPED_TRACE(testing::Message() << m << " by " << n << ' ' << sizeof(T) << " by algorithm " << algorithm);
  Random random("samples");
  const auto a = noise<T>(random, std::min(m, n)), b = noise<T>(random, std::max(m, n));
  const auto got = convolved(b, a, algorithm);
  ASSERT_EQ(got.size(), m + n - 1);
  expectConvolution(got, a, b, algorithm != FilterAlgDirect);
  EXPECT_TRUE(m == n || sameBits(convolved(a, b, algorithm), got));
}

TEST(Convolve, AgainstTheSum) {
  // Block path and single transform on either side of 3 : 1, tiles at the ends of long direct ones.
  std::vector<std::pair<std::size_t, std::size_t>> lengths = {{600, 200},   {599, 200},   {700, 513},
                                                              {1100, 1024}, {2000, 1500}, {5000, 70}};
  for (const std::size_t m : {1, 2, 3, 15, 16, 17, 40, 64, 100}) {
    for (const std::size_t n : {1, 2, 5, 16, 31, 33, 64, 129}) lengths.push_back({m, n});
  }
  for (const auto& [m, n] : lengths) {
    for (const FilterAlg algorithm : {FilterAlgAuto, FilterAlgDirect, FilterAlgFFT}) {
      check<float>(m, n, algorithm);
      check<double>(m, n, algorithm);
    }
  }
  check<float>(6000, 5000, FilterAlgFFT);
  check<double>(6000, 5000, FilterAlgFFT);
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

// What Auto takes shows in the size of its buffer. Only the algorithm's low byte counts.
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

}  // namespace
}  // namespace ovks::test
