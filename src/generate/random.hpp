// SPDX-License-Identifier: MIT
// What both generators share: their states in memory of the caller, and the way of values to a vector.
#pragma once

#include <cstring>

#include "core/check.hpp"
#include "core/float_to_integer.hpp"
#include "core/part.hpp"
#include "generate/engine.hpp"
#include "ovks/generate.h"

namespace ovks {

// The tag of a state of T's, the first of four being that of 8u.
template <class T>
constexpr int32_t contextOf(int32_t first) {
  return first + (std::is_same_v<T, int16_t> ? 1 : std::is_same_v<T, float> ? 2 : std::is_same_v<T, double> ? 3 : 0);
}

// The caller's memory has no alignment, so states go in and out as bytes.
template <class State, class Opaque>
void save(Opaque* pState, const State& state) {
  std::memcpy(static_cast<void*>(pState), &state, sizeof state);
}

// A state to be filled in. Between its fields are zeros: what lay there before is nothing that callers should see.
template <class State>
OVKS_INLINE State blank() {
  State state;
  std::memset(static_cast<void*>(&state), 0, sizeof state);
  return state;
}

// The checks of a working call, then the state.
template <class State, class Opaque>
Status restore(State& state, const void* pDst, int len, const Opaque* pState) {
  const auto* bytes = reinterpret_cast<const char*>(pState);
  if (const Status s = check(len, static_cast<const char*>(pDst), bytes)) return s;
  int32_t context;
  std::memcpy(&context, bytes, sizeof context);
  if (context != State::kContext) return StatusContextMismatch;
  std::memcpy(&state, bytes, sizeof state);
  return StatusOk;
}

template <int bytes>
Status getSize(int* pSize) {
  if (!pSize) return StatusNullPtr;
  *pSize = bytes;
  return StatusOk;
}

// The first count lanes as elements, all of them when count is larger, none when it is not positive.
template <class T, class V>
OVKS_INLINE void write(T* dst, int count, V values) {
  const auto elements = [&] {
    if constexpr (std::is_integral_v<T>) return toInteger<T, RoundNear>(values);
    else return convert<T>(values);
  }();
  if (count >= lanes<V>) store(dst, elements);
  else if (count > 0) storePart(dst, elements, count);
}

// The first and the last half of integer lanes in 64f.
template <int half, class V>
OVKS_INLINE auto halfOf(V v) {
  constexpr int n = lanes<V> / 2;
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return convert<double>(__builtin_shufflevector(v, v, (static_cast<int>(i) + half * n)...));
  }
  (std::make_index_sequence<n>{});
}

}  // namespace ovks
