// SPDX-License-Identifier: MIT
/// @file
/// Sorting in place, as sort.h describes it. Ascending unless the name says otherwise.
#ifndef OVKS_CPP_SORT_HPP
#define OVKS_CPP_SORT_HPP

#include "../sort.h"
#include "elementwise.hpp"
#include "memory.hpp"

namespace ovks {
namespace detail {

template <auto function, class Operands = Range<0, SignatureOf<function>::afterPointers(0)>>
struct RadixCall;

template <auto function, std::size_t... operand>
struct RadixCall<function, std::index_sequence<operand...>> {
  Status operator()(ArgumentOf<function, operand>... operands, Buffer& buffer) const {
    const int len = commonLength<function>(operands...);
    int bytes;
    checked<ovksSortRadixGetBufferSize>(
        ovksSortRadixGetBufferSize(len, DataTypeOf<Pointee<function, 0>>::value, &bytes));
    return checked<function>(function(operands.data()..., len, buffer.require(bytes)));
  }
  Status operator()(ArgumentOf<function, operand>... operands) const {
    Buffer buffer;
    return (*this)(operands..., buffer);
  }
};

template <auto... functions>
using Radix = Overloads<RadixCall<functions>...>;

}  // namespace detail

/// Sorts the elements.
inline constexpr Elementwise<ovksSortAscend_16s_I, ovksSortAscend_16u_I, ovksSortAscend_32f_I, ovksSortAscend_32s_I,
                             ovksSortAscend_32u_I, ovksSortAscend_64f_I, ovksSortAscend_8u_I>
    sort{};

/// Like sort(), the largest first.
inline constexpr Elementwise<ovksSortDescend_16s_I, ovksSortDescend_16u_I, ovksSortDescend_32f_I, ovksSortDescend_32s_I,
                             ovksSortDescend_32u_I, ovksSortDescend_64f_I, ovksSortDescend_8u_I>
    sortDescend{};

/// Sorts the elements; the second operand receives the position that each had before.
inline constexpr Elementwise<ovksSortIndexAscend_16s_I, ovksSortIndexAscend_16u_I, ovksSortIndexAscend_32f_I,
                             ovksSortIndexAscend_32s_I, ovksSortIndexAscend_32u_I, ovksSortIndexAscend_64f_I,
                             ovksSortIndexAscend_8u_I>
    sortIndex{};

/// Like sortIndex(), the largest first.
inline constexpr Elementwise<ovksSortIndexDescend_16s_I, ovksSortIndexDescend_16u_I, ovksSortIndexDescend_32f_I,
                             ovksSortIndexDescend_32s_I, ovksSortIndexDescend_32u_I, ovksSortIndexDescend_64f_I,
                             ovksSortIndexDescend_8u_I>
    sortIndexDescend{};

/// Sorts by digits, in a Buffer that may follow the operands.
inline constexpr detail::Radix<ovksSortRadixAscend_16s_I, ovksSortRadixAscend_16u_I, ovksSortRadixAscend_32f_I,
                               ovksSortRadixAscend_32s_I, ovksSortRadixAscend_32u_I, ovksSortRadixAscend_64f_I,
                               ovksSortRadixAscend_8u_I>
    sortRadix{};

/// Like sortRadix(), the largest first.
inline constexpr detail::Radix<ovksSortRadixDescend_16s_I, ovksSortRadixDescend_16u_I, ovksSortRadixDescend_32f_I,
                               ovksSortRadixDescend_32s_I, ovksSortRadixDescend_32u_I, ovksSortRadixDescend_64f_I,
                               ovksSortRadixDescend_8u_I>
    sortRadixDescend{};

/// The second operand receives the positions of the elements in sorted order; the elements stay.
inline constexpr detail::Radix<ovksSortRadixIndexAscend_16s, ovksSortRadixIndexAscend_16u, ovksSortRadixIndexAscend_32f,
                               ovksSortRadixIndexAscend_32s, ovksSortRadixIndexAscend_32u, ovksSortRadixIndexAscend_64f,
                               ovksSortRadixIndexAscend_8u>
    sortRadixIndex{};

/// Like sortRadixIndex(), the largest first.
inline constexpr detail::Radix<ovksSortRadixIndexDescend_16s, ovksSortRadixIndexDescend_16u,
                               ovksSortRadixIndexDescend_32f, ovksSortRadixIndexDescend_32s,
                               ovksSortRadixIndexDescend_32u, ovksSortRadixIndexDescend_64f,
                               ovksSortRadixIndexDescend_8u>
    sortRadixIndexDescend{};

}  // namespace ovks

#endif
