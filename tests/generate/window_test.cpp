// SPDX-License-Identifier: MIT
// Windows against their formulas, written out: to the bit where the arithmetic is fixed, else within a bound.
#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <numbers>

#include "support/cosine.hpp"
#include "support/harness.hpp"

namespace ovks::test {
namespace {

template <class T>
using Weight = std::conditional_t<std::is_integral_v<Real<T>>, float, Real<T>>;

// What becomes of one element: it is multiplied, copied or zeroed. The product may be off by a relative bound.
template <class W>
struct Fate {
  W weight;
  enum { Multiplied, Copied, Zeroed } how = Multiplied;
  double bound = 0;
};
template <class W>
using Fates = std::vector<Fate<W>>;

double cosine(double x) { return static_cast<double>(cosineOf(x)); }

template <class W>
Fates<W> ends(Fates<W> fates) {
  fates[0].how = fates[2].how = Fate<W>::Zeroed;
  fates[1].how = Fate<W>::Copied;
  return fates;
}

template <class W>
Fates<W> raised(int n, double offset, double amplitude) {
  const double theta = 2 * std::numbers::pi / (n - 1), twice = 2 * cosine(theta), four = 2 * cosine(2 * theta);
  std::vector<double> c = {amplitude, twice * amplitude - amplitude * cosine(theta)};
  for (int k = 2; k < 4; ++k) c.push_back(twice * c[k - 1] - c[k - 2]);
  for (int k = 4; k < n / 2; ++k) c.push_back(four * c[k - 2] - c[k - 4]);
  Fates<W> fates(n, {0, Fate<W>::Copied});
  for (int k = 0; k < n / 2; ++k) fates[k] = fates[n - 1 - k] = {static_cast<W>(offset - c[k])};
  return fates;
}

struct Hann {
  template <class W>
  static Fates<W> fates(int n) {
    return n == 3 ? ends(Fates<W>(3)) : raised<W>(n, 0.5, 0.5);
  }
};

struct Hamming {
  template <class W>
  static Fates<W> fates(int n) {
    return raised<W>(n, 0.54, 0.46);
  }
};

// Every element is written twice, and keeps the later write.
struct Blackman {
  template <class W>
  static Fates<W> fates(int n, W alpha) {
    if (n == 3) return ends(Fates<W>(3));
    const double theta = 2 * std::numbers::pi / (n - 1);
    double c = 0.5, before = 0.5 * cosine(theta);
    std::vector<W> w;
    for (int k = 0; k < n; ++k) {
      const W r = static_cast<W>(c), offset = W(0.5) + alpha, curvature = -4 * alpha, square = r * r;
      w.push_back((offset - r) + square * curvature);
      const double next = 2 * cosine(theta) * c - before;
      before = c;
      c = next;
    }
    Fates<W> fates(n);
    for (int k = 0; k < n;) {
      const int group = k + 4 <= n ? 4 : 1;
      for (int i = 0; i < group; ++i) fates[k + i] = {w[k + i]};
      for (int i = 0; i < group; ++i) fates[n - 1 - k - i] = {w[k + i]};
      k += group;
    }
    return fates;
  }
};

struct BlackmanStd {
  template <class W>
  static Fates<W> fates(int n) {
    return Blackman::fates<W>(n, static_cast<W>(-0.16));
  }
};

struct BlackmanOpt {
  template <class W>
  static Fates<W> fates(int n) {
    const double q = 0.5 / cosine(std::numbers::pi / (n - 1));
    return Blackman::fates<W>(n, static_cast<W>(-(q * q)));
  }
};

// An own rounding of the weight, and a 64f weight's few of evaluation.
template <class W>
constexpr double kWeightBound = sizeof(W) == 4 ? 0x1p-23 : 0x1p-46;

struct Bartlett {
  template <class W>
  static Fates<W> fates(int n) {
    Fates<W> fates(n);
    for (int k = 0; k < n; ++k) {
      const long double up = 2.0L * k / (n - 1);
      fates[k] = {static_cast<W>(2 * k <= n - 1 ? up : 2 - up), {}, kWeightBound<W>};
    }
    return fates;
  }
};

long double bessel(long double x) {
  const long double t = x * 0.26666666666666666;
  const auto series = [](long double u, std::initializer_list<long double> c) {
    long double sum = 0, power = 1;
    for (const long double a : c) {
      sum += a * power;
      power *= u;
    }
    return sum;
  };
  if (x < 3.75) return series(t * t, {1, 3.5156229L, 3.0899424L, 1.2067492L, 0.2659732L, 0.0360768L, 0.0045813L});
  return expl(x) / sqrtl(x) *
         series(1 / t, {0.39894228L, 0.01328592L, 0.00225319L, -0.00157565L, 0.00916281L, -0.02057706L, 0.02635537L,
                        -0.01647633L, 0.00392377L});
}

struct Kaiser {
  template <class W>
  static Fates<W> fates(int n, W alpha) {
    if (n == 1) return {{0, Fate<W>::Copied}};
    Fates<W> fates(n);
    const long double beta = std::fabs(alpha * static_cast<W>(n - 1)) * 0.5L;
    for (int k = 0; k < n; ++k) {
      const long double u = 1 - 2.0L * k / (n - 1);
      const long double w = bessel(beta * sqrtl(1 - u * u)) / bessel(beta);
      fates[k] = {static_cast<W>(w), {}, 2 * kWeightBound<W>};
    }
    return fates;
  }
};

template <class R, class W>
testing::AssertionResult fits(R got, R x, Fate<W> fate) {
  const auto verdict = [&](bool good) {
    if (good) return testing::AssertionSuccess();
    return testing::AssertionFailure() << text(got) << " from " << text(x) << " by " << text(fate.weight);
  };
  if (fate.how == Fate<W>::Zeroed) return verdict(got == 0 && !std::signbit(static_cast<double>(got)));
  if (fate.how == Fate<W>::Copied) return verdict(std::memcmp(&got, &x, sizeof x) == 0);
  if constexpr (std::is_integral_v<R>) {
    const double exact = static_cast<double>(x) * fate.weight;
    const double clamped = std::fmax(std::numeric_limits<R>::min(), std::fmin(std::numeric_limits<R>::max(), exact));
    if (fate.bound == 0) return verdict(got == std::nearbyint(clamped));
    return verdict(std::fabs(got - clamped) <= 0.5 + std::fabs(exact) * fate.bound);
  } else {
    const R product = x * fate.weight;
    if (fate.bound == 0) return verdict(agrees(got, product));
    return verdict(agrees(got, Near{product, std::fabs(product) * fate.bound + std::numeric_limits<R>::denorm_min()}));
  }
}

constexpr int kLongest = 5003;

// The two exports of a shape and type for one length, wherever their buffers lie.
template <class Shape, class T, class... A>
void checkLength(int n, Status (*apart)(const T*, T*, int, A...), Status (*inPlace)(T*, int, A...), A... alpha) {
  static Guarded sources(kLongest * sizeof(T)), destinations(kLongest * sizeof(T));
  Random random("windows");
  const auto fates = Shape::template fates<Weight<T>>(n, alpha...);
  const auto x = random.vector<T>(n);
  const std::size_t bytes = x.size() * sizeof(T), shift = static_cast<std::size_t>(random.below(64));
  for (const Place place : {Place{true, 0}, Place{false, shift}}) {
    T* src = reinterpret_cast<T*>(sources.put(place, x.data(), bytes));
    T* dst = reinterpret_cast<T*>(destinations.put(place, std::vector<T>(x.size()).data(), bytes));
    ASSERT_EQ(apart(src, dst, n, alpha...), StatusOk);
    ASSERT_TRUE(sources.intact() && destinations.intact()) << "length " << n;
    for (int i = 0; i < n; ++i) {
      const T got = loadElement<T>(dst, i);
      for (int k = 0; k < parts<T>; ++k)
        ASSERT_TRUE(fits(part(got, k), part(x[i], k), fates[i])) << "element " << i << " of " << n;
    }
    ASSERT_EQ(inPlace(src, n, alpha...), StatusOk);
    ASSERT_TRUE(sources.intact());
    ASSERT_EQ(std::memcmp(src, dst, bytes), 0) << "in place, length " << n;
  }
}

template <class Shape, int shortest, class T, class... A>
void checkExports(Status (*apart)(const T*, T*, int, A...), Status (*inPlace)(T*, int, A...),
                  std::type_identity_t<A>... alpha) {
  SCOPED_TRACE(exportName(reinterpret_cast<const void*>(apart)));
  for (int n = shortest; n <= 140; ++n) checkLength<Shape>(n, apart, inPlace, alpha...);
  for (const int n : {1000, 2047, 4096, kLongest}) checkLength<Shape>(n, apart, inPlace, alpha...);
  // Nothing is written on an error; in most shapes pointers come before the length.
  const bool lengthFirst = std::is_same_v<Shape, BlackmanOpt>;
  T x[4], before[4];
  std::memset(x, 0x5a, sizeof x);
  std::memcpy(before, x, sizeof x);
  EXPECT_EQ(apart(nullptr, x, 0, alpha...), lengthFirst ? StatusBadSize : StatusNullPtr);
  EXPECT_EQ(apart(x, nullptr, 4, alpha...), StatusNullPtr);
  EXPECT_EQ(inPlace(nullptr, shortest - 1, alpha...), lengthFirst ? StatusBadSize : StatusNullPtr);
  for (const int n : {shortest - 1, -1, std::numeric_limits<int>::min()}) {
    EXPECT_EQ(apart(x, x, n, alpha...), StatusBadSize);
    EXPECT_EQ(inPlace(x, n, alpha...), StatusBadSize);
  }
  EXPECT_EQ(std::memcmp(x, before, sizeof x), 0);
}

// The exports of a shape, out of place and in place by turns.
#define OVKS_WINDOW(shape)                                                                                            \
  ovksWin##shape##_16s, ovksWin##shape##_16s_I, ovksWin##shape##_16sc, ovksWin##shape##_16sc_I, ovksWin##shape##_32f, \
      ovksWin##shape##_32f_I, ovksWin##shape##_32fc, ovksWin##shape##_32fc_I, ovksWin##shape##_64f,                   \
      ovksWin##shape##_64f_I, ovksWin##shape##_64fc, ovksWin##shape##_64fc_I

template <class Shape, int shortest, class... A>
struct Checked {
  std::tuple<A...> alpha;

