// SPDX-License-Identifier: MIT
// Checks reductions against exact or extended sums:
//
//   checkReductions(Reduction{term, finish}, ovksSum_32f, ovksSum_16s_Sfs, ...);
//
// for lengths around every vector's and block's size, on buffers at any address that end or begin at inaccessible
// pages, for every hint or for scale factors of every kind. The reference is finish(sum of term(x...), n), in exact
// integers for integers and in extended precision otherwise. Integer results must equal it; the error of others is held
// against the sum of the terms' magnitudes.
#pragma once

#include <xmmintrin.h>

#include "support/harness.hpp"

namespace ovks::test {

template <class T>
inline constexpr bool isInteger = std::is_integral_v<Real<T>>;

// What the reference computes with.
template <class T>
auto extended(T x) {
  if constexpr (ComplexElement<T>) return Complex<decltype(extended(x.re))>{extended(x.re), extended(x.im)};
  else if constexpr (std::is_integral_v<T>) return Exact(x);
  else return static_cast<long double>(x);
}
inline long double real(Exact x) {
  return static_cast<long double>(x.numerator) / static_cast<long double>(x.denominator);
}
inline long double real(long double x) { return x; }

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

inline long double magnitude(Exact) { return 0; }
inline long double magnitude(long double x) { return std::fabs(x); }
template <class T>
long double magnitude(Complex<T> z) {
  return magnitude(z.re) + magnitude(z.im);
}

// A sum that is wrong by so much, the second part the other way.
inline Exact disturbed(Exact sum, long double) { return sum; }
inline long double disturbed(long double sum, long double error) { return sum + error; }
template <class T>
Complex<T> disturbed(Complex<T> sum, long double error) {
  return {disturbed(sum.re, magnitude(sum.re) > 0 && real(sum.re) < 0 ? error : -error), disturbed(sum.im, error)};
}

inline constexpr auto kWhole = [](auto sum, int) { return sum; };
inline constexpr auto kRoot = [](auto sum, int) { return std::sqrt(real(sum)); };

template <class Term, class Finish>
struct Reduction {
  Term term;
  Finish finish = {};
  bool positive = false;     // of elements above zero
  int least = 1;             // shortest length
  long double absolute = 0;  // error allowed for each term, whatever its size

  // The verdict on a result.
  template <class D, class... S>
  void judge(D got, int n, int mode, const S*... src) const {
    decltype(term(extended(*src)...)) sum{};
    long double size = 0;
    for (int i = 0; i < n; ++i) {
      sum = sum + term(extended(src[i])...);
      if constexpr (!(isInteger<S> && ...)) size += terms(magnitude(extended(src[i]))...);
    }
    const bool fast = mode == AlgHintFast && sizeof(Real<D>) == 4;
    const long double error = fast ? size * std::min(n, 8192) * 0x1p-24L : size * n * 0x1p-53L + n * absolute;
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

namespace detail {

inline std::vector<int> modes(Random& random, bool integer, bool takesMode) {
  if (!takesMode) return {0};
  if (!integer) return {AlgHintNone, AlgHintFast, AlgHintAccurate};
  return {0, 1, random.between(2, 20), random.between(-70, 70), INT_MAX, INT_MIN};
}

template <class D, class Reference, class Call, class... S>
void checkReduction(const Reference& reference, const std::string& name, bool takesMode, Call call, const S*...) {
  Random random(name);
  std::vector<int> lengths = usualLengths();
  lengths.insert(lengths.end(), {8191, 8193, 40000});
  const int longest = *std::max_element(lengths.begin(), lengths.end());
  std::tuple<std::vector<S>...> data{std::vector<S>(static_cast<std::size_t>(longest))...};
  Guarded memory[] = {Guarded(static_cast<std::size_t>(longest) * sizeof(S))...};
  for (const int n : lengths) {
    const Place place{n % 2 == 0, static_cast<std::size_t>(n % 4 < 2 ? 0 : random.below(65))};
    const auto put = [&]<class T>(std::vector<T>& v, Guarded& m) {
      for (int i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = element<T>(random, reference.positive);
      return reinterpret_cast<const T*>(m.put(place, v.data(), static_cast<std::size_t>(n) * sizeof(T)));
    };
    for (const int mode : modes(random, isInteger<D>, takesMode)) {
      SCOPED_TRACE(name + ", length " + std::to_string(n) + ", mode " + std::to_string(mode));
      D got{};
      const auto control = _mm_getcsr();
      [&]<std::size_t... k>(std::index_sequence<k...>) {
        const std::tuple src{put(std::get<k>(data), memory[k])...};
        if (isInteger<D>) _mm_setcsr(control | 0xe000);  // flushes, and rounds towards zero
        const Status status = call(std::get<k>(src)..., n, &got, mode);
        _mm_setcsr(control);
        EXPECT_EQ(status, n < reference.least ? StatusBadSize : StatusOk);
        if (n >= reference.least) reference.judge(got, n, mode, std::get<k>(data).data()...);
      }
      (std::index_sequence_for<S...>());
      if (testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace detail

// One source, two sources, one source and two results; the last argument a hint, a scale factor or none.
template <class R, class A, class D, class... M>
void checkReductions(const R& r, Status (*f)(const A*, int, D*, M...)) {
  detail::checkReduction<D>(
      r, exportName(reinterpret_cast<const void*>(f)), sizeof...(M) > 0,
      [f](const A* a, int n, D* d, [[maybe_unused]] int mode) { return f(a, n, d, M{mode}...); },
      static_cast<const A*>(nullptr));
}
template <class R, class A, class B, class D, class... M>
void checkReductions(const R& r, Status (*f)(const A*, const B*, int, D*, M...)) {
  detail::checkReduction<D>(
      r, exportName(reinterpret_cast<const void*>(f)), sizeof...(M) > 0,
      [f](const A* a, const B* b, int n, D* d, [[maybe_unused]] int mode) { return f(a, b, n, d, M{mode}...); },
      static_cast<const A*>(nullptr), static_cast<const B*>(nullptr));
}
template <class R, class A, class D, class... M>
void checkReductions(const R& r, Status (*f)(const A*, int, D*, D*, M...)) {
  detail::checkReduction<Complex<D>>(
      r, exportName(reinterpret_cast<const void*>(f)), sizeof...(M) > 0,
      [f](const A* a, int n, Complex<D>* d, [[maybe_unused]] int mode) { return f(a, n, &d->re, &d->im, M{mode}...); },
      static_cast<const A*>(nullptr));
}
template <class R, class... F>
requires(sizeof...(F) > 1) void checkReductions(const R& r, F... f) { (checkReductions(r, f), ...); }

}  // namespace ovks::test
