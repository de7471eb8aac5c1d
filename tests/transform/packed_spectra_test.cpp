// SPDX-License-Identifier: MIT
// Expansion and products of packed spectra, from the layouts' definitions.
#include "support/trial.hpp"
#include "transform/spectra.hpp"

namespace ovks::test {
namespace {

Layout layoutOf(const Prototype& p) {
  const auto has = [&](const char* part) { return p.name.find(part) != std::string::npos; };
  return has("Perm") ? kPerm : has("Pack") ? kPack : kCcs;
}

template <class T>
std::vector<T> numbers(const Bytes& bytes) {
  std::vector<T> v(bytes.size() / sizeof(T));
  std::memcpy(v.data(), bytes.data(), v.size() * sizeof(T));
  return v;
}

// All n points of a packed spectrum, as reals.
template <class T>
std::vector<T> expanded(Layout layout, std::size_t n, const std::vector<T>& p) {
  std::vector<T> d(2 * n);
  for (std::size_t k = 0; 2 * k <= n; ++k) {
    const std::size_t at = k == 0 ? 0 : placeOf(layout, n, k);
    d[2 * k] = p[at];
    d[2 * k + 1] = isPair(layout, n, k) ? p[at + 1] : 0;
    if (k == 0 || 2 * k == n) continue;
    d[2 * (n - k)] = d[2 * k];
    d[2 * (n - k) + 1] = -d[2 * k + 1];
  }
  return d;
}

// a b, or a conj(b), with one product rounded and the other fused.
template <class T>
std::vector<T> product(Layout layout, const std::vector<T>& a, const std::vector<T>& b, bool conjugate) {
  const std::size_t n = a.size();
  std::vector<T> d(n);
  d[0] = a[0] * b[0];
  for (std::size_t k = 1; 2 * k <= n; ++k) {
    const std::size_t i = placeOf(layout, n, k);
    if (2 * k == n) {
      d[i] = a[i] * b[i];
    } else if (conjugate) {
      d[i] = std::fma(b[i], a[i], a[i + 1] * b[i + 1]);
      d[i + 1] = std::fma(a[i + 1], b[i], -(a[i] * b[i + 1]));
    } else {
      d[i] = std::fma(a[i], b[i], -(a[i + 1] * b[i + 1]));
      d[i + 1] = std::fma(a[i], b[i + 1], a[i + 1] * b[i]);
    }
  }
  return d;
}

template <class T>
void expectSame(const std::vector<T>& got, const std::vector<T>& want) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_TRUE(agrees(got[i], want[i])) << text(got[i]) << text(want[i]);
}

template <class T>
void check(const Prototype& p, int len) {
  SCOPED_TRACE(p.name + " length " + std::to_string(len));
  Random random(p.name + std::to_string(len));
  Shape shape;
  shape.len = len;
  Trial t(p, shape, random);
  const Layout layout = layoutOf(p);
  const std::size_t n = static_cast<std::size_t>(len), destination = p.vectors(false, true)[0];
  const std::vector<T> a = numbers<T>(t.call.data(0)), b = numbers<T>(t.call.data(p.find("len") > 1));
  const bool isProduct = p.startsWith("ovksMul"), conjugate = p.name.find("PackConj") != std::string::npos;
  EXPECT_EQ(t.first(), StatusOk);
  expectSame(numbers<T>(t.results()[destination]),
             isProduct ? product(layout, a, b, conjugate) : expanded(layout, n, a));
  t.again();
  for (const Overlap& overlap : t.permitted()) t.again(overlap);
  t.outOfPlace();
  if (isProduct && destination == 2) {  // a = b a
    t.call.place({}, {2, 0, 0});
    EXPECT_EQ(t.execute(t.call), StatusOk);
    expectSame(numbers<T>(t.call.bytes(2)), product(layout, b, a, false));
  }
  EXPECT_EQ(t.error(), "");
}

TEST(PackedSpectra, MatchTheirDefinitions) {
  for (const Prototype& p : prototypes()) {
    if (!p.startsWith("ovksConj") && !p.startsWith("ovksMulP")) continue;
    for (int len = 1; len <= 140; ++len) {
      if (p.name.find("64") == std::string::npos) check<float>(p, len);
      else check<double>(p, len);
    }
  }
}

}  // namespace
}  // namespace ovks::test
