// SPDX-License-Identifier: MIT
// Reductions against exact or extended sums:
//
//   checkReductions<"ovksSum_">(Reduction{term, finish});
//
// The reference is finish(sum of term(x...), n), in exact integers for integers and in extended precision otherwise, as
// a complex number. Integer results must equal it; the error of others is held against the sum of the terms'
// magnitudes.
#include "support/family.hpp"

namespace ovks::test {
namespace {

// What the reference computes with.
template <class T>
auto extended(T x) {
  if constexpr (ComplexElement<T>) return Complex<decltype(extended(x.re))>{extended(x.re), extended(x.im)};
  else if constexpr (std::is_integral_v<T>) return Exact(x);
  else return static_cast<long double>(x);
}
template <class X>
Complex<X> asComplex(Complex<X> x) {
  return x;
}
template <class X>
Complex<X> asComplex(X x) {
  return {x, {}};
}
long double real(Exact x) { return static_cast<long double>(x.numerator) / static_cast<long double>(x.denominator); }
long double real(long double x) { return x; }

// Integers of every kind, floats of moderate size; special ones that a sum or its term may drown in, or that are no
// logarithm's argument.
template <class T>
T element(Random& random, bool positive, bool special) {
  if constexpr (ComplexElement<T>) {
    const auto re = element<Real<T>>(random, positive, special && random.below(2));
    return {re, element<Real<T>>(random, positive, special)};
  } else if constexpr (std::is_integral_v<T>) {
    const T x = random.value<T>();
    return !positive || (!special && x > 0) ? x : static_cast<T>(special ? -random.below(2) : 1);
  } else {
    const T specials[] = {0, -T{0}, -1, T(INFINITY), -T(INFINITY), T(NAN)};
    const double x = std::ldexp(static_cast<double>(random.between(1 << 20, 1 << 21)), random.between(-30, -10));
    return special ? specials[random.below(6)] : static_cast<T>(positive || random.below(2) ? x : -x);
  }
}

constexpr auto kWhole = [](auto sum, int) { return sum; };
constexpr auto kLargest = [](auto largest, int) { return largest; };  // of the terms, not their sum
constexpr auto kRoot = [](auto sum, int) { return Complex<long double>{std::sqrt(real(sum.re)), 0}; };

template <class Term, class Finish>
struct Reduction {
  Term term;
  Finish finish;
  bool positive = false;     // of elements above zero
  int least = 1;             // shortest length
  long double absolute = 0;  // error allowed for each term, whatever its size

  // Of one or two results; P are the parameters' elements, k the sources.
  template <bool two, class P, std::size_t... k>
  void judge(Trial& t, std::index_sequence<k...>) const {
    using D = std::tuple_element_t<sizeof...(k) + 1, P>;
    const int n = t.call.shape().len;
    if (n < least && t.status() != StatusBadSize) t.fail("status ", t.status());
    if (n < least) return;
    decltype(asComplex(term(extended(std::tuple_element_t<k, P>())...))) sum{};
    long double size = 0;
    for (int i = 0; i < n; ++i) {
      const auto next = asComplex(term(extended(loadElement<std::tuple_element_t<k, P>>(t.call.data(k).data(), i))...));
      if constexpr (!std::is_same_v<Finish, std::remove_const_t<decltype(kLargest)>>) {
        sum = sum + next;
        for (const long double x : {real(next.re), real(next.im)}) size += std::isfinite(x) ? std::fabs(x) : 0;
      } else if (real(next.re) > real(sum.re) || std::isnan(real(next.re))) {
        sum = next;
      }
    }
    // So many additions in single precision, one after the other, at most.
    constexpr bool complexFloats = std::is_same_v<P, std::tuple<Complex32f, Complex32f, int, Complex32f>>;
    const bool isFast = t.call.constant("hint", AlgHintNone) == AlgHintFast && sizeof(Real<D>) == 4;
    const int single = isFast ? 8192 : complexFloats ? 512 : 0;
    const long double error = single ? size * std::min(n, single) * 0x1p-24L : size * n * 0x1p-53L + n * absolute;
    const auto want = finish(sum, n), other = finish(disturbed(sum, error), n);
    for (int i = 0; i < (two ? 2 : parts<D>); ++i) {
      const auto got = part(loadElement<D>(t.results()[sizeof...(k) + 1 + (two ? i : 0)].data()), i);
      const auto value = part(want, i);
      if constexpr (std::is_integral_v<Real<D>>) {
        judgeNumber(t, 0, got, Exact(value), RoundNear, t.call.constant("scaleFactor", 0));
      } else {
        const long double rounding = std::fabs(real(value)) * std::numeric_limits<Real<D>>::epsilon();
        judgeNumber(t, 0, got, Near{real(value), std::fabs(real(part(other, i)) - real(value)) + rounding}, 0, 0);
      }
    }
  }

  template <class P, std::size_t... k>
  void fill(Call& call, Random& random, std::index_sequence<k...>) const {
    (fillOne<std::tuple_element_t<k, P>>(call.data(k), random), ...);
  }

 private:
  template <class S>
  void fillOne(Bytes& bytes, Random& random) const {
    std::vector<S> x = sequence<S>(bytes);
    const std::size_t special = random.below(8) ? x.size() : random.bits() % x.size();
    for (std::size_t i = 0; i < x.size(); ++i) x[i] = element<S>(random, positive, i == special);
    bytes = bytesOf(x);
  }

