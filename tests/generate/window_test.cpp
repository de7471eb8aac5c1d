// SPDX-License-Identifier: MIT
// Windows against their formulas, written out: to the bit where the arithmetic is fixed, else within a bound.
#include <numbers>

#include "support/cosine.hpp"
#include "support/family.hpp"

namespace ovks::test {
namespace {

// What elements are multiplied by, or copied or zeroed instead; nothing where the length is too short. A shape makes it
// from a value of the weights' type, the length and perhaps alpha.
template <class W>
using Weights = std::vector<W>;
constexpr float kCopied = INFINITY, kZeroed = NAN;

double cosine(double x) { return static_cast<double>(cosineOf(x)); }

template <class W>
Weights<W> raised(int n, double offset, double amplitude) {
  if (n < 3) return {};
  const double theta = 2 * std::numbers::pi / (n - 1), twice = 2 * cosine(theta), four = 2 * cosine(2 * theta);
  std::vector<double> c = {amplitude, twice * amplitude - amplitude * cosine(theta)};
  for (int k = 2; k < 4; ++k) c.push_back(twice * c[k - 1] - c[k - 2]);
  for (int k = 4; k < n / 2; ++k) c.push_back(four * c[k - 2] - c[k - 4]);
  Weights<W> w(n, kCopied);
  for (int k = 0; k < n / 2; ++k) w[k] = w[n - 1 - k] = static_cast<W>(offset - c[k]);
  return w;
}
template <class W>
const Weights<W> kThree = {kZeroed, kCopied, kZeroed};
constexpr auto kHann = []<class W>(W, int n) { return n == 3 ? kThree<W> : raised<W>(n, 0.5, 0.5); };
constexpr auto kHamming = []<class W>(W, int n) { return raised<W>(n, 0.54, 0.46); };

// Every element is written twice, and keeps the later write.
constexpr auto kBlackman = []<class W>(W, int n, std::type_identity_t<W> alpha) {
  if (n <= 3) return n == 3 ? kThree<W> : Weights<W>();
  const double theta = 2 * std::numbers::pi / (n - 1);
  double c = 0.5, before = 0.5 * cosine(theta);
  Weights<W> w, last(n);
  for (int k = 0; k < n; ++k) {
    const W r = static_cast<W>(c), offset = W(0.5) + alpha, curvature = -4 * alpha, square = r * r;
    w.push_back((offset - r) + square * curvature);
    before = std::exchange(c, 2 * cosine(theta) * c - before);
  }
  for (int k = 0; k < n;) {
    const int group = k + 4 <= n ? 4 : 1;
    for (int i = 0; i < group; ++i) last[k + i] = w[k + i];
    for (int i = 0; i < group; ++i) last[n - 1 - k - i] = w[k + i];
    k += group;
  }
  return last;
};
constexpr auto kBlackmanStd = []<class W>(W w, int n) { return kBlackman(w, n, static_cast<W>(-0.16)); };
constexpr auto kBlackmanOpt = []<class W>(W w, int n) {
  const double q = 0.5 / cosine(std::numbers::pi / (n - 1));
  return n < 4 ? Weights<W>() : kBlackman(w, n, static_cast<W>(-(q * q)));
};

constexpr auto kBartlett = []<class W>(W, int n) {
  Weights<W> w(n < 3 ? 0 : n);
  for (std::size_t k = 0; k < w.size(); ++k)
    w[k] = static_cast<W>(std::min<long double>(k, static_cast<long double>(n - 1 - k)) * 2 / (n - 1));
  return w;
};

long double bessel(long double x) {
  const long double t = x * 0.26666666666666666;
  const auto series = [](long double u, std::initializer_list<long double> highestFirst) {
    long double sum = 0;
    for (const long double a : highestFirst) sum = sum * u + a;
    return sum;
  };
  if (x < 3.75) return series(t * t, {0.0045813L, 0.0360768L, 0.2659732L, 1.2067492L, 3.0899424L, 3.5156229L, 1});
  return expl(x) / sqrtl(x) *
         series(1 / t, {0.00392377L, -0.01647633L, 0.02635537L, -0.02057706L, 0.00916281L, -0.00157565L, 0.00225319L,
                        0.01328592L, 0.39894228L});
}

constexpr auto kKaiser = []<class W>(W, int n, std::type_identity_t<W> alpha) {
  Weights<W> w(n, kCopied);
  const long double beta = std::fabs(alpha * static_cast<W>(n - 1)) * 0.5L;
  for (int k = 0; k < n && n > 1; ++k) {
    const long double u = 1 - 2.0L * k / (n - 1);
    w[k] = static_cast<W>(bessel(beta * sqrtl(1 - u * u)) / bessel(beta));
  }
  return w;
};

// Whether got is x times the weight, to the bit or within a relative bound.
template <class R, class W>
bool fits(R got, R x, W weight, double bound) {
  if (std::isnan(weight)) return agrees(got, R{0});
  if (std::isinf(weight)) return std::memcmp(&got, &x, sizeof x) == 0;
  if constexpr (std::is_integral_v<R>) {
    using L = std::numeric_limits<R>;
    const double exact = static_cast<double>(x) * weight, clamped = std::clamp<double>(exact, L::min(), L::max());
    if (bound == 0) return got == std::nearbyint(clamped);
    return std::fabs(got - clamped) <= 0.5 + std::fabs(exact) * bound;
  } else {
    const R product = x * weight;
    if (bound == 0) return agrees(got, product);
    return agrees(got, Near{product, std::fabs(product) * bound + std::numeric_limits<R>::denorm_min()});
  }
}

// The weights may be off by so many roundings of their own, and by a 64f weight's few of evaluation.
template <class T, class... P>
Export describe(Status (*f)(T*, P...), int roundings, auto shape, auto... alpha) {
  using R = Real<std::remove_cv_t<T>>;
  using Weight = std::conditional_t<std::is_integral_v<R>, float, R>;
  const Prototype& p = prototypeOf(f);
  const auto judge = [=](Trial& t) {
    const auto weights = shape(Weight{}, t.call.shape().len, alpha...);
    if (t.status() != (weights.empty() ? StatusBadSize : StatusOk)) t.fail("status ", t.status());
    const std::vector<R> x = sequence<R>(t.call.data(0)), got = sequence<R>(t.results()[p.find("len") - 1]);
    for (std::size_t k = 0; k < parts<T> * weights.size(); ++k) {
      const Weight w = weights[k / parts<T>];
      if (!fits(got[k], x[k], w, roundings * (sizeof w == 4 ? 0x1p-23 : 0x1p-46)))
        t.fail("number ", k, ", ", text(x[k]), " times ", text(w), ", is ", text(got[k]));
    }
  };
  return {&p, false, judge, [=](Call& call, Random&) { (call.setConstant("alpha", static_cast<Weight>(alpha)), ...); }};
}

template <Beginning name>
void checkWindows(int roundings, auto shape, auto... alpha) {
  forFamilies<name>([&](auto f) { check(describe(f, roundings, shape, alpha...)); });
}

TEST(Window, RaisedCosines) {
  checkWindows<"ovksWinHann_">(0, kHann);
  checkWindows<"ovksWinHamming_">(0, kHamming);
}

// The longer the window, the rarer are the places where the recurrence's roundings are hard to foresee.
TEST(Window, LongRecurrences) {
  const int lengths[] = {10007, 65536, 300001};
  check(describe(ovksWinHann_64f_I, 0, kHann), lengths);
  check(describe(ovksWinHamming_64f_I, 0, kHamming), lengths);
  check(describe(ovksWinBlackmanStd_64f_I, 0, kBlackmanStd), lengths);
}

TEST(Window, Bartlett) { checkWindows<"ovksWinBartlett_">(1, kBartlett); }

TEST(Window, Blackman) {
  for (const float alpha : {-0.16f, 0.3f, -7.0f}) checkWindows<"ovksWinBlackman_">(0, kBlackman, alpha);
  checkWindows<"ovksWinBlackmanStd_">(0, kBlackmanStd);
  checkWindows<"ovksWinBlackmanOpt_">(0, kBlackmanOpt);
}

TEST(Window, Kaiser) {
  for (const float alpha : {0.0f, 0.01f, -0.0151f}) checkWindows<"ovksWinKaiser_">(2, kKaiser, alpha);
  // The centre's argument is where one polynomial follows the other.
  const int atTheLimit[] = {11};
  check(describe(ovksWinKaiser_64f_I, 2, kKaiser, 0.75), atTheLimit);
  std::vector<float> x(78, 1.0f), y = x;
  EXPECT_EQ(ovksWinKaiser_32f(x.data(), y.data(), 78, 1), StatusHugeWin);
  EXPECT_EQ(y, x);
  EXPECT_EQ(ovksWinKaiser_32f(x.data(), y.data(), 77, 1), StatusOk);
  EXPECT_EQ(ovksWinKaiser_32f_I(x.data(), 77, -1), StatusOk);
  EXPECT_EQ(y, x);
}

}  // namespace
}  // namespace ovks::test
