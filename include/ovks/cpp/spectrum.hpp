// SPDX-License-Identifier: MIT
/// @file
/// Operations on the packed spectra of real signals, as transform.h describes them.
#ifndef OVKS_CPP_SPECTRUM_HPP
#define OVKS_CPP_SPECTRUM_HPP

#include "../transform.h"
#include "elementwise.hpp"

namespace ovks {

/// Reals in the CCS layout of a spectrum of @p n points.
constexpr std::size_t ccsLength(std::size_t n) { return n / 2 * 2 + 2; }

namespace detail {

constexpr std::size_t packedLength(std::size_t n) { return n; }

// From a packed spectrum to as many points as the destination has.
template <auto function, auto sourceLength, class = decltype(function)>
struct ExpandCall;
template <auto function, auto sourceLength, class T, class Z>
struct ExpandCall<function, sourceLength, Status (*)(const T*, Z*, int)> {
  Status operator()(std::span<const T> src, std::span<Z> dst) const {
    const T* const packed = exactly(sourceLength(dst.size()), src, kNameOf<function>);
    return checked<function>(function(packed, dst.data(), lengthOf(dst.size(), kNameOf<function>)));
  }
};

}  // namespace detail

/// Expands a spectrum in the CCS layout into all its points; in place, it stands at the array's start.
inline constexpr Overloads<detail::ExpandCall<ovksConjCcs_32fc, ccsLength>,
                           detail::ExpandCall<ovksConjCcs_64fc, ccsLength>,
                           Elementwise<ovksConjCcs_32fc_I, ovksConjCcs_64fc_I>>
    conjCcs{};

/// Like conjCcs(), from the Pack layout.
inline constexpr Overloads<detail::ExpandCall<ovksConjPack_32fc, detail::packedLength>,
                           detail::ExpandCall<ovksConjPack_64fc, detail::packedLength>,
                           Elementwise<ovksConjPack_32fc_I, ovksConjPack_64fc_I>>
    conjPack{};

/// Like conjCcs(), from the Perm layout.
inline constexpr Overloads<detail::ExpandCall<ovksConjPerm_32fc, detail::packedLength>,
                           detail::ExpandCall<ovksConjPerm_64fc, detail::packedLength>,
                           Elementwise<ovksConjPerm_32fc_I, ovksConjPerm_64fc_I>>
    conjPerm{};

/// Product of two spectra in the Pack layout, point by point.
inline constexpr Elementwise<ovksMulPack_32f, ovksMulPack_32f_I, ovksMulPack_64f, ovksMulPack_64f_I> mulPack{};

/// Like mulPack(), in the Perm layout.
inline constexpr Elementwise<ovksMulPerm_32f, ovksMulPerm_32f_I, ovksMulPerm_64f, ovksMulPerm_64f_I> mulPerm{};

/// Like mulPack() in place, the last operand conjugated.
inline constexpr Elementwise<ovksMulPackConj_32f_I, ovksMulPackConj_64f_I> mulPackConj{};

}  // namespace ovks

#endif
