// SPDX-License-Identifier: MIT
// Reductions: vectors of elements folded into one accumulator.
//
// fold(start, n, src...) feeds n elements of each source to copies of an accumulator, a vector at a time, and merges
// the copies: independent chains hide the latency of an addition. An accumulator has
//   kElements          how many elements it takes at once
//   kChains            how many copies work side by side, a power of two
//   add(vectors...)    takes kElements elements of each source
//   addOdd(vectors...) does the same by other means, where the work of every other chain is better done by them
//   addTwo(v, w)       takes twice as many of its only source, where that is less work
//   merge(other)       takes what another copy has
//   fill()             what stands for elements beyond the end, where zero would count
// The order of additions depends on n alone, never on addresses.
#pragma once

#include "core/element.hpp"
#include "core/pack.hpp"
#include "core/part.hpp"

namespace ovks {

template <class V>
OVKS_INLINE auto halves(V v) {
  constexpr int n = lanes<V> / 2;
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    using H = Vec<Lane<V>, n>;
    return Pair<H>{__builtin_shufflevector(v, v, static_cast<int>(i)...),
                   __builtin_shufflevector(v, v, (static_cast<int>(i) + n)...)};
  }
  (std::make_index_sequence<n>{});
}

// op on the halves of v until two lanes are left: those of a complex value, or two parts of a real one.
template <class V, class Op>
OVKS_INLINE auto foldLanes(V v, Op op) {
  if constexpr (lanes<V> == 2) {
    return v;
  } else {
    const auto h = halves(v);
    return foldLanes(op(h.first, h.second), op);
  }
}

// The even lanes of both, and the odd ones: (a0, b0, a2, b2, ...) and (a1, b1, a3, b3, ...). Two folds become one.
template <class V>
OVKS_INLINE Pair<V> evenAndOdd(V a, V b) {
  return [&]<std::size_t... i>(std::index_sequence<i...>) {
    return Pair<V>{__builtin_shufflevector(a, b, static_cast<int>(i / 2 * 2 + i % 2 * lanes<V>)...),
                   __builtin_shufflevector(a, b, static_cast<int>(i / 2 * 2 + i % 2 * lanes<V> + 1)...)};
  }
  (std::make_index_sequence<lanes<V>>{});
}

// op on all lanes.
template <class V, class Op>
OVKS_INLINE Lane<V> foldAll(V v, Op op) {
  const auto two = foldLanes(v, op);
  return op(two, __builtin_shufflevector(two, two, 1, 0))[0];
}

inline constexpr auto kPlus = [](auto a, auto b) { return a + b; };
inline constexpr auto kMax = [](auto a, auto b) { return a > b ? a : b; };

namespace detail {

template <class A, class... S>
class Fold {
 public:
  OVKS_INLINE explicit Fold(const A& start) : Fold(start, std::make_index_sequence<A::kChains>{}) {}

  OVKS_INLINE A operator()(std::ptrdiff_t n, const S*... src) {
    std::ptrdiff_t i = 0;
    wholes<A::kChains>(i, n, src...);
    if (i + N <= n) {
      chain_[0].add(load<Elements<S, int{N}>>(src + i)...);
      i += N;
    }
    if (i < n) part(n - i, src + i...);
    if constexpr (A::kChains > 1) merge<1>();
    return chain_[0];
  }

 private:
  static constexpr std::ptrdiff_t N = A::kElements;
  static constexpr bool kTwo = requires(A a, Elements<S, int{N}>... v) { a.addTwo(v..., v...); };
  static constexpr std::ptrdiff_t kStep = kTwo ? 2 * N : N;

  template <std::size_t... u>
  OVKS_INLINE Fold(const A& start, std::index_sequence<u...>) : chain_{(static_cast<void>(u), start)...} {}

  template <std::size_t chain>
  OVKS_INLINE void one(std::ptrdiff_t i, const S*... src) {
    A& a = chain_[chain];
    if constexpr (kTwo) {
      a.addTwo(load<Elements<S, int{N}>>(src + i)..., load<Elements<S, int{N}>>(src + i + N)...);
    } else if constexpr (chain % 2 == 1 && requires { a.addOdd(load<Elements<S, int{N}>>(src)...); }) {
      a.addOdd(load<Elements<S, int{N}>>(src + i)...);
    } else {
      a.add(load<Elements<S, int{N}>>(src + i)...);
    }
  }

  template <int count>
  OVKS_INLINE void block(std::ptrdiff_t i, const S*... src) {
    [&]<std::size_t... u>(std::index_sequence<u...>) { (one<u>(i + std::ptrdiff_t{u} * kStep, src...), ...); }
    (std::make_index_sequence<count>{});
  }

  // Vectors by all chains, then by half as many at a time, down to two; the others are merged, unless none was used.
  template <int count>
  OVKS_INLINE void wholes(std::ptrdiff_t& i, std::ptrdiff_t n, const S*... src) {
    if constexpr (count > 1 || count == A::kChains || kTwo) {
      if (n >= count * kStep) {
        if constexpr (count == A::kChains) {
          for (; i + count * kStep <= n; i += count * kStep) block<count>(i, src...);
        } else if (i + count * kStep <= n) {
          block<count>(i, src...);
          i += count * kStep;
        }
        if constexpr (count > 2) merge<count / 2>();
      }
      if constexpr (count > 1) wholes<count / 2>(i, n, src...);
    }
  }

  OVKS_INLINE void part(std::ptrdiff_t n, const S*... src) {
    A& a = chain_[A::kChains > 1];
    if constexpr (requires { a.fill(); }) a.add(loadPart(src, n, broadcast<Elements<S, int{N}>>(a.fill()))...);
    else a.add(loadPart<Elements<S, int{N}>>(reals(src), n * parts<S>)...);
  }

  template <int count>
  OVKS_INLINE void merge() {
    [&]<std::size_t... u>(std::index_sequence<u...>) { (chain_[u].merge(chain_[u + count]), ...); }
    (std::make_index_sequence<count>{});
  }

  A chain_[A::kChains];
};

}  // namespace detail

template <class A, class... S>
OVKS_INLINE A fold(const A& start, std::ptrdiff_t n, const S*... src) {
  return detail::Fold<A, S...>(start)(n, src...);
}

}  // namespace ovks
