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

#include <numeric>
#include <span>
#include <tuple>
#include <utility>

#include "support/prototypes.hpp"

namespace ovks::test {

// Element-wise verdict on a call that started from the operands in.
struct Verdict {
  Status status = StatusOk;
  int wrong = -1;  // index of the first wrong element
  std::string expected;
};

// An element-wise export and its reference.
struct Export {
  std::string name;
  const Prototype* prototype;
  std::vector<const ElementType*> operands;  // in the parameters' order, the destination last
  bool accumulates;                          // reads its destination
  bool exact;                                // equal to the reference, not just near it
  std::function<Verdict(const void* const* in, const void* out, int len, RoundMode, int scaleFactor)> judge;
  std::vector<Argument> constants = {};  // the last parameters' values, where they are given
};

std::string exportName(const void* function);
std::vector<int> usualLengths();

// Runs the export over the lengths; see above.
void check(const Export& e, std::span<const int> lengths);

// Judges one call out of place, on these sources.
void checkOn(const Export& e, std::vector<const void*> sources, int len, RoundMode mode, int scaleFactor);

// All pairs of bytes: the first vector counts fast, the second slowly.
std::pair<std::vector<std::uint8_t>, std::vector<std::uint8_t>> allBytePairs();

// All 16-bit numbers.
template <class T>
std::vector<T> allShorts() {
  std::vector<T> v(1 << 16);
  std::iota(v.begin(), v.end(), T{0});
  return v;
}

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
  using Operands = std::make_index_sequence<last + 1>;
  using D = Element<last>;
  static constexpr bool allInteger = []<std::size_t... k>(std::index_sequence<k...>) {
    return (std::is_integral_v<Real<Element<k>>> && ...);
  }
  (Operands());

  // Operand k of element n as the reference takes it.
  template <std::size_t k>
  static auto operand(const void* const* in, int n) {
    const auto number = [](auto x) {
      if constexpr (allInteger) return Exact(x);
      else if constexpr (std::is_floating_point_v<Real<D>>) return static_cast<Real<D>>(x);
      else return x;
    };
    const auto x = loadElement<Element<k>>(in[k], isVector[k] ? n : 0);
    if constexpr (ComplexElement<Element<k>>) return Complex<decltype(number(x.re))>{number(x.re), number(x.im)};
    else return number(x);
  }

  // All of them, without or with the destination; a leading constant comes last.
  template <bool withOld>
  static auto operands(const void* const* in, int n) {
    constexpr std::size_t count = last + withOld;
    return [&]<std::size_t... k>(std::index_sequence<k...>) {
      return std::tuple(operand<(k + !isVector[0]) % count>(in, n)...);
    }
    (std::make_index_sequence<count>());
  }
};

template <class F, class Tuple>
inline constexpr bool takes = false;
template <class F, class... T>
inline constexpr bool takes<F, std::tuple<T...>> = std::is_invocable_v<F, T...>;

template <class R>
struct Settling {
  using Value = R;
  static Status status(const R&) { return StatusOk; }
  static R value(const R& r) { return r; }
};
template <class R>
struct Settling<WithStatus<R>> {
  using Value = R;
  static Status status(const WithStatus<R>& r) { return r.status; }
  static R value(const WithStatus<R>& r) { return r.value; }
};

template <class T, class R>
auto settled(R r, RoundMode mode, int scaleFactor) {
  if constexpr (std::is_same_v<R, Exact>) return r.template rounded<T>(scaleFactor, mode);
  else return r;
}

template <class D, class R>
void judgeElement(const R& r, D got, int n, RoundMode mode, int scaleFactor, Verdict& v) {
  using S = Settling<R>;
  if (S::status(r) != StatusOk) v.status = S::status(r);
  for (int k = 0; k < parts<D> && v.status >= 0 && v.wrong < 0; ++k) {
    const auto want = settled<Real<D>>(part(S::value(r), k), mode, scaleFactor);
    if (agrees(part(got, k), want)) continue;
    v.wrong = n;
    v.expected = text(want);
  }
}

}  // namespace detail

template <class Reference, class... P>
Export describe(Reference reference, Status (*function)(P...)) {
  using S = detail::Signature<P...>;
  using D = typename S::D;
  constexpr bool accumulates = !detail::takes<Reference, decltype(S::template operands<false>(nullptr, 0))>;
  const auto result = [reference](const void* const* in, int n) {
    return std::apply(reference, S::template operands<accumulates>(in, n));
  };
  using Value = typename detail::Settling<decltype(result(nullptr, 0))>::Value;
  const auto operands = []<std::size_t... k>(std::index_sequence<k...>) {
    return std::vector<const ElementType*>{&elementType<typename S::template Element<k>>...};
  };
  const Prototype& prototype = prototypeOf(reinterpret_cast<const void*>(function));
  return {prototype.name,
          &prototype,
          operands(typename S::Operands()),
          accumulates,
          !std::is_same_v<decltype(part(std::declval<Value>(), 0)), Near>,
          [result](const void* const* in, const void* out, int len, RoundMode mode, int scaleFactor) {
            Verdict v;
            for (int n = 0; n < len; ++n)
              detail::judgeElement(result(in, n), loadElement<D>(out, n), n, mode, scaleFactor, v);
            return v;
          }};
}

template <class Reference, class... F>
void checkExports(Reference reference, F... functions) {
  static const std::vector<int> lengths = usualLengths();
  (check(describe(reference, functions), lengths), ...);
}

}  // namespace ovks::test
