// SPDX-License-Identifier: MIT
// Packed spectra of any length: expansion to all points, and products.
#include "core/check.hpp"
#include "core/complex.hpp"
#include "core/element.hpp"
#include "core/export.hpp"
#include "core/loops.hpp"
#include "ovks/transform.h"
#include "transform/packed_layout.hpp"

namespace {

using namespace ovks;

// Where the points X[1] ... X[(len - 1) / 2] begin, and X[len / 2] stands for even lengths.
template <class Layout>
std::ptrdiff_t pairsAt(std::ptrdiff_t len) {
  if constexpr (std::is_same_v<Layout, CcsLayout>) return 2;
  return std::is_same_v<Layout, PermLayout> && len % 2 == 0 ? 2 : 1;
}

// The last lanes first, imaginary parts negated.
template <class V>
OVKS_INLINE V conjugatesReversed(V v) {
  v = shuffle(v, [](int i) { return (lanes<V> - 2 - (i & ~1)) + (i & 1); });
  V sign{};
  for (int i = 1; i < lanes<V>; i += 2) sign[i] = static_cast<Lane<V>>(-0.0);
  return bits<V>(bits<RawVec<sizeof(V)>>(v) ^ bits<RawVec<sizeof(V)>>(sign));
}

// dst[len - k] = conj dst[k], 0 < k <= m.
template <class C>
void mirror(C* dst, std::ptrdiff_t len, std::ptrdiff_t m) {
  using V = Vec<Real<C>>;
  constexpr int n = lanes<V> / 2;
  std::ptrdiff_t k = 1;
  for (; k + n <= m + 1; k += n) store(dst + len - k - (n - 1), conjugatesReversed(load<V>(dst + k)));
  for (; k <= m; ++k) dst[len - k] = {dst[k].re, -dst[k].im};
}

// p[0 ... n) to p[by ... by + n), from the top down.
template <class T>
void moveUp(T* p, std::ptrdiff_t n, std::ptrdiff_t by) {
  using V = Vec<T>;
  for (; n >= lanes<V>; n -= lanes<V>) store(p + n - lanes<V> + by, load<V>(p + n - lanes<V>));
  for (; n > 0; --n) p[n - 1 + by] = p[n - 1];
}

template <class Layout, class C>
Status expand(C* pSrcDst, int len) {
  if (const Status s = check(len, pSrcDst)) return s;
  using T = Real<C>;
  T* p = reals(pSrcDst);
  const std::ptrdiff_t m = (len - 1) / 2;
  if constexpr (!std::is_same_v<Layout, CcsLayout>) {
    const T first = p[0], half = p[Layout::half(len) < len ? Layout::half(len) : 0];
    const std::ptrdiff_t at = pairsAt<Layout>(len);
    if (at < 2) moveUp(p + at, 2 * m, 1);
    pSrcDst[0] = {first, 0};
    if (len % 2 == 0) pSrcDst[len / 2] = {half, 0};
  }
  mirror(pSrcDst, len, m);
  return StatusOk;
}

template <class Layout, class T, class C>
Status expand(const T* pSrc, C* pDst, int len) {
  if (pSrc == reals(pDst)) return expand<Layout>(pDst, len);
  if (const Status s = check(len, pSrc, pDst)) return s;
  const std::ptrdiff_t m = (len - 1) / 2, at = pairsAt<Layout>(len);
  T* p = reals(pDst);
  const auto same = [](auto v) { return v; };
  if constexpr (std::is_same_v<Layout, CcsLayout>) {
    map(same, p, 2 * (len / 2 + 1), pSrc);
  } else {
    pDst[0] = {pSrc[0], 0};
    if (m > 0) map(same, p + 2, 2 * m, pSrc + at);
    if (len % 2 == 0) pDst[len / 2] = {pSrc[Layout::half(len)], 0};
  }
  mirror(pDst, len, m);
  return StatusOk;
}

// re = fma(d.re, s.re, s.im d.im), im = fma(s.im, d.re, -(s.re d.im))
template <class V>
OVKS_INLINE V conjugateProduct(V s, V d) {
  return fmaSubAdd(dupReal(d), s, -(dupImag(d) * swapParts(s)));
}

// Products of the real points, then of the pairs.
template <class Layout, class T, class F>
OVKS_INLINE void multiply(const T* pSrc1, const T* pSrc2, T* pDst, int len, F product) {
  using C = std::conditional_t<sizeof(T) == 4, Complex32f, Complex64f>;
  const std::ptrdiff_t at = pairsAt<Layout>(len), half = Layout::half(len), m = (len - 1) / 2;
  const T first = pSrc1[0] * pSrc2[0], last = len % 2 == 0 ? pSrc1[half] * pSrc2[half] : T(0);
  const auto pairs = [at](auto* p) { return reinterpret_cast<const C*>(p + at); };
  if (m > 0) map(product, const_cast<C*>(pairs(pDst)), m, pairs(pSrc1), pairs(pSrc2));
  pDst[0] = first;
  if (len % 2 == 0) pDst[half] = last;
}

template <class Layout, class T>
Status multiply(const T* pSrc, T* pSrcDst, int len) {
  if (const Status s = check(len, pSrc, pSrcDst)) return s;
  multiply<Layout>(pSrc, pSrcDst, pSrcDst, len, [](auto a, auto b) { return complexProduct(a, b); });
  return StatusOk;
}

template <class Layout, class T>
Status multiply(const T* pSrc1, const T* pSrc2, T* pDst, int len) {
  if (pSrc2 == pDst) return multiply<Layout>(pSrc1, pDst, len);
  if (pSrc1 == pDst) return multiply<Layout>(pSrc2, pDst, len);
  if (const Status s = check(len, pSrc1, pSrc2, pDst)) return s;
  multiply<Layout>(pSrc1, pSrc2, pDst, len, [](auto a, auto b) { return complexProduct(a, b); });
  return StatusOk;
}

template <class T>
Status multiplyConjugate(const T* pSrc, T* pSrcDst, int len) {
  if (const Status s = check(len, pSrc, pSrcDst)) return s;
  multiply<PackLayout>(pSrc, pSrcDst, pSrcDst, len, [](auto a, auto b) { return conjugateProduct(a, b); });
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksConjCcs_32fc, expand<CcsLayout>);
OVKS_EXPORT(ovksConjCcs_32fc_I, expand<CcsLayout>);
OVKS_EXPORT(ovksConjPack_32fc, expand<PackLayout>);
OVKS_EXPORT(ovksConjPack_32fc_I, expand<PackLayout>);
OVKS_EXPORT(ovksConjPerm_32fc, expand<PermLayout>);
OVKS_EXPORT(ovksConjPerm_32fc_I, expand<PermLayout>);
OVKS_EXPORT(ovksConjCcs_64fc, expand<CcsLayout>);
OVKS_EXPORT(ovksConjCcs_64fc_I, expand<CcsLayout>);
OVKS_EXPORT(ovksConjPack_64fc, expand<PackLayout>);
OVKS_EXPORT(ovksConjPack_64fc_I, expand<PackLayout>);
OVKS_EXPORT(ovksConjPerm_64fc, expand<PermLayout>);
OVKS_EXPORT(ovksConjPerm_64fc_I, expand<PermLayout>);

OVKS_EXPORT(ovksMulPack_32f, multiply<PackLayout>);
OVKS_EXPORT(ovksMulPack_32f_I, multiply<PackLayout>);
OVKS_EXPORT(ovksMulPack_64f, multiply<PackLayout>);
OVKS_EXPORT(ovksMulPack_64f_I, multiply<PackLayout>);
OVKS_EXPORT(ovksMulPerm_32f, multiply<PermLayout>);
OVKS_EXPORT(ovksMulPerm_32f_I, multiply<PermLayout>);
OVKS_EXPORT(ovksMulPerm_64f, multiply<PermLayout>);
OVKS_EXPORT(ovksMulPerm_64f_I, multiply<PermLayout>);
OVKS_EXPORT(ovksMulPackConj_32f_I, multiplyConjugate);
OVKS_EXPORT(ovksMulPackConj_64f_I, multiplyConjugate);