  template <class F, class I, class... More>
  void operator()(F apart, I inPlace, More... more) const {
    std::apply([&](auto... a) { checkExports<Shape, shortest>(apart, inPlace, a...); }, alpha);
    if constexpr (sizeof...(More) > 0) (*this)(more...);
  }
};

TEST(Window, RaisedCosines) {
  Checked<Hann, 3>()(OVKS_WINDOW(Hann));
  Checked<Hamming, 3>()(OVKS_WINDOW(Hamming));
}

// The longer the window, the rarer are the places where the recurrence's roundings are hard to foresee.
TEST(Window, LongRecurrences) {
  for (const int n : {10007, 65536, 300001}) {
    const auto check = [n](const auto& fates, auto window) {
      std::vector<double> x(static_cast<std::size_t>(n), 1.0);
      ASSERT_EQ(window(x.data(), n), StatusOk);
      for (int k = 0; k < n; ++k) {
        const double want = fates[k].how == Fate<double>::Copied ? 1 : fates[k].weight;
        ASSERT_EQ(x[k], want) << k << " of " << n;
      }
    };
    check(Hann::fates<double>(n), ovksWinHann_64f_I);
    check(Hamming::fates<double>(n), ovksWinHamming_64f_I);
    check(BlackmanStd::fates<double>(n), ovksWinBlackmanStd_64f_I);
  }
}

TEST(Window, Bartlett) { Checked<Bartlett, 3>()(OVKS_WINDOW(Bartlett)); }

TEST(Window, Blackman) {
  for (const float alpha : {-0.16f, 0.3f, -7.0f}) Checked<Blackman, 3, float>{alpha}(OVKS_WINDOW(Blackman));
  Checked<BlackmanStd, 3>()(OVKS_WINDOW(BlackmanStd));
  Checked<BlackmanOpt, 4>()(OVKS_WINDOW(BlackmanOpt));
}

TEST(Window, Kaiser) {
  for (const float alpha : {0.0f, 0.01f, -0.0151f}) Checked<Kaiser, 1, float>{alpha}(OVKS_WINDOW(Kaiser));
  std::vector<float> x(78, 1.0f), y = x;
  EXPECT_EQ(ovksWinKaiser_32f(x.data(), y.data(), 78, 1), StatusHugeWin);
  EXPECT_EQ(y, x);
  EXPECT_EQ(ovksWinKaiser_32f(x.data(), y.data(), 77, 1), StatusOk);
  EXPECT_EQ(ovksWinKaiser_32f_I(x.data(), 77, -1), StatusOk);
  EXPECT_EQ(y, x);
  EXPECT_EQ(ovksWinKaiser_32f_I(nullptr, 0, 100), StatusNullPtr);
  EXPECT_EQ(ovksWinKaiser_32f_I(x.data(), 0, 100), StatusBadSize);
}

// 16-bit results are the same in every rounding mode of the caller, which comes back unchanged.
TEST(Window, IntegersIgnoreTheCallersRounding) {
  const auto x = Random("rounding").vector<int16_t>(101);
  std::vector<int16_t> y(101), z(101);
  ASSERT_EQ(ovksWinHamming_16s(x.data(), y.data(), 101), StatusOk);
  std::fesetround(FE_UPWARD);
  const Status status = ovksWinHamming_16s(x.data(), z.data(), 101);
  EXPECT_EQ(std::fegetround(), FE_UPWARD);
  std::fesetround(FE_TONEAREST);
  ASSERT_EQ(status, StatusOk);
  EXPECT_EQ(y, z);
}

}  // namespace
}  // namespace ovks::test
