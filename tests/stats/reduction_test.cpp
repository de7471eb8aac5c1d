// SPDX-License-Identifier: MIT
// Reductions against exact or extended sums:
//
//   checkReductions<"ovksSum_">(Reduction{term, finish});
//
// The reference is finish(sum of term(x...), n), in exact integers for integers and in extended precision otherwise.
// Integer results must equal it; the error of others is held against the sum of the terms' magnitudes.
#include "support/family.hpp"

namespace ovks::test {
namespace {

template <class T>
constexpr bool isInteger = std::is_integral_v<Real<T>>;

// What the reference computes with.
template <class T>
auto extended(T x) {
  if constexpr (ComplexElement<T>) return Complex<decltype(extended(x.re))>{extended(x.re), extended(x.im)};
  else if constexpr (std::is_integral_v<T>) return Exact(x);
  else return static_cast<long double>(x);
}
long double real(Exact x) { return static_cast<long double>(x.numerator) / static_cast<long double>(x.denominator); }
long double real(long double x) { return x; }

// Integers of every kind, floats of moderate size.
template <class T>
T element(Random& random, bool positive) {
  if constexpr (ComplexElement<T>) {
    return {element<Real<T>>(random, positive), element<Real<T>>(random, positive)};
  } else if constexpr (std::is_integral_v<T>) {
    const T x = random.value<T>();
    return positive && x <= 0 ? T{1} : x;
  } else {
    const double x = std::ldexp(static_cast<double>(random.between(1 << 20, 1 << 21)), random.between(-30, -10));
    return static_cast<T>(positive || random.below(2) ? x : -x);
  }
}

// What a sum or its term may drown in, or what is no logarithm's argument.
template <class T>
T special(Random& random) {
  if constexpr (ComplexElement<T>) {
    return random.below(2) ? T{1, special<Real<T>>(random)} : T{special<Real<T>>(random), 1};
  } else if constexpr (std::is_integral_v<T>) {
    return static_cast<T>(-random.below(2));
  } else {
    const T all[] = {0, -T{0}, -1, T(INFINITY), -T(INFINITY), T(NAN)};
    return all[random.below(6)];
  }
}

long double magnitude(Exact) { return 0; }
long double magnitude(long double x) { return std::isfinite(x) ? std::fabs(x) : 0; }
template <class T>
long double magnitude(Complex<T> z) {
  return magnitude(z.re) + magnitude(z.im);
}

// A sum that is wrong by so much, the second part the other way.
Exact disturbed(Exact sum, long double) { return sum; }
long double disturbed(long double sum, long double error) { return sum + error; }
template <class T>
Complex<T> disturbed(Complex<T> sum, long double error) {
  return {disturbed(sum.re, magnitude(sum.re) > 0 && real(sum.re) < 0 ? error : -error), disturbed(sum.im, error)};
}

constexpr auto kWhole = [](auto sum, int) { return sum; };
constexpr auto kLargest = [](auto largest, int) { return largest; };  // of the terms, not their sum
constexpr auto kRoot = [](auto sum, int) { return std::sqrt(real(sum)); };

template <class Term, class Finish>
struct Reduction {
  Term term;
  Finish finish = {};
  bool positive = false;     // of elements above zero
  int least = 1;             // shortest length
  long double absolute = 0;  // error allowed for each term, whatever its size

  static constexpr bool kSums = !std::is_same_v<Finish, std::remove_const_t<decltype(kLargest)>>;

