// SPDX-License-Identifier: MIT
// Expansion and products of packed spectra, from the layouts' definitions.
#include <cstring>

#include "transform/fft_support.hpp"

namespace {

using namespace ovks::test;

enum Layout { kPack, kPerm, kCcs };

// Where X[k], 0 < k < len / 2, and X[len / 2] of an even length stand.
std::size_t placeOf(Layout layout, std::size_t len, std::size_t k) {
  if (layout == kCcs) return 2 * k;
  if (len % 2 == 0 && 2 * k == len) return layout == kPack ? len - 1 : 1;
  return 2 * k - (layout == kPack || len % 2);
}

template <class C, class T, class F, class G>
void checkExpansion(Layout layout, F outOfPlace, G inPlace) {
  for (int len = 1; len <= 140; ++len) {
    SCOPED_TRACE(testing::Message() << "layout " << layout << " len " << len);
    const std::size_t n = len, reals = layout == kCcs ? 2 * (n / 2 + 1) : n;
    const std::vector<T> p = noise<T>(reals, len);
    std::vector<C> want(n);
    want[0] = {p[0], layout == kCcs ? p[1] : 0};
    for (std::size_t k = 1; 2 * k <= n; ++k) {
      const std::size_t at = placeOf(layout, n, k);
      const bool lone = 2 * k == n && layout != kCcs;
      want[k] = {p[at], lone ? 0 : p[at + 1]};
      if (2 * k < n) want[n - k] = {want[k].re, -want[k].im};
    }
    for (const bool atEnd : {false, true}) {
      Guarded src(reals * sizeof(T)), dst(n * sizeof(C)), both(std::max(n * sizeof(C), reals * sizeof(T)));
      const T* s = reinterpret_cast<T*>(src.put({atEnd, 0}, p.data(), reals * sizeof(T)));
      const std::vector<C> zeros(n + 1);
      C* d = reinterpret_cast<C*>(dst.put({atEnd, 0}, zeros.data(), n * sizeof(C)));
      std::vector<T> held(std::max(2 * n, reals));
      std::copy(p.begin(), p.end(), held.begin());
      C* b = reinterpret_cast<C*>(both.put({atEnd, 0}, held.data(), held.size() * sizeof(T)));
      ASSERT_EQ(outOfPlace(s, d, len), StatusOk);
      ASSERT_EQ(inPlace(b, len), StatusOk);
      EXPECT_EQ(std::memcmp(d, want.data(), n * sizeof(C)), 0);
      EXPECT_EQ(std::memcmp(b, want.data(), n * sizeof(C)), 0);
      ASSERT_EQ(outOfPlace(reinterpret_cast<const T*>(b), b, 0), StatusBadSize);
      EXPECT_TRUE(src.intact() && dst.intact() && both.intact());
    }
  }
  C c;
  EXPECT_EQ(outOfPlace(nullptr, &c, 0), StatusNullPtr);
  EXPECT_EQ(outOfPlace(&c.re + 1, nullptr, 0), StatusNullPtr);
  EXPECT_EQ(outOfPlace(&c.re + 1, &c, -1), StatusBadSize);
  EXPECT_EQ(inPlace(nullptr, 1), StatusNullPtr);
}

TEST(PackedSpectra, Expansion) {
  checkExpansion<Complex32f, float>(kPack, ovksConjPack_32fc, ovksConjPack_32fc_I);
  checkExpansion<Complex32f, float>(kPerm, ovksConjPerm_32fc, ovksConjPerm_32fc_I);
  checkExpansion<Complex32f, float>(kCcs, ovksConjCcs_32fc, ovksConjCcs_32fc_I);
  checkExpansion<Complex64f, double>(kPack, ovksConjPack_64fc, ovksConjPack_64fc_I);
  checkExpansion<Complex64f, double>(kPerm, ovksConjPerm_64fc, ovksConjPerm_64fc_I);
  checkExpansion<Complex64f, double>(kCcs, ovksConjCcs_64fc, ovksConjCcs_64fc_I);
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

template <class T, class G>
void checkInPlace(Layout layout, G inPlace, bool conjugate) {
  for (int len = 1; len <= 140; ++len) {
    const std::vector<T> a = noise<T>(len, len), b = noise<T>(len, len + 1000);
    std::vector<T> d(b);
    ASSERT_EQ(inPlace(a.data(), d.data(), len), StatusOk);
    EXPECT_EQ(d, product(layout, a, b, conjugate)) << "layout " << layout << " len " << len;
  }
  T x;
  EXPECT_EQ(inPlace(nullptr, &x, 0), StatusNullPtr);
  EXPECT_EQ(inPlace(&x, nullptr, 0), StatusNullPtr);
  EXPECT_EQ(inPlace(&x, &x, 0), StatusBadSize);
}

template <class T, class F, class G>
void checkProduct(Layout layout, F outOfPlace, G inPlace) {
  checkInPlace<T>(layout, inPlace, false);
  for (int len = 1; len <= 140; ++len) {
    SCOPED_TRACE(testing::Message() << "layout " << layout << " len " << len);
    const std::vector<T> a = noise<T>(len, len), b = noise<T>(len, len + 1000);
    Guarded ga(len * sizeof(T)), gb(len * sizeof(T)), gd(len * sizeof(T));
    T* pa = reinterpret_cast<T*>(ga.put({true, 0}, a.data(), len * sizeof(T)));
    T* pb = reinterpret_cast<T*>(gb.put({false, 0}, b.data(), len * sizeof(T)));
    T* pd = reinterpret_cast<T*>(gd.put({len % 2 == 0, 0}, a.data(), len * sizeof(T)));
    ASSERT_EQ(outOfPlace(pa, pb, pd, len), StatusOk);
    EXPECT_EQ(std::vector<T>(pd, pd + len), product(layout, a, b, false));
    EXPECT_TRUE(ga.intact() && gb.intact() && gd.intact());
    ASSERT_EQ(outOfPlace(pa, pb, pa, len), StatusOk);  // as pa = pb pa
    EXPECT_EQ(std::vector<T>(pa, pa + len), product(layout, b, a, false));
  }
  T x, y;
  EXPECT_EQ(outOfPlace(nullptr, &x, &y, 0), StatusNullPtr);
  EXPECT_EQ(outOfPlace(&x, nullptr, &y, 0), StatusNullPtr);
  EXPECT_EQ(outOfPlace(&x, &x, nullptr, 0), StatusNullPtr);
  EXPECT_EQ(outOfPlace(nullptr, nullptr, nullptr, 1), StatusNullPtr);
  EXPECT_EQ(outOfPlace(&x, &x, &y, 0), StatusBadSize);
}

TEST(PackedSpectra, Products) {
  checkProduct<float>(kPack, ovksMulPack_32f, ovksMulPack_32f_I);
  checkProduct<float>(kPerm, ovksMulPerm_32f, ovksMulPerm_32f_I);
  checkProduct<double>(kPack, ovksMulPack_64f, ovksMulPack_64f_I);
  checkProduct<double>(kPerm, ovksMulPerm_64f, ovksMulPerm_64f_I);
  checkInPlace<float>(kPack, ovksMulPackConj_32f_I, true);
  checkInPlace<double>(kPack, ovksMulPackConj_64f_I, true);
}

}  // namespace
