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

#include <functional>
#include <numeric>
#include <span>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>

#include "ovks.h"
#include "support/guarded.hpp"
#include "support/random.hpp"

namespace ovks::test {

template <class T>
bool agrees(T got, T want) {
  if constexpr (std::is_integral_v<T>) {
    return got == want;
  } else {
    using Bits = std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>;
    constexpr Bits kQuiet = Bits{1} << (std::numeric_limits<T>::digits - 2);
    const Bits bits = std::bit_cast<Bits>(want);
    return std::isnan(want) && (bits & kQuiet) ? std::isnan(got) : std::bit_cast<Bits>(got) == bits;
  }
}

template <class T>
bool agrees(T got, Near want) {
  if (std::isinf(want.bound)) return true;
  if (std::isnan(want.value)) return std::isnan(got);
  return std::isinf(want.value) ? got == want.value : std::fabs(got - want.value) <= want.bound;
}

template <class T>
std::string text(T x) {
  std::ostringstream s;
  s.precision(20);
  if constexpr (ComplexElement<T>) s << '(' << text(x.re) << ", " << text(x.im) << ')';
  else if constexpr (std::is_same_v<T, Near>) s << x.value << " to " << x.bound;
  else if constexpr (std::is_integral_v<T>) s << +x;
  else s << x << std::hexfloat << " = " << x;
  return s.str();
}

// Part of a real or complex element or result.
template <class T>
auto part(T x, [[maybe_unused]] int k) {
  if constexpr (ComplexElement<T>) return k ? x.im : x.re;
  else return x;
}
template <class T>
using Real = decltype(part(T{}, 0));
template <class T>
inline constexpr int parts = ComplexElement<T> ? 2 : 1;

template <class T>
T loadElement(const void* p, std::ptrdiff_t i = 0) {
  T x;
  std::memcpy(&x, static_cast<const char*>(p) + i * std::ptrdiff_t{sizeof(T)}, sizeof x);
  return x;
}

// What the harness needs to know of an element type.
struct ElementType {
  std::size_t size;
  bool integer;
  void (*fill)(Random&, void*, int n);
  bool (*same)(const void* got, const void* want);
  std::string (*text)(const void*);
};

template <class T>
inline constexpr ElementType elementType = {
    sizeof(T), std::is_integral_v<Real<T>>,
    [](Random& random, void* p, int n) {
      for (int i = 0; i < n; ++i) {
        const T x = random.value<T>();
        std::memcpy(static_cast<char*>(p) + static_cast<std::size_t>(i) * sizeof(T), &x, sizeof x);
      }
    },
    [](const void* got, const void* want) {
      const T g = loadElement<T>(got), w = loadElement<T>(want);
      return agrees(part(g, 0), part(w, 0)) && agrees(part(g, 1), part(w, 1));
    },
    [](const void* p) { return text(loadElement<T>(p)); }};

// Element-wise verdict on a call that started from the operands in.
struct Verdict {
  Status status = StatusOk;
  int wrong = -1;  // index of the first wrong element
  std::string expected;
};

// An export behind one face for all signatures. Operands are given by address, constants too.
struct Export {
  std::string name;
  std::vector<const ElementType*> operands;  // in the parameters' order, the destination last
  std::vector<bool> isVector;
  bool accumulates;  // reads its destination
  bool exact;        // equal to the reference, not just near it
  int modes;         // 0, 1 (a scale factor) or 2 (a rounding mode before it)
  std::function<Status(void* const* operands, int len, RoundMode, int scaleFactor)> call;
  std::function<Verdict(const void* const* in, const void* out, int len, RoundMode, int scaleFactor)> judge;
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
  static constexpr int modes = int{sizeof...(P)} - int{last} - 2;
  static_assert(modes >= 0 && modes <= 2);
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

  static Status call(Status (*function)(P...), void* const* in, int len, RoundMode mode, int scaleFactor) {
    const auto argument = [in]<std::size_t k>(std::integral_constant<std::size_t, k>) {
      if constexpr (isVector[k]) return static_cast<Parameter<k>>(in[k]);
      else return loadElement<Parameter<k>>(in[k]);
    };
    return [&]<std::size_t... k>(std::index_sequence<k...>) {
      const auto all = std::tuple(argument(std::integral_constant<std::size_t, k>())..., len);
      if constexpr (modes == 0) return std::apply(function, all);
      else if constexpr (modes == 1) return std::apply(function, std::tuple_cat(all, std::tuple(scaleFactor)));
      else return std::apply(function, std::tuple_cat(all, std::tuple(mode, scaleFactor)));
    }
    (Operands());
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
  return {exportName(reinterpret_cast<const void*>(function)),
          operands(typename S::Operands()),
          std::vector<bool>(S::isVector, S::isVector + S::last + 1),
          accumulates,
          !std::is_same_v<decltype(part(std::declval<Value>(), 0)), Near>,
          S::modes,
          [function](auto... arguments) { return S::call(function, arguments...); },
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
