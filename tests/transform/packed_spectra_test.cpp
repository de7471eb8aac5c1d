// SPDX-License-Identifier: MIT
// Expansion and products of packed spectra, from the layouts' definitions.
#include "support/trial.hpp"
#include "transform/spectra.hpp"

namespace ovks::test {
namespace {

template <class T>
using Points = std::vector<Complex<T>>;

// X[0] ... X[n / 2]. Only CCS has room for imaginary parts of the real points.
template <class T>
Points<T> anySpectrum(const Prototype& p, std::size_t n, Random& random) {
  Points<T> x(n / 2 + 1);
  for (std::size_t k = 0; k < x.size(); ++k)
    x[k] = {random.value<T>(), 2 * k % n == 0 && !p.nameHas("Ccs") ? 0 : random.value<T>()};
  return x;
}

// One product is rounded and the other fused, but for real points' only one.
template <class T>
Complex<T> product(bool isReal, Complex<T> a, Complex<T> b, bool conjugate) {
  if (isReal) return {a.re * b.re, 0};
  if (conjugate) return {std::fma(b.re, a.re, a.im * b.im), std::fma(a.im, b.re, -(a.re * b.im))};
  return {std::fma(a.re, b.re, -(a.im * b.im)), std::fma(a.re, b.im, a.im * b.re)};
}

// Holds a result against all points of a, or against a b or a conj(b).
template <class T>
void judge(Trial& t, const Bytes& result, Points<T> a, const Points<T>& b) {
  const Prototype& p = t.call.prototype();
  const auto n = static_cast<std::size_t>(t.call.shape().len);
  const bool isProduct = p.startsWith("ovksMul");
  for (std::size_t k = 0; k <= n / 2 && isProduct; ++k) a[k] = product(2 * k % n == 0, a[k], b[k], p.nameHas("Conj"));
  for (std::size_t k = n / 2 + 1; k < n; ++k) a.push_back({a[n - k].re, -a[n - k].im});
  const std::vector<T> got = sequence<T>(result), want = isProduct ? packed(p, a, n) : sequence<T>(bytesOf(a));
  for (std::size_t i = 0; i < want.size(); ++i) {
    if (!agrees(got[i], want[i])) t.fail("number ", i, " is ", text(got[i]), " instead of ", text(want[i]));
  }
}

template <class T>
void check(const Prototype& p, int len) {
  Random random(p.name + std::to_string(len));
  const auto n = static_cast<std::size_t>(len);
  const auto a = anySpectrum<T>(p, n, random), b = anySpectrum<T>(p, n, random);
  Shape shape;
  shape.len = len;
  Trial t(p, shape, random);
  t.call.adopt(0, bytesOf(packed(p, a, n)));
  t.call.adopt(1, bytesOf(packed(p, b, n)));
  const std::size_t destination = p.vectors(false, true)[0];
  EXPECT_EQ(t.first(), StatusOk);
  judge(t, t.results()[destination], a, b);
  t.repeat();
  if (p.has("pSrc2")) {  // a = b a
    t.call.place({}, {destination, 0, 0});
    t.execute(t.call);
    judge(t, t.call.bytes(destination), b, a);
  }
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
