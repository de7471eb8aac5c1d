// SPDX-License-Identifier: MIT
#include "support/family.hpp"

namespace ovks::test {
namespace {

// The quotient of a zero divisor.
Exact overZero(Exact dividend) { return Exact::infinite(dividend); }
template <std::floating_point T>
T overZero(T dividend) {
  if (dividend < 0 || dividend > 0) return std::copysign(std::numeric_limits<T>::infinity(), dividend);
  if constexpr (sizeof(T) == 4) return std::bit_cast<float>(0x7fbfffff);
  else return std::bit_cast<double>(0x7ff7ffffffffffff);
}

Exact ratio(Exact divisor, Exact dividend) {
  dividend.denominator = divisor.numerator;
  dividend.leastFactor = -30;
  return dividend;
}
template <std::floating_point T>
T ratio(T divisor, T dividend) {
  return dividend / divisor;
}
Complex<Exact> ratio(Complex<Exact> a, Complex<Exact> c) {
  const Exact square = a.re * a.re + a.im * a.im;
  return {ratio(square, a.re * c.re + a.im * c.im), ratio(square, a.re * c.im - a.im * c.re)};
}
// Part (p + q) / |a|^2 of c / a, computed in double precision: roundings of the numerator, of the square and of the
// quotient. Double quotients lose what vanishes once a is scaled to unit size (or 2^1023 times, when subnormal), and
// numerators beyond their range.
template <class T>
Near partRatio(long double p, long double q, Complex<T> a, Complex<T> c) {
  using L = std::numeric_limits<T>;
  constexpr long double kUnit = L::epsilon() / 2, kWork = 0x1p-53L;
  const long double x = a.re, y = a.im, square = x * x + y * y, value = (p + q) / square;
  const long double rounded = std::max(std::fabs(p), std::fabs(q)) / square;
  const long double sizeA = std::sqrt(square), sizeC = std::hypot(c.re, c.im);
  if (std::isfinite(rounded) && std::max(sizeC, std::fabs(value)) > L::max() / 16) return {value, INFINITY};
  const long double vanished = sizeof(T) == 8 ? 8 * (1 + sizeC) * std::max(1 / sizeA, 0x1p-1023L / square) : 0;
  return {value,
          1.001L * (kWork * rounded + (kUnit + 3 * kWork) * std::fabs(value)) + L::denorm_min() * (1 + vanished)};
}
template <std::floating_point T>
Complex<Near> ratio(Complex<T> a, Complex<T> c) {
  using W = long double;
  return {partRatio(W{a.re} * c.re, W{a.im} * c.im, a, c), partRatio(W{a.re} * c.im, -(W{a.im} * c.re), a, c)};
}

constexpr auto kQuotient = []<class T>(T divisor, T dividend) -> WithStatus<decltype(ratio(divisor, dividend))> {
  if (divisor != 0) return {ratio(divisor, dividend), StatusOk};
  if constexpr (requires { ratio(divisor, dividend).re.bound; })
    return {{{overZero(dividend.re), 0}, {overZero(dividend.im), 0}}, StatusDivByZero};
  else if constexpr (ComplexElement<T>) return {{overZero(dividend.re), overZero(dividend.im)}, StatusDivByZero};
  else return {overZero(dividend), StatusDivByZero};
};

TEST(Div, Vectors) { checkFamilies<"ovksDiv_", "ovksDivCRev_">(kQuotient); }

TEST(Div, Constants) {
  checkFamilies<"ovksDivC_">([](auto dividend, auto divisor) {
    auto q = kQuotient(divisor, dividend);
    if (q.status != StatusOk) q.status = StatusDivByZeroErr;
    return q;
  });
}

TEST(Div, AllBytesAndShorts) {
  checkAll(describe(kQuotient, ovksDiv_Round_8u_Sfs), -32, 10);
  checkAll(describe(kQuotient, ovksDiv_Round_16s_Sfs), -31, 17);
  checkAll(describe(kQuotient, ovksDiv_Round_16u_Sfs), -31, 17);
}

}  // namespace
}  // namespace ovks::test
