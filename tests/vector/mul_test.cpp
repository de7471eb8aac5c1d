// SPDX-License-Identifier: MIT
#include "support/harness.hpp"

namespace ovks::test {
namespace {

constexpr auto kProduct = [](auto a, auto b) { return a * b; };
constexpr auto kSquare = [](auto a) { return a * a; };

// sum + p + q, at most two of the three operations rounding.
template <class T>
Near twiceRounded(long double sum, long double p, long double q) {
  constexpr long double kMax = std::numeric_limits<T>::max(), kUnit = std::numeric_limits<T>::epsilon() / 2;
  const long double value = sum + p + q, largest = std::fabs(sum) + std::max(std::fabs(p), std::fabs(q));
  const bool overflows = std::max(largest, std::fabs(value)) > kMax / 2 && std::isfinite(largest);
  if (overflows) return {value, INFINITY};
  return {value, 1.001L * kUnit * (largest + std::fabs(value)) + 2 * std::numeric_limits<T>::denorm_min()};
}

template <class T>
Complex<Near> productSum(Complex<T> c, Complex<T> a, Complex<T> b) {
  using L = long double;
  return {twiceRounded<T>(c.re, L{a.re} * b.re, -(L{a.im} * b.im)),
          twiceRounded<T>(c.im, L{a.re} * b.im, L{a.im} * b.re)};
}

TEST(Mul, Vectors) {
  checkExports(kProduct, ovksMul_16s, ovksMul_16s32f, ovksMul_16s32s_Sfs, ovksMul_16s_I, ovksMul_16s_ISfs,
               ovksMul_16s_Sfs, ovksMul_16sc_ISfs, ovksMul_16sc_Sfs, ovksMul_16u16s_Sfs, ovksMul_16u_ISfs,
               ovksMul_16u_Sfs, ovksMul_32f, ovksMul_32f32fc, ovksMul_32f32fc_I, ovksMul_32f_I, ovksMul_32s_ISfs,
               ovksMul_32s_Sfs, ovksMul_32sc_ISfs, ovksMul_32sc_Sfs, ovksMul_64f, ovksMul_64f_I, ovksMul_8u16u,
               ovksMul_8u_ISfs, ovksMul_8u_Sfs);
}

TEST(Mul, Constants) {
  checkExports(kProduct, ovksMulC_16s_I, ovksMulC_16s_ISfs, ovksMulC_16s_Sfs, ovksMulC_16sc_ISfs, ovksMulC_16sc_Sfs,
               ovksMulC_16u_ISfs, ovksMulC_16u_Sfs, ovksMulC_32f, ovksMulC_32f_I, ovksMulC_32s_ISfs, ovksMulC_32s_Sfs,
               ovksMulC_32sc_ISfs, ovksMulC_32sc_Sfs, ovksMulC_64f, ovksMulC_64f_I, ovksMulC_64s_ISfs, ovksMulC_8u_ISfs,
               ovksMulC_8u_Sfs);
}

TEST(Mul, FloatsToIntegers) {
  checkExports([](auto x, auto c) { return Exact(static_cast<decltype(c)>(x) * c); }, ovksMulC_32f16s_Sfs,
               ovksMulC_64f64s_ISfs, ovksMulC_Low_32f16s);
}

TEST(Mul, ComplexFloats) {
  checkExports([](auto a, auto b) { return productSum({}, a, b); }, ovksMul_32fc, ovksMul_32fc_I, ovksMul_64fc,
               ovksMul_64fc_I, ovksMulC_32fc, ovksMulC_32fc_I, ovksMulC_64fc, ovksMulC_64fc_I);
  checkExports([](auto a) { return productSum({}, a, a); }, ovksSqr_32fc, ovksSqr_32fc_I, ovksSqr_64fc, ovksSqr_64fc_I);
  checkExports([](auto a, auto b, auto c) { return productSum(c, a, b); }, ovksAddProduct_32fc, ovksAddProduct_64fc);
}

TEST(Sqr, Vectors) {
  checkExports(kSquare, ovksSqr_16s_ISfs, ovksSqr_16s_Sfs, ovksSqr_16sc_ISfs, ovksSqr_16sc_Sfs, ovksSqr_16u_ISfs,
               ovksSqr_16u_Sfs, ovksSqr_32f, ovksSqr_32f_I, ovksSqr_64f, ovksSqr_64f_I, ovksSqr_8u_ISfs,
               ovksSqr_8u_Sfs);
}

TEST(AddProduct, Vectors) {
  checkExports([](auto a, auto b, auto c) { return c + a * b; }, ovksAddProduct_16s32s_Sfs, ovksAddProduct_16s_Sfs,
               ovksAddProduct_32s_Sfs);
  checkExports([](auto a, auto b, auto c) { return std::fma(a, b, c); }, ovksAddProduct_32f, ovksAddProduct_64f,
               ovksAddProductC_32f);
}

// Every tie and every limit of the factors that have code of their own.
TEST(Mul, AllBytes) {
  const auto [a, b] = allBytePairs();
  for (int factor = -2; factor <= 17; ++factor)
    checkOn(describe(kProduct, ovksMul_8u_Sfs), {a.data(), b.data()}, 1 << 16, RoundNear, factor);
}

TEST(Mul, AllShorts) {
  const auto x = allShorts<std::int16_t>();
  for (const std::int16_t c : {-32768, -32767, -16384, -192, -128, -1, 1, 3, 64, 128, 12345, 16384, 24576, 32767}) {
    for (const int factor : {0, 1, 14, 15, 16, 30})
      checkOn(describe(kProduct, ovksMulC_16s_Sfs), {x.data(), &c}, 1 << 16, RoundNear, factor);
  }
  for (int factor = 0; factor <= 33; ++factor) {
    checkOn(describe(kSquare, ovksSqr_16s_Sfs), {x.data()}, 1 << 16, RoundNear, factor);
    checkOn(describe(kSquare, ovksSqr_16u_Sfs), {x.data()}, 1 << 16, RoundNear, factor);
  }
}

}  // namespace
}  // namespace ovks::test
