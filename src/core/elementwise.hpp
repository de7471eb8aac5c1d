// SPDX-License-Identifier: MIT
// Entries of element-wise operations, one per shape: checks, then the loop.
//
// elementwise<Op> is an overload set over the shapes
//   (pSrc1, pSrc2, pDst, len)   two sources           (pSrc, pDst, len)    one source, or in place with a second
//   (pSrc, val, pDst, len)      source and constant   (val, pSrcDst, len)  in place with a constant
// each also with a scaleFactor at the end. Op::apply<D>(vectors...) takes one vector for each source, in the order of
// the parameters, and gives a vector for destination elements of type D, or for integers an exact result (exact.hpp).
// A pointer to the entry converts to the signature of an export, which picks shape and types.
#pragma once

#include "core/check.hpp"
#include "core/loops.hpp"
#include "core/rounding.hpp"

namespace ovks {

// The operation with its two operands exchanged.
template <class Op>
struct Flip {
  template <class D, class A, class B>
  OVKS_INLINE static auto apply(A a, B b) {
    return Op::template apply<D>(b, a);
  }
};

// Operations that read what they overwrite say so with kAccumulates; the others with one source are unary.
template <class Op>
concept Accumulates = requires {
  Op::kAccumulates;
};
template <class Op, class D, class S>
concept Unary = requires(Elements<S, kVectorBytes / int{sizeof(S)}> v) {
  Op::template apply<D>(v);
};
template <class T>
concept Constant = !std::is_pointer_v<T>;

namespace detail {

template <class R>
concept Exact = requires(R r) {
  r.saturated();
};

template <class R>
OVKS_INLINE auto settled(R r) {
  if constexpr (Exact<R>) return r.saturated();
  else return r;
}

// dst[i] = f(src[i]...) * 2^-scaleFactor, f giving an exact result.
template <class F, class D, class... S>
OVKS_INLINE Status mapScaled(F f, D* dst, int len, int scaleFactor, const S*... src) {
  using R = decltype(f(Elements<S, step<D, S...>>{}...));
  if (scaleFactor == 0) return map([f](auto... v) { return f(v...).saturated(); }, dst, len, src...);
  if (scaleFactor < 0) {
    const ShiftUp<decltype(std::declval<R>().saturated())> up(0u - static_cast<unsigned>(scaleFactor));
    return map([f, up](auto... v) { return up(f(v...).saturated()); }, dst, len, src...);
  }
  if constexpr (requires { R::kQuickShift; }) {
    using Q = std::integral_constant<int, R::kQuickShift>;
    if (scaleFactor == Q::value) return map([f](auto... v) { return f(v...).scaledDown(Q{}); }, dst, len, src...);
  }
  if (scaleFactor <= R::kMaxShift) {
    return map([f, scaleFactor](auto... v) { return f(v...).scaledDown(scaleFactor); }, dst, len, src...);
  }
  return map([] { return Elements<D, step<D>>{}; }, dst, len);
}

template <class D, class Op>
inline constexpr auto operation = [](auto... v) { return Op::template apply<D>(v...); };

// The operation with a constant as its second operand.
template <class D, class Op, class S, class C>
OVKS_INLINE auto withConstant(C val) {
  using V = Elements<C, step<D, S>>;
  return [val](auto v, auto... more) { return Op::template apply<D>(v, repeat<V>(val), more...); };
}

}  // namespace detail

template <class Op, class S1, class S2, class D>
Status elementwise(const S1* pSrc1, const S2* pSrc2, D* pDst, int len) {
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  const auto f = [](auto... v) { return detail::settled(Op::template apply<D>(v...)); };
  if constexpr (Accumulates<Op>) return map(f, pDst, len, pSrc1, pSrc2, pDst);
  else return map(f, pDst, len, pSrc1, pSrc2);
}

template <class Op, class S1, class S2, class D>
Status elementwise(const S1* pSrc1, const S2* pSrc2, D* pDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  if constexpr (Accumulates<Op>)
    return detail::mapScaled(detail::operation<D, Op>, pDst, len, scaleFactor, pSrc1, pSrc2, pDst);
  else return detail::mapScaled(detail::operation<D, Op>, pDst, len, scaleFactor, pSrc1, pSrc2);
}

template <class Op, class S, class D>
Status elementwise(const S* pSrc, D* pDst, int len) {
  if constexpr (Unary<Op, D, S>) {
    if (const Status s = check(len, pSrc, pDst)) return s;
    return map([](auto v) { return detail::settled(Op::template apply<D>(v)); }, pDst, len, pSrc);
    return StatusOk;
  } else {
    return elementwise<Op>(pSrc, static_cast<const D*>(pDst), pDst, len);
  }
}

template <class Op, class S, class D>
Status elementwise(const S* pSrc, D* pDst, int len, int scaleFactor) {
  if constexpr (Unary<Op, D, S>) {
    if (const Status s = check(len, pSrc, pDst)) return s;
    return detail::mapScaled(detail::operation<D, Op>, pDst, len, scaleFactor, pSrc);
  } else {
    return elementwise<Op>(pSrc, static_cast<const D*>(pDst), pDst, len, scaleFactor);
  }
}

template <class Op, class D>
Status elementwise(D* pSrcDst, int len) {
  return elementwise<Op>(static_cast<const D*>(pSrcDst), pSrcDst, len);
}

template <class Op, class D>
Status elementwise(D* pSrcDst, int len, int scaleFactor) {
  return elementwise<Op>(static_cast<const D*>(pSrcDst), pSrcDst, len, scaleFactor);
}

template <class Op, class S, Constant C, class D>
Status elementwise(const S* pSrc, C val, D* pDst, int len) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  const auto f = [f = detail::withConstant<D, Op, S>(val)](auto... v) { return detail::settled(f(v...)); };
  if constexpr (Accumulates<Op>) return map(f, pDst, len, pSrc, pDst);
  else return map(f, pDst, len, pSrc);
}

template <class Op, class S, Constant C, class D>
Status elementwise(const S* pSrc, C val, D* pDst, int len, int scaleFactor) {
  if (const Status s = check(len, pSrc, pDst)) return s;
  return detail::mapScaled(detail::withConstant<D, Op, S>(val), pDst, len, scaleFactor, pSrc);
}

template <class Op, Constant C, class D>
Status elementwise(C val, D* pSrcDst, int len) {
  return elementwise<Op>(static_cast<const D*>(pSrcDst), val, pSrcDst, len);
}

template <class Op, Constant C, class D>
Status elementwise(C val, D* pSrcDst, int len, int scaleFactor) {
  return elementwise<Op>(static_cast<const D*>(pSrcDst), val, pSrcDst, len, scaleFactor);
}

}  // namespace ovks
