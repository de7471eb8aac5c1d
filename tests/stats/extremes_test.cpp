// SPDX-License-Identifier: MIT
// Reductions where lanes, blocks or exponents reach their ends.
#include "support/harness.hpp"

namespace ovks::test {
namespace {

// What a call stores.
template <class D, class S, class... M>
D reduce(Status (*f)(const S*, int, D*, M...), const std::vector<S>& v, std::type_identity_t<M>... mode) {
  D d{};
  EXPECT_EQ(f(v.data(), static_cast<int>(v.size()), &d, mode...), StatusOk);
  return d;
}
template <class D, class A, class B, class... M>
D reduce(Status (*f)(const A*, const B*, int, D*, M...), const std::vector<A>& a, const std::vector<B>& b,
         std::type_identity_t<M>... mode) {
  D d{};
  EXPECT_EQ(f(a.data(), b.data(), static_cast<int>(a.size()), &d, mode...), StatusOk);
  return d;
}

TEST(Extremes, IntegersNeverOverflow) {
  constexpr int n = 3000001;
  const std::vector<int16_t> low(n, INT16_MIN), high(n, INT16_MAX);
  const std::vector<Complex16s> lowComplex(n, {INT16_MIN, INT16_MIN});
  const std::vector<int32_t> lowLong(n, INT32_MIN);
  constexpr int64_t square = int64_t{1} << 30;
  EXPECT_EQ(reduce(ovksSum_16s32s_Sfs, low, 10), -n * 32);
  EXPECT_EQ(reduce(ovksSum_16sc32sc_Sfs, lowComplex, 10).im, -n * 32);
  EXPECT_EQ(reduce(ovksMean_16s_Sfs, low, 0), INT16_MIN);
  EXPECT_EQ(reduce(ovksMean_32s_Sfs, lowLong, 0), INT32_MIN);
  EXPECT_EQ(reduce(ovksDotProd_16s64s, low, low), n * square);
  EXPECT_EQ(reduce(ovksDotProd_16s64s, low, high), n * int64_t{INT16_MIN} * INT16_MAX);
  EXPECT_EQ(reduce(ovksDotProd_16sc64sc, lowComplex, lowComplex).re, 0);
  EXPECT_EQ(reduce(ovksDotProd_16sc64sc, lowComplex, lowComplex).im, 2 * n * square);
  EXPECT_EQ(reduce(ovksDotProd_32s_Sfs, lowLong, lowLong, 62), n);
  EXPECT_EQ(reduce(ovksDotProd_16s32s32s_Sfs, low, lowLong, 46), n);
  EXPECT_EQ(reduce(ovksNorm_L1_16s64s_Sfs, low, 0), int64_t{n} * 32768);
  EXPECT_EQ(reduce(ovksNorm_L2Sqr_16s64s_Sfs, low, 0), n * square);
  EXPECT_EQ(reduce(ovksNormDiff_L1_16s64s_Sfs, low, high, 0), int64_t{n} * 65535);
  EXPECT_EQ(reduce(ovksNormDiff_L2Sqr_16s64s_Sfs, low, high, 0), n * int64_t{65535} * 65535);
  EXPECT_EQ(reduce(ovksNormDiff_Inf_16s32s_Sfs, low, high, 0), 65535);
  EXPECT_EQ(reduce(ovksStdDev_16s_Sfs, low, INT_MIN), 0);
}

TEST(Extremes, HugeFactorsLeaveZero) {
  EXPECT_EQ(reduce(ovksSum_16s32s_Sfs, {1, -1}, INT_MIN), 0);
  EXPECT_EQ(reduce(ovksSum_16s32s_Sfs, {-1, 0}, INT_MIN), INT32_MIN);
  EXPECT_EQ(reduce(ovksNorm_L2_16s32s_Sfs, {0, 0}, -2000), 0);
  EXPECT_EQ(reduce(ovksNorm_L2_16s32s_Sfs, {0, 1}, -2000), INT32_MAX);
}

TEST(Extremes, PathsCarryTheirPrecision) {
  EXPECT_EQ(reduce(ovksSum_32f, std::vector(10000000, 1.0f), AlgHintAccurate), 10000000.0f);
  // Where rounding makes n Q - S S negative.
  for (std::size_t n = 2; n < 300; ++n)
    EXPECT_LT(reduce(ovksStdDev_32f, std::vector(n, 0.1f), AlgHintNone), 1e-8f) << n;
  // The fast path leaves single precision after 8192 elements, so that ones still count.
  std::vector<float> uneven(8192 + 65536, 1.0f);
  std::fill_n(uneven.begin(), 8192, 0x1p24f);
  EXPECT_EQ(reduce(ovksSum_32f, uneven, AlgHintFast), 0x1p37f + 0x1p16f);
  // Runs in single precision join in double precision, and give way to it where they overflow.
  const std::vector<Complex32f> ones(1 << 20, {0, 1});
  std::vector<Complex32f> large(ones.size(), {0x1p24f, 1});
  EXPECT_EQ(reduce(ovksDotProd_32fc, large, ones).im, 0x1p44f);
  EXPECT_EQ(reduce(ovksDotProd_32fc, large, ones).re, -0x1p20f);
  // They end after 512 elements, so that ones between large values still count.
  std::vector<Complex32f> between(1536, {1, 0});
  std::fill_n(between.begin(), 512, Complex32f{0x1p24f, 0});
  std::fill_n(between.end() - 512, 512, Complex32f{-0x1p24f, 0});
  EXPECT_EQ(reduce(ovksDotProd_32fc, between, std::vector<Complex32f>(1536, {1, 0})).re, 512);
  large[0] = {0, 0x1p127f}, large[1] = {0, -0x1p127f};
  const Complex32f sum = reduce(ovksDotProd_32fc, large, std::vector<Complex32f>(ones.size(), {4, 0}));
  EXPECT_EQ(sum.re, 0x1p46f - 0x1p27f);
  EXPECT_TRUE(std::isfinite(sum.im));
  EXPECT_EQ(reduce(ovksStdDev_64f, std::vector(12345, 0.1)), 0.0);
  std::vector<double> far(100000, 1e9);
  for (std::size_t i = 0; i < far.size(); i += 2) ++far[i];
  EXPECT_NEAR(reduce(ovksStdDev_64f, far), 0.5 * std::sqrt(1e5 / 99999.0), 1e-14);
  // Near 1 logarithms are small, and a plain product would not tell them. Then the fastest growing products, of four
  // elements from 32f, of single ones from 64f.
  EXPECT_NEAR(reduce(ovksSumLn_64f, std::vector(100000, 1 + 0x1p-40)) / (1e5 * std::log1p(0x1p-40)), 1, 1e-14);
  EXPECT_NEAR(reduce(ovksSumLn_32f64f, std::vector(300000, 1.09f)) / (3e5 * std::log(double{1.09f})), 1, 1e-14);
  EXPECT_NEAR(reduce(ovksSumLn_64f, std::vector(100000, 1.41)) / (1e5 * std::log(1.41)), 1, 1e-14);
}

TEST(Extremes, SquaresOutOfRange) {
  for (const double scale : {1e-300, 1e-170, 1.0, 1e170, 1e300}) {
    const std::vector<Complex64f> z{{3 * scale, -4 * scale}, {0, 0}}, zero(2);
    EXPECT_NEAR(reduce(ovksNorm_L2_64f, {3 * scale, 4 * scale}) / scale, 5, 1e-14);
    for (const auto f : {ovksNorm_L2_64fc64f, ovksNorm_Inf_64fc64f, ovksNorm_L1_64fc64f})
      EXPECT_NEAR(reduce(f, z) / scale, 5, 1e-14);
    EXPECT_NEAR(reduce(ovksNormDiff_L2_64fc64f, z, zero) / scale, 5, 1e-14);
    EXPECT_EQ(reduce(ovksNorm_L2_64fc64f, zero), 0);
  }
  for (const float scale : {1e-42f, 1e-30f, 1e-18f, 1e18f, 1e30f}) {
    const std::vector<Complex32f> z{{3 * scale, -4 * scale}, {0, 0}};
    EXPECT_NEAR(reduce(ovksNorm_Inf_32fc32f, z) / scale, 5, scale < 1e-40f ? 1e-2 : 1e-6);
    EXPECT_NEAR(reduce(ovksNorm_L1_32fc64f, z) / scale, 5, scale < 1e-40f ? 1e-2 : 1e-6);
    EXPECT_NEAR(reduce(ovksNorm_L1_32f, {3 * scale, -4 * scale}) / scale, 7, 1e-6);
  }
  for (const auto f : {ovksNorm_L1_32f, ovksNorm_L2_32f}) EXPECT_EQ(reduce(f, std::vector(100, -3e38f)), HUGE_VALF);
}

TEST(Extremes, Logarithms) {
  // Two negatives make no positive, and denormals are numbers.
  EXPECT_TRUE(std::isnan(reduce(ovksSumLn_32f, {-1, -1})));
  EXPECT_TRUE(std::isnan(reduce(ovksSumLn_16s32f, {-1, -1})));
  EXPECT_NEAR(reduce(ovksSumLn_64f, std::vector(4, 0x1p-1074)), 4 * -1074 * std::log(2), 1e-9);
  EXPECT_NEAR(reduce(ovksSumLn_32f64f, std::vector(4, 0x1p-149f)), 4 * -149 * std::log(2), 1e-10);
}

}  // namespace
}  // namespace ovks::test
