// SPDX-License-Identifier: MIT
#include "stats/reduction.hpp"

namespace ovks::test {
namespace {

constexpr auto kValue = [](auto x) { return x; };

template <class T>
auto squared(T x) {
  if constexpr (ComplexElement<T>) return x.re * x.re + x.im * x.im;
  else return x * x;
}
constexpr auto kSquare = [](auto x) { return squared(x); };
constexpr auto kSquareOfDifference = [](auto x, auto y) { return squared(x - y); };

template <class T>
auto modulus(T x) {
  if constexpr (ComplexElement<T>) return std::hypot(real(x.re), real(x.im));
  else if constexpr (std::is_same_v<T, Exact>) return x.numerator < 0 ? Exact() - x : x;
  else return std::fabs(x);
}
constexpr auto kModulus = [](auto x) { return modulus(x); };
constexpr auto kModulusOfDifference = [](auto x, auto y) { return modulus(x - y); };

// Makes a sum the largest of its terms.
template <class T>
struct Largest {
  T value{};
  friend Largest operator+(Largest a, Largest b) { return real(a.value) > real(b.value) ? a : b; }
};
template <class T>
long double magnitude(Largest<T>) {
  return 0;
}
template <class T>
Largest<T> disturbed(Largest<T> sum, long double) {
  return sum;
}
constexpr auto kLargest = [](auto sum, int) { return sum.value; };

TEST(Sum, All) {
  checkReductions(Reduction{kValue, kWhole}, ovksSum_16s32s_Sfs, ovksSum_16s_Sfs, ovksSum_16sc32sc_Sfs,
                  ovksSum_16sc_Sfs, ovksSum_32f, ovksSum_32fc, ovksSum_32s_Sfs, ovksSum_64f, ovksSum_64fc);
}

TEST(Mean, All) {
  const auto divided = []<class T>(T sum, int n) {
    const auto by = [n](auto x) {
      if constexpr (std::is_same_v<decltype(x), Exact>) x.denominator = n;
      else x /= n;
      return x;
    };
    if constexpr (ComplexElement<T>) return T{by(sum.re), by(sum.im)};
    else return by(sum);
  };
  checkReductions(Reduction{kValue, divided}, ovksMean_16s_Sfs, ovksMean_16sc_Sfs, ovksMean_32f, ovksMean_32fc,
                  ovksMean_32s_Sfs, ovksMean_64f, ovksMean_64fc);
}

// The sums of x and of x^2 in one.
constexpr auto kMoments = []<class T>(T x) { return Complex<T>{x, x * x}; };

template <class T>
long double deviation(Complex<T> m, int n) {
  const long double squares = n * real(m.im) - real(m.re) * real(m.re);
  return std::sqrt(std::max(squares, 0.0L) / n / (n - 1));
}

TEST(Deviation, All) {
  const auto alone = [](auto m, int n) { return deviation(m, n); };
  checkReductions(Reduction{kMoments, alone, false, 2}, ovksStdDev_16s32s_Sfs, ovksStdDev_16s_Sfs, ovksStdDev_32f,
                  ovksStdDev_64f);
  const auto both = [](auto m, int n) { return Complex<long double>{real(m.re) / n, deviation(m, n)}; };
  checkReductions(Reduction{kMoments, both, false, 2}, ovksMeanStdDev_16s32s_Sfs, ovksMeanStdDev_16s_Sfs,
                  ovksMeanStdDev_32f, ovksMeanStdDev_64f);
}

TEST(Norm, Largest) {
  checkReductions(Reduction{[](auto x) { return Largest<decltype(modulus(x))>{modulus(x)}; }, kLargest},
                  ovksNorm_Inf_16s32f, ovksNorm_Inf_16s32s_Sfs, ovksNorm_Inf_32f, ovksNorm_Inf_32fc32f,
                  ovksNorm_Inf_64f, ovksNorm_Inf_64fc64f);
  checkReductions(Reduction{[](auto x, auto y) { return Largest<decltype(modulus(x))>{modulus(x - y)}; }, kLargest},
                  ovksNormDiff_Inf_16s32f, ovksNormDiff_Inf_16s32s_Sfs, ovksNormDiff_Inf_32f, ovksNormDiff_Inf_32fc32f,
                  ovksNormDiff_Inf_64f, ovksNormDiff_Inf_64fc64f);
}

TEST(Norm, Sums) {
  checkReductions(Reduction{kModulus, kWhole}, ovksNorm_L1_16s32f, ovksNorm_L1_16s32s_Sfs, ovksNorm_L1_16s64s_Sfs,
                  ovksNorm_L1_32f, ovksNorm_L1_32fc64f, ovksNorm_L1_64f, ovksNorm_L1_64fc64f);
  checkReductions(Reduction{kModulusOfDifference, kWhole}, ovksNormDiff_L1_16s32f, ovksNormDiff_L1_16s32s_Sfs,
                  ovksNormDiff_L1_16s64s_Sfs, ovksNormDiff_L1_32f, ovksNormDiff_L1_32fc64f, ovksNormDiff_L1_64f,
                  ovksNormDiff_L1_64fc64f);
}

TEST(Norm, Squares) {
  checkReductions(Reduction{kSquare, kRoot}, ovksNorm_L2_16s32f, ovksNorm_L2_16s32s_Sfs, ovksNorm_L2_32f,
                  ovksNorm_L2_32fc64f, ovksNorm_L2_64f, ovksNorm_L2_64fc64f);
  checkReductions(Reduction{kSquare, kWhole}, ovksNorm_L2Sqr_16s64s_Sfs);
  checkReductions(Reduction{kSquareOfDifference, kRoot}, ovksNormDiff_L2_16s32f, ovksNormDiff_L2_16s32s_Sfs,
                  ovksNormDiff_L2_32f, ovksNormDiff_L2_32fc64f, ovksNormDiff_L2_64f, ovksNormDiff_L2_64fc64f);
  checkReductions(Reduction{kSquareOfDifference, kWhole}, ovksNormDiff_L2Sqr_16s64s_Sfs);
}

TEST(DotProd, All) {
  checkReductions(Reduction{[](auto x, auto y) { return x * y; }, kWhole}, ovksDotProd_16s16sc64sc, ovksDotProd_16s32f,
                  ovksDotProd_16s32s32s_Sfs, ovksDotProd_16s32s_Sfs, ovksDotProd_16s64s, ovksDotProd_16sc64sc,
                  ovksDotProd_32f, ovksDotProd_32f32fc, ovksDotProd_32f32fc64fc, ovksDotProd_32f64f, ovksDotProd_32fc,
                  ovksDotProd_32fc64fc, ovksDotProd_32s_Sfs, ovksDotProd_64f, ovksDotProd_64f64fc, ovksDotProd_64fc);
}

TEST(SumLn, All) {
  const auto logarithm = [](auto x) { return std::log(real(x)); };
  checkReductions(Reduction{logarithm, kWhole, true, 1, 0x1p-54L}, ovksSumLn_16s32f, ovksSumLn_32f, ovksSumLn_32f64f,
                  ovksSumLn_64f);
}

}  // namespace
}  // namespace ovks::test