  // Of one or two results; P are the parameters' elements, k the sources.
  template <bool two, class P, std::size_t... k>
  void judge(Trial& t, std::index_sequence<k...>) const {
    using D = std::tuple_element_t<sizeof...(k) + 1, P>;
    const int n = t.call.shape().len, hint = t.call.constant("hint", AlgHintNone);
    if (n < least && t.status() != StatusBadSize) t.fail("status ", t.status());
    if (n < least) return;
    decltype(term(extended(std::tuple_element_t<k, P>())...)) sum{};
    long double size = 0;
    for (int i = 0; i < n; ++i) {
      const auto x = std::tuple(extended(loadElement<std::tuple_element_t<k, P>>(t.call.data(k).data(), i))...);
      const auto next = std::apply(term, x);
      if constexpr (!kSums) sum = real(next) > real(sum) || std::isnan(real(next)) ? next : sum;
      else sum = sum + next;
      if constexpr (kSums && !(isInteger<std::tuple_element_t<k, P>> && ...))
        size += terms(magnitude(std::get<k>(x))...);
    }
    // So many additions in single precision, one after the other, at most.
    constexpr bool complexFloats = std::is_same_v<P, std::tuple<Complex32f, Complex32f, int, Complex32f>>;
    const int single = hint == AlgHintFast && sizeof(Real<D>) == 4 ? 8192 : complexFloats ? 512 : 0;
    const long double error = single ? size * std::min(n, single) * 0x1p-24L : size * n * 0x1p-53L + n * absolute;
    const auto want = finish(sum, n), other = finish(disturbed(sum, error), n);
    for (int i = 0; i < parts<decltype(want)>; ++i) {
      const D result = loadElement<D>(t.results()[sizeof...(k) + 1 + (two ? i : 0)].data());
      const auto got = part(result, i);
      const auto value = part(want, i);
      if constexpr (isInteger<D>) {
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
    const auto n = static_cast<int>(bytes.size() / sizeof(S)), odd = random.below(8) ? n : random.below(n);
    for (int i = 0; i < n; ++i) {
      const bool isSpecial = i == odd && (!isInteger<S> || positive);
      const S x = isSpecial ? special<S>(random) : element<S>(random, positive);
      std::memcpy(&bytes[static_cast<std::size_t>(i) * sizeof x], &x, sizeof x);
    }
  }

  long double terms(long double x) const { return magnitude(term(x)); }
  long double terms(long double x, long double y) const {
    return std::max(magnitude(term(x, y)), magnitude(term(x, -y)));
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

template <class T>
auto modulus(T x) {
  if constexpr (ComplexElement<T>) return std::isnan(x.re) ? x.re : std::isnan(x.im) ? x.im : std::hypot(x.re, x.im);
  else if constexpr (std::is_same_v<T, Exact>) return x.numerator < 0 ? Exact() - x : x;
  else return std::fabs(x);
}
TEST(Sum, All) { checkReductions<"ovksSum_">(Reduction{kValue, kWhole}); }

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
  checkReductions<"ovksMean_">(Reduction{kValue, divided});
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
  checkReductions<"ovksStdDev_">(Reduction{kMoments, alone, false, 2});
  const auto both = [](auto m, int n) { return Complex<long double>{real(m.re) / n, deviation(m, n)}; };
  checkReductions<"ovksMeanStdDev_">(Reduction{kMoments, both, false, 2});
}

constexpr auto kDifference = [](auto term) { return [term](auto x, auto y) { return term(x - y); }; };

TEST(Norm, Largest) {
  const auto size = [](auto x) { return modulus(x); };
  checkReductions<"ovksNorm_Inf_">(Reduction{size, kLargest});
  checkReductions<"ovksNormDiff_Inf_">(Reduction{kDifference(size), kLargest});
}

TEST(Norm, Sums) {
  const auto size = [](auto x) { return modulus(x); };
  checkReductions<"ovksNorm_L1_">(Reduction{size, kWhole});
  checkReductions<"ovksNormDiff_L1_">(Reduction{kDifference(size), kWhole});
}

TEST(Norm, Squares) {
  const auto square = []<class T>(T x) {
    if constexpr (ComplexElement<T>) return x.re * x.re + x.im * x.im;
    else return x * x;
  };
  checkReductions<"ovksNorm_L2_">(Reduction{square, kRoot});
  checkReductions<"ovksNorm_L2Sqr_">(Reduction{square, kWhole});
  checkReductions<"ovksNormDiff_L2_">(Reduction{kDifference(square), kRoot});
  checkReductions<"ovksNormDiff_L2Sqr_">(Reduction{kDifference(square), kWhole});
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
