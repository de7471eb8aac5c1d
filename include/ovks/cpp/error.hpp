// SPDX-License-Identifier: MIT
/// @file
/// Statuses as exceptions.
#ifndef OVKS_CPP_ERROR_HPP
#define OVKS_CPP_ERROR_HPP

#include <stdexcept>
#include <string>
#include <string_view>

#include "../types.h"

namespace ovks {

/// What a status means, in a few words.
constexpr std::string_view statusText(Status status) {
  switch (status) {
    case StatusDivByZero: return "a divisor is zero";
    case StatusOk: return "success";
    case StatusBadArg: return "an enumerated argument has a value outside its set";
    case StatusBadSize: return "a length or size is out of range";
    case StatusNullPtr: return "a required pointer is null";
    case StatusDivByZeroErr: return "the constant divisor is zero";
    case StatusBadDataType: return "a data type that the call does not accept";
    case StatusBadFFTOrder: return "an FFT order out of range";
    case StatusBadFFTFlag: return "an unknown FFT normalisation";
    case StatusContextMismatch: return "an object of another kind, or not initialised";
    case StatusBadThresholdPair: return "the lower threshold lies above the upper one";
    case StatusBadThreshold: return "a negative magnitude threshold";
    case StatusBadPhase: return "a phase outside its factor";
    case StatusBadShift: return "a negative shift count";
    case StatusHugeWin: return "the window's parameter is too large for the length";
    case StatusBadRoundMode: return "an unknown rounding mode";
    case StatusBadAlgType: return "an unknown algorithm";
    default: return "unknown status";
  }
}

/// A call that failed. Nothing has been written.
class Error : public std::runtime_error {
 public:
  /// An error of the function @p call; @p what stands in for the status's own text.
  Error(Status status, std::string_view call, std::string_view what)
      : std::runtime_error(std::string(call).append(": ").append(what) + " (status " + std::to_string(status) + ")"),
        status_(status) {}
  /// An error of the function @p call in the status's own text.
  Error(Status status, std::string_view call) : Error(status, call, statusText(status)) {}

  /// The negative value that the C function returned, or would have returned.
  Status status() const noexcept { return status_; }

 private:
  Status status_;
};

namespace detail {

// Out of line, so that a call's own code stays a comparison and a branch.
[[noreturn, gnu::cold, gnu::noinline]] inline void fail(Status status, std::string_view call) {
  throw Error(status, call);
}
[[noreturn, gnu::cold, gnu::noinline]] inline void fail(Status status, std::string_view call, std::string_view what) {
  throw Error(status, call, what);
}

// From how the compiler writes this instantiation.
template <auto function>
consteval std::string_view writtenName() {
  std::string_view name = __PRETTY_FUNCTION__;
  name.remove_prefix(name.find("ovks", name.find("function = ")));
  return name.substr(0, name.find_first_of(";])"));
}

// The name of a C function.
template <auto function>
inline constexpr std::string_view kNameOf = writtenName<function>();

// Lets warnings pass.
template <auto function>
Status checked(Status status) {
  if (status < 0) [[unlikely]]
    fail(status, kNameOf<function>);
  return status;
}

}  // namespace detail
}  // namespace ovks

#endif
