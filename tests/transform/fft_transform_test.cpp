// SPDX-License-Identifier: MIT
// Complex and real transforms against the long double one, and what large ones must obey.
#include <algorithm>
#include <cstring>
#include <memory>

#include "transform/fft_support.hpp"

namespace {

using namespace ovks::test;

template <class T>
class Fft : public testing::Test {};
using Precisions = testing::Types<float, double>;
TYPED_TEST_SUITE(Fft, Precisions);

// Output of f(src, dst) with both in guarded memory, out of place and in place, at several alignments: all the same.
template <class T, class F, class G>
std::vector<T> run(const std::vector<T>& x, std::size_t room, F outOfPlace, G inPlace) {
  std::vector<T> first;
  for (const Place place : {Place{true, 0}, Place{false, 0}, Place{false, sizeof(T)}, Place{false, 3 * sizeof(T)}}) {
    std::vector<T> big(x);
    big.resize(room);
    Guarded src(x.size() * sizeof(T)), dst(room * sizeof(T)), both(room * sizeof(T));
    auto* s = reinterpret_cast<T*>(src.put(place, x.data(), x.size() * sizeof(T)));
    auto* d = reinterpret_cast<T*>(dst.put(place, big.data(), room * sizeof(T)));
    auto* b = reinterpret_cast<T*>(both.put(place, big.data(), room * sizeof(T)));
    EXPECT_EQ(outOfPlace(s, d), StatusOk);
    EXPECT_EQ(inPlace(b), StatusOk);
    EXPECT_TRUE(src.intact() && dst.intact() && both.intact());
    EXPECT_EQ(std::memcmp(s, x.data(), x.size() * sizeof(T)), 0) << "source changed";
    EXPECT_EQ(std::memcmp(d, b, room * sizeof(T)), 0) << "in place differs";
    std::vector<T> result(d, d + room);
    if (first.empty()) first = result;
    EXPECT_EQ(result, first) << "alignment matters";
  }
  return first;
}

template <class T>
void checkComplex(int order, int flag, bool forward) {
  SCOPED_TRACE(testing::Message() << "order " << order << " flag " << flag << " forward " << forward);
  using A = Api<T>;
  using C = typename A::Complex;
  const std::size_t n = std::size_t{1} << order;
  const std::vector<T> x = noise<T>(2 * n, order);
  Spectrum want = referenceTransform(pairs(x), forward ? -1 : 1);
  for (Wide& z : want) z *= factorOf<T>(flag, forward, order);

  const Plan<typename A::C> plan(A::sizeC, A::initC, order, flag);
  const auto cast = [](auto* p) { return reinterpret_cast<C*>(const_cast<T*>(p)); };
  const std::vector<T> y = run<T>(
      x, 2 * n,
      [&](T* s, T* d) { return (forward ? A::forward : A::inverse)(cast(s), cast(d), plan.object, plan.buffer); },
      [&](T* b) { return (forward ? A::forwardI : A::inverseI)(cast(b), plan.object, plan.buffer); });
  EXPECT_LE(relativeError<T>(pairs(y), want, order, flag), kErrorBound);
  EXPECT_TRUE(plan.intact());

  const Plan<typename A::S> split(A::sizeS, A::initS, order, flag);
  std::vector<T> parts(2 * n), z(2 * n);
  for (std::size_t i = 0; i < n; ++i) parts[i] = x[2 * i], parts[n + i] = x[2 * i + 1];
  const std::vector<T> w = run<T>(
      parts, 2 * n,
      [&](T* s, T* d) {
        return (forward ? A::splitForward : A::splitInverse)(s, s + n, d, d + n, split.object, split.buffer);
      },
      [&](T* b) { return (forward ? A::splitForwardI : A::splitInverseI)(b, b + n, split.object, split.buffer); });
  for (std::size_t i = 0; i < n; ++i) z[2 * i] = w[i], z[2 * i + 1] = w[n + i];
  EXPECT_LE(relativeError<T>(pairs(z), want, order, flag), kErrorBound);
  EXPECT_TRUE(split.intact());
}

TYPED_TEST(Fft, ComplexMatchesReference) {
  for (int order = 0; order <= 13; ++order)
    for (const int flag : kFlags)
      for (const bool forward : {true, false}) checkComplex<TypeParam>(order, flag, forward);
  for (int order = 14; order <= 20; ++order) checkComplex<TypeParam>(order, FFTDivBySqrtN, order % 2 == 0);
}

// Where X[k] stands in each layout: Perm, Pack, CCS.
template <class T>
Spectrum unpacked(const std::vector<T>& p, std::size_t n, int layout) {
  Spectrum x(n);
  const std::size_t half = layout == 0 ? 1 : layout == 1 ? n - 1 : n;
  x[0] = p[0];
  if (n > 1) x[n / 2] = p[half];
  for (std::size_t k = 1; k < n / 2; ++k) {
    const std::size_t at = 2 * k - (layout == 1);
    x[k] = {p[at], p[at + 1]};
    x[n - k] = std::conj(x[k]);
  }
  if (layout == 2) {
    EXPECT_TRUE(p[1] == 0 && p[n + (n > 1)] == 0);
  }
  return x;
}

template <class T>
void checkReal(int order, int flag, int layout) {
  SCOPED_TRACE(testing::Message() << "order " << order << " flag " << flag << " layout " << layout);
  using A = Api<T>;
  const std::size_t n = std::size_t{1} << order, room = layout == 2 ? (n > 1 ? n + 2 : 2) : n;
  const std::vector<T> x = noise<T>(n, order);
  const Plan<typename A::R> plan(A::sizeR, A::initR, order, flag);
  const std::vector<T> y = run<T>(
      x, room, [&](T* s, T* d) { return A::toPacked[layout](s, d, plan.object, plan.buffer); },
      [&](T* b) { return A::toPackedI[layout](b, plan.object, plan.buffer); });
  Spectrum want = referenceTransform(Spectrum(x.begin(), x.end()), -1);
  for (Wide& z : want) z *= factorOf<T>(flag, true, order);
  EXPECT_LE(relativeError<T>(unpacked(y, n, layout), want, order, flag), kErrorBound);

  // In place the inverse leaves what CCS has beyond N.
  std::vector<T> spectrum = y;
  std::vector<T> back = run<T>(
      spectrum, room,
      [&](T* s, T* d) {
        const Status status = A::toReal[layout](s, d, plan.object, plan.buffer);
        std::copy(s + n, s + room, d + n);
        return status;
      },
      [&](T* b) { return A::toRealI[layout](b, plan.object, plan.buffer); });
  back.resize(n);
  Spectrum signal = referenceTransform(unpacked(y, n, layout), 1);
  for (Wide& z : signal) z *= factorOf<T>(flag, false, order);
  EXPECT_LE(relativeError<T>(Spectrum(back.begin(), back.end()), signal, order, flag), kErrorBound);
  EXPECT_TRUE(plan.intact());
}

TYPED_TEST(Fft, RealMatchesReference) {
  for (int order = 0; order <= 13; ++order)
    for (const int flag : kFlags)
      for (int layout = 0; layout < 3; ++layout) checkReal<TypeParam>(order, flag, layout);
  for (int order = 14; order <= 20; ++order) checkReal<TypeParam>(order, FFTDivInvByN, order % 3);
}

// A large transform of impulses is known in closed form: sampled bins, then the way back.
template <class T>
void checkLarge(int order, const std::vector<std::size_t>& impulses) {
  SCOPED_TRACE(testing::Message() << "order " << order);
  using A = Api<T>;
  using C = typename A::Complex;
  const std::size_t n = std::size_t{1} << order;
  const Plan<typename A::C> plan(A::sizeC, A::initC, order, FFTDivInvByN);
  const std::unique_ptr<C[]> x(new C[n]());
  for (const std::size_t i : impulses) x[i] = {1, static_cast<T>(-0.5)};
  ASSERT_EQ(A::forwardI(x.get(), plan.object, plan.buffer), StatusOk);
  std::mt19937_64 random(1);
  double worst = 0, energy = 0;
  for (int s = 0; s < 20000; ++s) {
    const std::size_t k = s < 300 ? s : random() % n;
    Wide want = 0;
    for (const std::size_t i : impulses)
      want += Wide(1, -0.5L) * std::polar(1.0L, -6.283185307179586476925286766559L * (i * k % n) / n);
    worst = std::max(worst, static_cast<double>(std::abs(Wide(x[k].re, x[k].im) - want)));
  }
  EXPECT_LE(worst, 2 * std::sqrt(order) * impulses.size() * std::numeric_limits<T>::epsilon());
  for (std::size_t k = 0; k < n; ++k) energy += double{x[k].re} * x[k].re + double{x[k].im} * x[k].im;
  EXPECT_NEAR(energy / n / (1.25 * impulses.size()), 1, 1e-5);
  ASSERT_EQ(A::inverseI(x.get(), plan.object, plan.buffer), StatusOk);
  for (const std::size_t i : impulses) x[i] = {x[i].re - 1, x[i].im + static_cast<T>(0.5)};
  T largest = 0;
  for (std::size_t i = 0; i < n; ++i) largest = std::max({largest, std::abs(x[i].re), std::abs(x[i].im)});
  EXPECT_LE(largest, 4 * std::numeric_limits<T>::epsilon());
}

TYPED_TEST(Fft, LargeMatchesClosedForm) {
  for (const int order : {21, 22, 23, 24}) checkLarge<TypeParam>(order, {1, 5, 12345, (1u << order) - 3});
}

// Eight gigabytes; run with --gtest_also_run_disabled_tests.
TYPED_TEST(Fft, DISABLED_LargestMatchesClosedForm) {
  checkLarge<TypeParam>(Api<TypeParam>::kMaxOrder, {1, 5, 12345, 123456789});
}

}  // namespace
