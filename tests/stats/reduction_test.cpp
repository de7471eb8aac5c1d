// SPDX-License-Identifier: MIT
// Checks reductions against exact or extended sums:
//
//   checkReductions<"ovksSum_">(Reduction{term, finish});
//
// for lengths around every vector's and block's size, on buffers at any address that end or begin at inaccessible
// pages, for every hint or for scale factors of every kind. The reference is finish(sum of term(x...), n), in exact
// integers for integers and in extended precision otherwise. Integer results must equal it; the error of others is held
// against the sum of the terms' magnitudes.
#include <xmmintrin.h>

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

  // The verdict on a result.
  template <class D, class... S>
  void judge(D got, int n, int mode, const S*... src) const {
    decltype(term(extended(*src)...)) sum{};
    long double size = 0;
    for (int i = 0; i < n; ++i) {
      const auto next = term(extended(loadElement<S>(src, i))...);
      if constexpr (!kSums) sum = real(next) > real(sum) || std::isnan(real(next)) ? next : sum;
      else sum = sum + next;
      if constexpr (kSums && !(isInteger<S> && ...)) size += terms(magnitude(extended(loadElement<S>(src, i)))...);
    }
    // So many additions in single precision, one after the other, at most.
    constexpr bool complexFloats = std::is_same_v<D, Complex32f> && (std::is_same_v<S, D> && ...) && sizeof...(S) == 2;
    const int single = mode == AlgHintFast && sizeof(Real<D>) == 4 ? 8192 : complexFloats ? 512 : 0;
    const long double error = single ? size * std::min(n, single) * 0x1p-24L : size * n * 0x1p-53L + n * absolute;
    const auto want = finish(sum, n), other = finish(disturbed(sum, error), n);
    for (int k = 0; k < parts<D>; ++k) {
      if constexpr (isInteger<D>) {
        EXPECT_EQ(part(got, k), Exact(part(want, k)).template rounded<Real<D>>(mode, RoundNear));
      } else {
        const long double value = real(part(want, k)), rounding = std::numeric_limits<Real<D>>::epsilon();
        const Near near{value, std::fabs(real(part(other, k)) - value) + std::fabs(value) * rounding};
        EXPECT_TRUE(agrees(part(got, k), near)) << text(part(got, k)) << " for " << text(near);
      }
    }
  }

 private:
  long double terms(long double x) const { return magnitude(term(x)); }
  long double terms(long double x, long double y) const {
    return std::max(magnitude(term(x, y)), magnitude(term(x, -y)));
  }
};
template <class Term, class Finish>
Reduction(Term, Finish, bool = false, int = 1, long double = 0) -> Reduction<Term, Finish>;

std::vector<int> modesOf(Random& random, bool integer, bool takesMode) {
  if (!takesMode) return {0};
  if (!integer) return {AlgHintNone, AlgHintFast, AlgHintAccurate};
  return {0, 1, random.between(2, 20), random.between(-70, 70), INT_MAX, INT_MIN};
}

// One or two sources, the length, one or two results; the last parameter is a hint, a scale factor or missing.
template <class... P>
void checkReduction(const auto& reference, Status (*f)(P...)) {
  constexpr auto sources = (std::size_t{std::is_const_v<std::remove_pointer_t<P>>} + ...);
  constexpr auto results = (std::size_t{std::is_pointer_v<P>} + ...) - sources;
  using D = std::remove_pointer_t<std::tuple_element_t<sources + 1, std::tuple<P...>>>;
  const std::string name = exportName(reinterpret_cast<const void*>(f));
  Random random(name);
  std::vector<int> lengths = usualLengths();
  lengths.insert(lengths.end(), {8191, 8193, 40000});
  Guarded memory[] = {Guarded(40000 * sizeof(Complex64f)), Guarded(40000 * sizeof(Complex64f))};
  for (const int n : lengths) {
    const Place place{n % 2 == 0, static_cast<std::size_t>(n % 4 < 2 ? 0 : random.below(65))};
    for (const int mode : modesOf(random, isInteger<D>, sizeof...(P) > sources + 1 + results)) {
      SCOPED_TRACE(name + ", length " + std::to_string(n) + ", mode " + std::to_string(mode));
      D got[2] = {};
      int source = 0, result = 0, number = 0;
      const auto argument = [&]<class T>(std::type_identity<T>) {
        if constexpr (std::is_const_v<std::remove_pointer_t<T>>) {
          using S = std::remove_cv_t<std::remove_pointer_t<T>>;
          std::vector<S> v(static_cast<std::size_t>(n));
          for (S& x : v) x = element<S>(random, reference.positive);
          if ((!isInteger<S> || reference.positive) && random.below(8) == 0)
            v[static_cast<std::size_t>(random.below(n))] = special<S>(random);
          return reinterpret_cast<T>(memory[source++].put(place, v.data(), v.size() * sizeof v[0]));
        } else if constexpr (std::is_pointer_v<T>) {
          return &got[result++];
        } else {
          return T{number++ ? mode : n};
        }
      };
      const std::tuple<P...> arguments{argument(std::type_identity<P>())...};
      const unsigned control = _mm_getcsr();
      if (isInteger<D>) _mm_setcsr(control | 0xe000);  // flushes, and rounds towards zero
      const Status status = std::apply(f, arguments);
      _mm_setcsr(control);
      EXPECT_EQ(status, n < reference.least ? StatusBadSize : StatusOk);
      if (n < reference.least) continue;
      [&]<std::size_t... k>(std::index_sequence<k...>) {
        if constexpr (results == 2) reference.judge(Complex<D>{got[0], got[1]}, n, mode, std::get<k>(arguments)...);
        else reference.judge(got[0], n, mode, std::get<k>(arguments)...);
      }
      (std::make_index_sequence<sources>());
      if (testing::Test::HasFailure()) return;
    }
  }
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
