// SPDX-License-Identifier: MIT
// Loops over vectors of elements, with the tail handled once for everybody.
//
// map(f, dst, n, src...) writes dst[i] = f(src[i]...) a vector at a time. dst may be any of the sources. What does not
// fill a vector goes through masks on AVX-512; on AVX2 the last vector overlaps the one before: it is computed first
// and stored last, so that a source that is also the destination is still read unchanged. The ends of fewer elements
// overlap within a vector.
#pragma once

#include "core/ends.hpp"
#include "core/streaming.hpp"

namespace ovks {

namespace detail {

// The elements that fill one vector of the widest type among a loop's operands.
template <class... T>
inline constexpr int step = [] {
  int widest = 1;
  ((widest = widest < int{sizeof(T)} ? int{sizeof(T)} : widest), ...);
  return kVectorBytes / widest;
}();

template <class F, class C, class D, class... S>
struct Map {
  static constexpr int N = step<C, D, S...>;
  using Out = Elements<D, N>;
  static constexpr bool kStreams = sizeof(Out) >= 16;

  OVKS_INLINE static Out at(F f, [[maybe_unused]] std::ptrdiff_t i, const S*... src) {
    return f(load<Elements<S, N>>(src + i)...);
  }

  // What stands behind the last element. Functors that look for zeros ask for another value.
  template <class V>
  OVKS_INLINE static V padding() {
    if constexpr (requires { F::kPadding; }) return broadcast<V>(F::kPadding);
    else return V{};
  }

  OVKS_INLINE static void part(F f, D* dst, std::ptrdiff_t i, std::ptrdiff_t n, const S*... src) {
    if constexpr (kAvx512) {
      const Out r = f(loadPart(reals(src + i), n * parts<S>, padding<Elements<S, N>>())...);
      storePart(reals(dst + i), r, n * parts<D>);
    } else {
      storeEnds<N / 2>(dst + i, f(loadEnds<N>(src + i, n)...), n);
    }
  }

  template <std::size_t... u>
  OVKS_INLINE static void block(std::index_sequence<u...>, F f, D* dst, std::ptrdiff_t i, const S*... src) {
    if constexpr (kAvx512) {
      const Out r[] = {at(f, i + std::ptrdiff_t{u} * N, src...)...};
      (store(dst + i + u * N, r[u]), ...);
    } else {
      // A result is stored before the next source is read, which takes up to a fifth less time than reading all first.
      (store(dst + i + u * N, at(f, i + std::ptrdiff_t{u} * N, src...)), ...);
    }
  }

  OVKS_INLINE static void run(F f, const S*... src, D* dst, std::ptrdiff_t n) {
    constexpr int kUnroll = 4;
    const std::ptrdiff_t rest = n % N;
    Out last;
    if constexpr (!kAvx512) last = at(f, n - N, src...);
    std::ptrdiff_t i = 0;
    for (; i + kUnroll * N <= n; i += kUnroll * N) block(std::make_index_sequence<kUnroll>{}, f, dst, i, src...);
    for (; i + N <= n; i += N) store(dst + i, at(f, i, src...));
    if (rest == 0) return;
    if constexpr (kAvx512) {
      part(f, dst, i, rest, src...);
    } else {
      store(dst + n - N, last);
    }
  }

  // Elements to go until dst stands at a vector boundary; -1 when it never does.
  static std::ptrdiff_t misaligned(const D* dst) {
    const std::size_t bytes = -reinterpret_cast<std::uintptr_t>(dst) % sizeof(Out);
    return bytes % sizeof(D) ? -1 : static_cast<std::ptrdiff_t>(bytes / sizeof(D));
  }

  // For large results: past the caches where they exceed them, lie apart from every source, and can be aligned.
  [[gnu::noinline]] static void runLarge(F f, const S*... src, D* dst, std::ptrdiff_t n) {
    const bool apart = (true & ... & (static_cast<const void*>(src) != static_cast<const void*>(dst)));
    std::ptrdiff_t i = misaligned(dst);
    if (!apart || i < 0 || !exceedsCache(n * std::ptrdiff_t{sizeof(D)})) return run(f, src..., dst, n);
    if (i > 0) part(f, dst, 0, i, src...);
    for (; i + N <= n; i += N) stream(dst + i, at(f, i, src...));
    if (i < n) part(f, dst, i, n - i, src...);
    _mm_sfence();
  }

  OVKS_INLINE static void runAny(F f, const S*... src, D* dst, std::ptrdiff_t n) {
    if constexpr (kStreams) {
      if (n * std::ptrdiff_t{sizeof(D)} > kStreamingAbove) [[unlikely]]
        return runLarge(f, src..., dst, n);
    }
    run(f, src..., dst, n);
  }

  // Apart from the short case, which so needs no stack frame.
  [[gnu::noinline]] static Status runLong(F f, const S*... src, D* dst, int len) {
    runAny(f, src..., dst, len);
    return StatusOk;
  }

  // One vector with masks, without them two that overlap.
  OVKS_INLINE static bool isShort(std::ptrdiff_t n) { return n <= (kAvx512 ? N : 2 * N); }
  OVKS_INLINE static void runShort(F f, const S*... src, D* dst, std::ptrdiff_t n) {
    if (kAvx512 || n < N) return part(f, dst, 0, n, src...);
    const Out first = at(f, 0, src...), last = at(f, n - N, src...);
    store(dst, first);
    store(dst + n - N, last);
  }
};

}  // namespace detail

// map with elements few enough for one vector of C's, for an f with state, which stays in registers.
template <class C, class F, class D, class... S>
OVKS_INLINE void mapInline(F f, D* dst, std::ptrdiff_t n, const S*... src) {
  using Loop = detail::Map<F, C, D, S...>;
  if (Loop::isShort(n)) return Loop::runShort(f, src..., dst, n);
  Loop::runAny(f, src..., dst, n);
}

// Gives StatusOk, so that an entry can end in it. f is copied: what it holds should be small.
template <class F, class D, class... S>
OVKS_INLINE Status map(F f, D* dst, int len, const S*... src) {
  using Loop = detail::Map<F, D, D, S...>;
  if (!Loop::isShort(len)) return Loop::runLong(f, src..., dst, len);
  Loop::runShort(f, src..., dst, len);
  return StatusOk;
}

}  // namespace ovks
