// SPDX-License-Identifier: MIT
// Loops over vectors of elements, with the tail handled once for everybody.
//
// map(f, dst, n, src...) writes dst[i] = f(src[i]...) a vector at a time. dst may be any of the sources. What does not
// fill a vector goes through masks on AVX-512; on AVX2 the last vector overlaps the one before: it is computed first
// and stored last, so that a source that is also the destination is still read unchanged.
#pragma once

#include "core/element.hpp"
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

  F& f;
  D* dst;

  OVKS_INLINE Out at([[maybe_unused]] std::ptrdiff_t i, const S*... src) const {
    return f(load<Elements<S, N>>(src + i)...);
  }

  OVKS_INLINE void part(std::ptrdiff_t i, std::ptrdiff_t n, const S*... src) const {
    const Out r = f(loadPart<Elements<S, N>>(reals(src + i), n * parts<S>)...);
    storePart(reals(dst + i), r, n * parts<D>);
  }

  template <std::size_t... u>
  OVKS_INLINE void block(std::index_sequence<u...>, std::ptrdiff_t i, const S*... src) const {
    const Out r[] = {at(i + std::ptrdiff_t{u} * N, src...)...};
    (store(dst + i + u * N, r[u]), ...);
  }

  // Elements to go until dst stands at a vector boundary; -1 when it never does.
  OVKS_INLINE std::ptrdiff_t misaligned() const {
    const std::size_t bytes = -reinterpret_cast<std::uintptr_t>(dst) % sizeof(Out);
    return bytes % sizeof(D) ? -1 : static_cast<std::ptrdiff_t>(bytes / sizeof(D));
  }

  OVKS_INLINE void run(std::ptrdiff_t n, const S*... src) const {
    constexpr int kUnroll = 4;
    if (n < N) return part(0, n, src...);
    const std::ptrdiff_t rest = n % N;
    Out last;
    if constexpr (!kAvx512) last = at(n - N, src...);
    std::ptrdiff_t i = 0;
    for (; i + kUnroll * N <= n; i += kUnroll * N) block(std::make_index_sequence<kUnroll>{}, i, src...);
    for (; i + N <= n; i += N) store(dst + i, at(i, src...));
    if (rest == 0) return;
    if constexpr (kAvx512) {
      part(i, rest, src...);
    } else {
      store(dst + n - N, last);
    }
  }

  // For results larger than the caches, apart from every source.
  [[gnu::noinline]] void runStreaming(std::ptrdiff_t n, const S*... src) const {
    std::ptrdiff_t i = misaligned();
    if (i > 0) part(0, i, src...);
    if constexpr (kStreams) {
      for (; i + N <= n; i += N) stream(dst + i, at(i, src...));
    }
    if (i < n) part(i, n - i, src...);
    _mm_sfence();
  }
};

}  // namespace detail

// map with elements few enough for one vector of C's.
template <class C, class F, class D, class... S>
OVKS_INLINE void mapAs(F&& f, D* dst, std::ptrdiff_t n, const S*... src) {
  const detail::Map<std::remove_reference_t<F>, C, D, S...> loop{f, dst};
  if (loop.kStreams && n * std::ptrdiff_t{sizeof(D)} > kStreamingAbove) [[unlikely]] {
    const bool apart = (true & ... & (static_cast<const void*>(src) != static_cast<const void*>(dst)));
    if (apart && loop.misaligned() >= 0 && exceedsCache(n * std::ptrdiff_t{sizeof(D)}))
      return loop.runStreaming(n, src...);
  }
  loop.run(n, src...);
}

template <class F, class D, class... S>
OVKS_INLINE void map(F&& f, D* dst, std::ptrdiff_t n, const S*... src) {
  mapAs<D>(f, dst, n, src...);
}

}  // namespace ovks
