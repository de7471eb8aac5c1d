// SPDX-License-Identifier: MIT
// Checks an element-wise export in one line:
//
//   checkExports([](auto a, auto b) { return a + b; }, ovksAdd_16s_Sfs, ovksAdd_32fc_I, ...);
//
// for all lengths up to 140 and some long ones, wherever its buffers lie, for every branch of its scale factors. What
// the buffers are follows from the export's signature: the parameters up to the last pointer are its operands, the last
// one the destination; then come the length, a rounding mode and a scale factor, or fewer of them.
//
// The reference takes one element of each source in the parameters' order (a constant that comes before its vector
// follows it), and at last the destination's old one if it wants one operand more. Integers reach it as Exact when the
// destination is integer as well; sources of a floating-point destination as that type; others as they are. It gives
//   Exact           to be scaled, rounded and saturated: the export's result must equal that
//   float, double   to be equalled to the bit, but for the NaN: a quiet one stands for any
//   Near            for results that may differ by a bound
// or a Complex of these, or a WithStatus of all that.
#pragma once

#include <span>
#include <tuple>
#include <utility>

#include "support/trial.hpp"

namespace ovks::test {

// An export and what is right of it.
struct Export {
  const Prototype* prototype;
  bool exact;                                        // equal to the reference, not just near it
  std::function<void(Trial&)> judge;                 // fails a call that has stored or returned something wrong
  std::function<void(Call&, Random&)> prepare = {};  // sets operands and constants that may not be any
};

const std::vector<int>& usualLengths();

// Runs the export over the lengths; see above.
void check(const Export& e, std::span<const int> lengths = usualLengths());

// Runs it with each of the scale factors on all pairs of bytes, or on all 16-bit numbers beside a random one.
void checkAll(Export e, int firstFactor, int lastFactor);

namespace detail {

// What follows from an export's parameters.
template <class... P>
struct Signature {
  template <std::size_t k>
  using Parameter = std::tuple_element_t<k, std::tuple<P...>>;
  template <std::size_t k>
  using Element = std::remove_cv_t<std::remove_pointer_t<Parameter<k>>>;

  static constexpr bool isVector[sizeof...(P)] = {std::is_pointer_v<P>...};
  static constexpr std::size_t last = [] {
    std::size_t l = sizeof...(P) - 1;
    while (!isVector[l]) --l;
    return l;
  }();
  using D = Element<last>;
  static constexpr bool allInteger = []<std::size_t... k>(std::index_sequence<k...>) {
    return (std::is_integral_v<Real<Element<k>>> && ...);
  }
  (std::make_index_sequence<last + 1>());

  // Operand k of element n as the reference takes it.
  template <std::size_t k>
  static auto operand(Call& call, int n) {
    const auto number = [](auto x) {
      if constexpr (allInteger) return Exact(x);
      else if constexpr (std::is_floating_point_v<Real<D>>) return static_cast<Real<D>>(x);
      else return x;
    };
    const auto x = isVector[k] ? loadElement<Element<k>>(call.data(k).data(), n) : call.arguments[k].as<Element<k>>();
    if constexpr (ComplexElement<Element<k>>) return Complex<decltype(number(x.re))>{number(x.re), number(x.im)};
    else return number(x);
  }

  // All of them, without or with the destination; a leading constant comes last.
  template <bool withOld>
  static auto operands(Call& call, int n) {
    constexpr std::size_t count = last + withOld;
    return [&]<std::size_t... k>(std::index_sequence<k...>) {
      return std::tuple(operand<(k + !isVector[0]) % count>(call, n)...);
    }
    (std::make_index_sequence<count>());
  }
};

template <class F, class Tuple>
inline constexpr bool takes = false;
template <class F, class... T>
inline constexpr bool takes<F, std::tuple<T...>> = std::is_invocable_v<F, T...>;

template <class R>
WithStatus<R> withStatus(const R& r) {
  return {r, StatusOk};
}
template <class R>
WithStatus<R> withStatus(const WithStatus<R>& r) {
  return r;
}

}  // namespace detail

// Holds a number of element n of a trial's result against its reference.
template <class T, class R>
void judgeNumber(Trial& t, int n, T got, const R& want, RoundMode mode, int scaleFactor) {
  if constexpr (std::is_same_v<R, Exact>)
    judgeNumber(t, n, got, want.template rounded<T>(scaleFactor, mode), mode, scaleFactor);
  else if (!agrees(got, want)) t.fail("element ", n, " is ", text(got), " instead of ", text(want));
}

template <class Reference, class... P>
Export describe(Reference reference, Status (*function)(P...)) {
  using S = detail::Signature<P...>;
  constexpr bool accumulates =
      !detail::takes<Reference, decltype(S::template operands<false>(std::declval<Call&>(), 0))>;
  const auto result = [reference](Call& call, int n) {
    return detail::withStatus(std::apply(reference, S::template operands<accumulates>(call, n)));
  };
  const auto judge = [result](Trial& t) {
    const RoundMode mode = t.call.constant("rndMode", RoundNear), scaleFactor = t.call.constant("scaleFactor", 0);
    Status status = StatusOk;
    for (int n = 0; n < t.call.shape().len; ++n) {
      const auto want = result(t.call, n);
      if (want.status != StatusOk) status = want.status;
      const auto got = loadElement<typename S::D>(t.results()[S::last].data(), n);
      for (int k = 0; k < parts<typename S::D> && t.status() >= 0; ++k)
        judgeNumber(t, n, part(got, k), part(want.value, k), mode, scaleFactor);
    }
    if (t.status() != status) t.fail("status ", t.status(), " instead of ", status);
  };
  using Value = decltype(part(result(std::declval<Call&>(), 0).value, 0));
  return {&prototypeOf(function), !std::is_same_v<Value, Near>, judge};
}

template <class Reference, class... F>
void checkExports(Reference reference, F... functions) {
  (check(describe(reference, functions)), ...);
}

}  // namespace ovks::test
