// SPDX-License-Identifier: MIT
/// @file
/// Calls whose operands have one common length.
#ifndef OVKS_CPP_ELEMENTWISE_HPP
#define OVKS_CPP_ELEMENTWISE_HPP

#include "call.hpp"

namespace ovks {
namespace detail {

template <auto function, class Operands = Range<0, SignatureOf<function>::afterAllPointers()>,
          class Options = Range<SignatureOf<function>::afterAllPointers() + 1, SignatureOf<function>::kArity>>
struct ElementwiseCall;

template <auto function, std::size_t... operand, std::size_t... option>
struct ElementwiseCall<function, std::index_sequence<operand...>, std::index_sequence<option...>> {
  Status operator()(ArgumentOf<function, operand>... operands, Parameter<function, option>... options) const {
    return checked<function>(function(passed(operands)..., commonLength<function>(operands...), options...));
  }
};

}  // namespace detail

/// The C functions by one name. A call takes their parameters in their order, but spans for pointers and no length:
/// operands of unequal length are an error. It returns StatusOk or a warning.
template <auto... functions>
using Elementwise = Overloads<detail::ElementwiseCall<functions>...>;

}  // namespace ovks

#endif
