// SPDX-License-Identifier: MIT
// Moves and offsets in memory of any alignment.
#pragma once

#include <cstdint>

namespace ovks {

template <class T>
inline void copyElements(const T* src, T* dst, std::int64_t n) {
  if (n > 0) __builtin_memmove(dst, src, static_cast<std::size_t>(n) * sizeof(T));
}

template <class T>
inline void zeroElements(T* dst, std::int64_t n) {
  if (n > 0) __builtin_memset(dst, 0, static_cast<std::size_t>(n) * sizeof(T));
}

// Elements from a null pointer are zeros.
template <class T>
inline void copyOrZero(const T* src, T* dst, std::int64_t n) {
  if (src) copyElements(src, dst, n);
  else zeroElements(dst, n);
}

constexpr std::int64_t roundUp64(std::int64_t bytes) { return (bytes + 63) & ~std::int64_t{63}; }

inline std::uint8_t* alignUp64(std::uint8_t* p) { return p + (-reinterpret_cast<std::uintptr_t>(p) & 63); }

}  // namespace ovks
