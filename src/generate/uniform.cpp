// SPDX-License-Identifier: MIT
// The uniform generator.
#include "core/export.hpp"
#include "generate/random.hpp"

namespace {

using namespace ovks;

template <class T>
struct State {
  static constexpr int32_t kContext = contextOf<T>(35);

  int32_t context;
  uint32_t seed;
  T low, high;
  double mid, scale;
  Engine engine;
};
static_assert(sizeof(State<uint8_t>) == 56 && sizeof(State<int16_t>) == 56 && sizeof(State<float>) == 56);
static_assert(sizeof(State<double>) == 64);

template <class S, class T>
Status init(S* pState, T low, T high, uint32_t seed) {
  if (!pState) return StatusNullPtr;
  const auto sum = low + high, difference = high - low;  // of integers exact, else in their own type
  auto state = blank<State<T>>();
  state.context = State<T>::kContext;
  state.seed = seed;
  state.low = low;
  state.high = high;
  state.mid = sum * 0.5;
  state.scale = difference * 0x1p-32;
  state.engine = Engine(seed);
  save(pState, state);
  return StatusOk;
}

// Values of the engine over the whole interval, which rounding to an integer does not leave.
template <class T>
void fill(T* pDst, int len, State<T>& state) {
  using V = Vec<double>;
  const V scale = broadcast<V>(state.scale), mid = broadcast<V>(state.mid);
  generate(state.engine, len, [=](auto u, std::ptrdiff_t i, int count) {
    write(pDst + i, count, fma(halfOf<0>(u), scale, mid));
    write(pDst + i + lanes<V>, count - lanes<V>, fma(halfOf<1>(u), scale, mid));
  });
}

template <class T, class S>
Status uniform(T* pDst, int len, S* pState) {
  State<T> state;
  if (const Status s = restore(state, pDst, len, pState)) return s;
  if constexpr (std::is_integral_v<T>) {
    const DefaultFloatControl control;
    fill(pDst, len, state);
  } else {
    fill(pDst, len, state);
  }
  save(pState, state);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksRandUniformGetSize_8u, getSize<sizeof(State<uint8_t>)>);
OVKS_EXPORT(ovksRandUniformGetSize_16s, getSize<sizeof(State<int16_t>)>);
OVKS_EXPORT(ovksRandUniformGetSize_32f, getSize<sizeof(State<float>)>);
OVKS_EXPORT(ovksRandUniformGetSize_64f, getSize<sizeof(State<double>)>);
OVKS_EXPORT(ovksRandUniformInit_8u, init);
OVKS_EXPORT(ovksRandUniformInit_16s, init);
OVKS_EXPORT(ovksRandUniformInit_32f, init);
OVKS_EXPORT(ovksRandUniformInit_64f, init);
OVKS_EXPORT(ovksRandUniform_8u, uniform);
OVKS_EXPORT(ovksRandUniform_16s, uniform);
OVKS_EXPORT(ovksRandUniform_32f, uniform);
OVKS_EXPORT(ovksRandUniform_64f, uniform);
