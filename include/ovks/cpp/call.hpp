// SPDX-License-Identifier: MIT
/// @file
/// From a C function's signature to a C++ call: pointers become spans, whose common length is the C function's.
#ifndef OVKS_CPP_CALL_HPP
#define OVKS_CPP_CALL_HPP

#include <array>
#include <climits>
#include <cstddef>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "error.hpp"

namespace ovks {

/// Calls of several function objects by one name, told apart by their arguments.
template <class... Sets>
struct Overloads : Sets... {
  using Sets::operator()...;
};

namespace detail {

template <class>
struct Signature;

template <class... P>
struct Signature<Status (*)(P...)> {
  using Parameters = std::tuple<P...>;
  static constexpr std::size_t kArity = sizeof...(P);
  static constexpr std::array<bool, sizeof...(P)> kPointers = {std::is_pointer_v<P>...};

  // Where the last run of pointers ends, and from first on the first one.
  static constexpr std::size_t afterAllPointers() {
    std::size_t i = kArity;
    while (!kPointers[i - 1]) --i;
    return i;
  }
  static constexpr std::size_t afterPointers(std::size_t first) {
    while (first < kArity && kPointers[first]) ++first;
    return first;
  }
};

template <auto function>
using SignatureOf = Signature<decltype(function)>;
template <auto function, std::size_t i>
using Parameter = std::tuple_element_t<i, typename SignatureOf<function>::Parameters>;
// What the parameter points to.
template <auto function, std::size_t i>
using Pointee = std::remove_cv_t<std::remove_pointer_t<Parameter<function, i>>>;

template <std::size_t first, std::size_t... i>
std::index_sequence<(first + i)...> shifted(std::index_sequence<i...>);
template <std::size_t first, std::size_t end>
using Range = decltype(shifted<first>(std::make_index_sequence<end - first>()));

template <class P>
struct Argument {
  using Type = P;
};
template <class T>
struct Argument<T*> {
  using Type = std::span<T>;
};
template <auto function, std::size_t i>
using ArgumentOf = typename Argument<Parameter<function, i>>::Type;

template <class T>
T* passed(std::span<T> span) {
  return span.data();
}
template <class T>
T passed(T value) {
  return value;
}

// A constant goes with any length.
template <class T>
std::size_t sizeOr(std::size_t, std::span<T> span) {
  return span.size();
}
template <class T>
std::size_t sizeOr(std::size_t otherwise, T) {
  return otherwise;
}

inline int lengthOf(std::size_t size, std::string_view call) {
  if (size - 1 >= INT_MAX) [[unlikely]]
    fail(StatusBadSize, call);
  return static_cast<int>(size);
}

inline void requireEqual(bool equal, std::string_view call) {
  if (!equal) [[unlikely]]
    fail(StatusBadSize, call, "operands of unequal length");
}

template <auto function, class... T>
int commonLength(T... operands) {
  std::size_t size = 0;
  ((size = sizeOr(size, operands)), ...);
  requireEqual(((sizeOr(size, operands) == size) && ...), kNameOf<function>);
  return lengthOf(size, kNameOf<function>);
}

// The pointer to an array that must have one certain size.
template <class T>
T* exactly(std::size_t size, std::span<T> span, std::string_view call) {
  requireEqual(span.size() == size, call);
  return span.data();
}

// Calls as they are, but for the status.
template <auto function, class = decltype(function)>
struct PlainCall;
template <auto function, class... P>
struct PlainCall<function, Status (*)(P...)> {
  Status operator()(P... arguments) const { return checked<function>(function(arguments...)); }
};
template <auto... functions>
using Plain = Overloads<PlainCall<functions>...>;

}  // namespace detail
}  // namespace ovks

#endif
