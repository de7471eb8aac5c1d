// SPDX-License-Identifier: MIT
// Whole families of exports by the beginnings of their names, so that a new member is tested without being listed:
//
//   checkFamilies<"ovksAdd_", "ovksAddC_">([](auto a, auto b) { return a + b; });
#pragma once

#include "support/harness.hpp"

namespace ovks::test {

template <std::size_t n>
struct Beginning {
  char text[n];

  consteval Beginning(const char (&s)[n]) { std::copy_n(s, n, text); }
  constexpr bool of(std::string_view name) const { return name.starts_with({text, n - 1}); }
};

template <Beginning... names, class F>
void forFamilies(F f) {
  int found = 0;
#define X(name) \
  if constexpr ((names.of(#name) || ...)) ++found, f(name);
#include "exports.inc"
#undef X
  EXPECT_GE(found, int{sizeof...(names)});
}

template <Beginning... names>
void checkFamilies(auto reference) {
  forFamilies<names...>([&](auto function) { checkExports(reference, function); });
}

}  // namespace ovks::test
