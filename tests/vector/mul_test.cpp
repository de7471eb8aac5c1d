// SPDX-License-Identifier: MIT
#include "support/family.hpp"

namespace ovks::test {
namespace {

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

constexpr auto kProduct = []<class A, class B>(A a, B b) {
  constexpr bool floating = requires { requires std::is_same_v<A, B> && std::floating_point<decltype(a.re)>; };
  if constexpr (floating) return productSum({}, a, b);
  else return a * b;
};
constexpr auto kSquare = [](auto a) { return kProduct(a, a); };

TEST(Mul, VectorsAndConstants) {
  checkFamilies<"ovksMul_", "ovksMulC_16", "ovksMulC_32s", "ovksMulC_32fc", "ovksMulC_64fc", "ovksMulC_64s",
                "ovksMulC_8u">(kProduct);
  checkExports(kProduct, ovksMulC_32f, ovksMulC_32f_I, ovksMulC_64f, ovksMulC_64f_I);
}

TEST(Mul, FloatsToIntegers) {
  checkFamilies<"ovksMulC_32f16s", "ovksMulC_64f64s", "ovksMulC_Low">([](auto x, auto c) { return Exact(x * c); });
}

TEST(Mul, Squares) { checkFamilies<"ovksSqr_">(kSquare); }

TEST(Mul, AddedProducts) {
  checkFamilies<"ovksAddProduct_">([]<class T>(auto a, auto b, T c) {
    if constexpr (ComplexElement<T>) return productSum(c, a, b);
    else if constexpr (std::floating_point<T>) return std::fma(a, b, c);
    else return c + a * b;
  });
  checkFamilies<"ovksAddProductC_">([](auto a, auto b, auto c) { return std::fma(a, b, c); });
}

// Every tie and every limit of the factors that have code of their own.
TEST(Mul, AllBytesAndShorts) {
  checkAll(describe(kProduct, ovksMul_8u_Sfs), -2, 17);
  checkAll(describe(kProduct, ovksMulC_16s_Sfs), -1, 31);
  checkAll(describe(kSquare, ovksSqr_16s_Sfs), 0, 33);
  checkAll(describe(kSquare, ovksSqr_16u_Sfs), 0, 33);
}

}  // namespace
}  // namespace ovks::test