  // A sum that is wrong by so much, its parts in the ways that make a deviation larger.
  static auto disturbed(Complex<Exact> sum, long double) { return sum; }
  static auto disturbed(Complex<long double> sum, long double error) {
    return Complex<long double>{sum.re < 0 ? sum.re + error : sum.re - error, sum.im + error};
  }
};
template <class Term, class Finish>
Reduction(Term, Finish, bool = false, int = 1, long double = 0) -> Reduction<Term, Finish>;

// One or two sources, the length, one or two results; the last parameter is a hint, a scale factor or missing.
template <class... P>
void checkReduction(const auto& reference, Status (*f)(P...)) {
  constexpr auto sources = (std::size_t{std::is_const_v<std::remove_pointer_t<P>>} + ...);
  constexpr bool two = (std::size_t{std::is_pointer_v<P>} + ...) == sources + 2;
  std::vector<int> lengths = usualLengths();
  lengths.insert(lengths.end(), {8191, 8193, 40000});
  const std::make_index_sequence<sources> all;
  using Elements = std::tuple<std::remove_cv_t<std::remove_pointer_t<P>>...>;
  const auto judge = [&](Trial& t) { reference.template judge<two, Elements>(t, all); };
  const auto fill = [&](Call& call, Random& random) { reference.template fill<Elements>(call, random, all); };
  check({&prototypeOf(f), false, judge, fill}, lengths);
}

template <Beginning... names>
void checkReductions(const auto& reference) {
  forFamilies<names...>([&](auto f) { checkReduction(reference, f); });
}

constexpr auto kValue = [](auto x) { return x; };

TEST(Sum, All) { checkReductions<"ovksSum_">(Reduction{kValue, kWhole}); }

// Two elements among equal ones, zeros and denormals, or such that only the whole is in range.
TEST(Sum, OfExtremes) {
  using L = std::numeric_limits<float>;
  const float tiny = L::denorm_min(), most = L::max(), infinity = L::infinity();
  for (const auto& [first, second, rest, want] : {std::tuple{0.0f, 0.0f, 0.0f, 0.0f},
                                                  {tiny, -0.0f, 0.0f, tiny},
                                                  {-tiny, -tiny, tiny, 2996 * tiny},
                                                  {most, -most, 0.0f, 0.0f},
                                                  {most, most, 0.0f, infinity},
                                                  {-infinity, most, 1.0f, -infinity}}) {
    std::vector<float> x(3000, rest);
    x[7] = first, x[2022] = second;
    float sum = 0;
    EXPECT_EQ(ovksSum_32f(x.data(), 3000, &sum, AlgHintAccurate), StatusOk);
    EXPECT_EQ(sum, want);
    x[1] = std::numeric_limits<float>::quiet_NaN();
    EXPECT_EQ(ovksSum_32f(x.data(), 3000, &sum, AlgHintAccurate), StatusOk);
    EXPECT_TRUE(std::isnan(sum));
  }
}

TEST(Mean, All) {
  const auto divided = []<class X>(Complex<X> sum, int n) {
    if constexpr (std::is_same_v<X, Exact>) sum.re.denominator = sum.im.denominator = n;
    else sum = {sum.re / n, sum.im / n};
    return sum;
  };
  checkReductions<"ovksMean_">(Reduction{kValue, divided});
}

// The sums of x and of x^2 in one.
constexpr auto kMoments = []<class X>(X x) { return Complex<X>{x, x * x}; };
constexpr auto kMeanAndDeviation = [](auto m, int n) {
  const long double squares = n * real(m.im) - real(m.re) * real(m.re);
  return Complex<long double>{real(m.re) / n, std::sqrt(std::max(squares, 0.0L) / n / (n - 1))};
};

TEST(Deviation, All) {
  const auto alone = [](auto m, int n) { return Complex<long double>{kMeanAndDeviation(m, n).im, 0}; };
  checkReductions<"ovksStdDev_">(Reduction{kMoments, alone, false, 2});
  checkReductions<"ovksMeanStdDev_">(Reduction{kMoments, kMeanAndDeviation, false, 2});
}

// A norm of values and of their differences.
template <Beginning values, Beginning differences>
void checkNorms(auto term, auto finish) {
  checkReductions<values>(Reduction{term, finish});
  checkReductions<differences>(Reduction{[term](auto x, auto y) { return term(x - y); }, finish});
}

constexpr auto kModulus = []<class T>(T x) {
  if constexpr (ComplexElement<T>) return std::isnan(x.re) || std::isnan(x.im) ? NAN : std::hypot(x.re, x.im);
  else if constexpr (std::is_same_v<T, Exact>) return x.numerator < 0 ? Exact() - x : x;
  else return std::fabs(x);
};
constexpr auto kSquare = []<class T>(T x) {
  if constexpr (ComplexElement<T>) return x.re * x.re + x.im * x.im;
  else return x * x;
};

TEST(Norm, All) {
  checkNorms<"ovksNorm_Inf_", "ovksNormDiff_Inf_">(kModulus, kLargest);
  checkNorms<"ovksNorm_L1_", "ovksNormDiff_L1_">(kModulus, kWhole);
  checkNorms<"ovksNorm_L2_", "ovksNormDiff_L2_">(kSquare, kRoot);
  checkNorms<"ovksNorm_L2Sqr_", "ovksNormDiff_L2Sqr_">(kSquare, kWhole);
}

TEST(DotProd, All) {
  checkReductions<"ovksDotProd_">(Reduction{[](auto x, auto y) { return x * y; }, kWhole});
}

TEST(SumLn, All) {
  const auto logarithm = [](auto x) { return std::log(real(x)); };
  checkReductions<"ovksSumLn_">(Reduction{logarithm, kWhole, true, 1, 0x1p-54L});
}

}  // namespace
}  // namespace ovks::test
