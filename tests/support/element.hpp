// SPDX-License-Identifier: MIT
// Elements of vectors: their parts, when two are equal, how they read, and all of that behind one face for all types.
#pragma once

#include <sstream>
#include <string>

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

}  // namespace ovks::test
