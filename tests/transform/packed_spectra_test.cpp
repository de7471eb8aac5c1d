// SPDX-License-Identifier: MIT
// Expansion and products of packed spectra, from the layouts' definitions.
#include "support/trial.hpp"
#include "transform/spectra.hpp"

namespace ovks::test {
namespace {

// X[k], 0 <= k <= n / 2.
template <class T>
Complex<T> point(Layout layout, std::size_t n, std::size_t k, const std::vector<T>& p) {
  const std::size_t at = k == 0 ? 0 : placeOf(layout, n, k);
  return {p[at], isPair(layout, n, k) ? p[at + 1] : 0};
}

// One product is rounded and the other fused, but for real points' only one.
template <class T>
Complex<T> product(bool isReal, Complex<T> a, Complex<T> b, bool conjugate) {
  if (isReal) return {a.re * b.re, 0};
  if (conjugate) return {std::fma(b.re, a.re, a.im * b.im), std::fma(a.im, b.re, -(a.re * b.im))};
  return {std::fma(a.re, b.re, -(a.im * b.im)), std::fma(a.re, b.im, a.im * b.re)};
}

// Holds a result against b a or a conj(b), or against all points of a.
template <class T>
void judge(Trial& t, const Bytes& result, const Bytes& first, const Bytes& second) {
  const Prototype& p = t.call.prototype();
  const Layout layout = layoutOf(p);
  const auto n = static_cast<std::size_t>(t.call.shape().len);
  const std::vector<T> got = sequence<T>(result), a = sequence<T>(first), b = sequence<T>(second);
  const bool isProduct = p.startsWith("ovksMul");
  for (std::size_t k = 0; k < (isProduct ? n / 2 + 1 : n); ++k) {
    const bool isMirrored = 2 * k > n;
    const Complex<T> x = point(layout, n, isMirrored ? n - k : k, a);
    Complex<T> is = {got[2 * k % got.size()], got[(2 * k + 1) % got.size()]}, want = {x.re, isMirrored ? -x.im : x.im};
    if (isProduct) {
      is = point(layout, n, k, got);
      want = product(!isPair(layout, n, k), x, point(layout, n, k, b), p.nameHas("Conj"));
    }
    const bool isRight = agrees(is.re, want.re) && agrees(is.im, want.im);
    if (!isRight) t.fail("point ", k, " is ", text(is), " instead of ", text(want));
  }
}

template <class T>
void check(const Prototype& p, int len) {
  Random random(p.name + std::to_string(len));
  Shape shape;
  shape.len = len;
  Trial t(p, shape, random);
  const Bytes a = t.call.data(0), b = t.call.data(p.find("len") > 1);
  const std::size_t destination = p.vectors(false, true)[0];
  t.first();
  judge<T>(t, t.results()[destination], a, b);
  t.repeat();
  if (p.has("pSrc2")) {  // a = b a
    t.call.place({}, {destination, 0, 0});
    t.execute(t.call);
    judge<T>(t, t.call.bytes(destination), b, a);
  }
  EXPECT_EQ(t.status(), StatusOk);
  EXPECT_EQ(t.error(), "");
}

TEST(PackedSpectra, MatchTheirDefinitions) {
  for (const Prototype& p : prototypes()) {
    if (!p.startsWith("ovksConj") && !p.startsWith("ovksMulP")) continue;
    for (int len = 1; len <= 140; ++len) p.nameHas("64") ? check<double>(p, len) : check<float>(p, len);
  }
}

}  // namespace
}  // namespace ovks::test
