// SPDX-License-Identifier: MIT
// Transforms against one in long double.
#include <complex>
#include <map>
#include <numbers>

#include "support/trial.hpp"
#include "transform/spectra.hpp"

namespace ovks::test {
namespace {

using Wide = std::complex<long double>;
using Points = std::vector<Wide>;

// exp(-2 pi i k / n)
Wide unitRoot(std::size_t k, std::size_t n) {
  const long double turns = static_cast<long double>(k) / static_cast<long double>(n);
  return std::polar(1.0L, -2 * std::numbers::pi_v<long double> * turns);
}

// sum x[n] exp(-2 pi i n k / N), without a factor, from those of the even and the odd x[n].
Points transformed(const Points& x) {
  const std::size_t half = x.size() / 2;
  if (half == 0) return x;
  Points even(half), odd(half), y(2 * half);
  for (std::size_t i = 0; i < half; ++i) even[i] = x[2 * i], odd[i] = x[2 * i + 1];
  even = transformed(even), odd = transformed(odd);
  static std::map<std::size_t, Points> all;
  Points& w = all[half];
  for (std::size_t k = w.size(); k < half; ++k) w.push_back(unitRoot(k, 2 * half));
  for (std::size_t k = 0; k < half; ++k) {
    const Wide turned = odd[k] * w[k];
    y[k] = even[k] + turned;
    y[half + k] = even[k] - turned;
  }
  return y;
}

// The elements of one kind of transform, as numbers.
struct Kind {
  bool forward, isReal;  // from or to real signals
  Layout layout;         // of their spectra
};
Kind kindOf(const Prototype& p) { return {p.nameHas("Fwd"), p.nameHas("RTo") || p.nameHas("ToR"), layoutOf(p)}; }

// Noise, the same in both precisions: real, or with the symmetry of real signals' spectra, where that is asked for.
Points noise(const Kind& kind, int order) {
  std::mt19937 random(static_cast<unsigned>(order));  // of few points luck decides
  const std::size_t n = std::size_t{1} << order;
  const auto one = [&] { return static_cast<float>(static_cast<std::int32_t>(random()) >> 8) / (1 << 23); };
  Points x(n);
  for (Wide& z : x) z = {one(), kind.isReal && kind.forward ? 0 : one()};
  if (!kind.isReal || kind.forward) return x;
  for (std::size_t k = 0; k <= n / 2; ++k) {
    if (2 * k % n == 0) x[k] = x[k].real();
    x[(n - k) % n] = std::conj(x[k]);
  }
  return x;
}

// Points and what becomes of them without a factor. They serve many exports.
struct Example {
  int order = -1;
  Points x, y;
};
const Example& example(const Kind& kind, int order) {
  static Example all[2][2];
  Example& e = all[kind.forward][kind.isReal];
  if (e.order == order) return e;
  e.order = order;
  e.x = noise(kind, order);
  const bool isInverse = !kind.forward && !kind.isReal;
  e.y = isInverse ? example({true, false, kCcs}, order).y : transformed(e.x);
  if (!kind.forward) std::reverse(e.y.begin() + 1, e.y.end());
  return e;
}

// Calls f(k, imaginary, vector, index) for all numbers that represent n points in vectors of reals or pairs.
template <class F>
void forNumbers(const Kind& kind, bool isSignal, std::size_t vectors, std::size_t n, F f) {
  const bool isPacked = kind.isReal && !isSignal;
  for (std::size_t k = 0; k < (isPacked ? n / 2 + 1 : n); ++k) {
    const std::size_t at = isPacked && k > 0 ? placeOf(kind.layout, n, k) : kind.isReal || vectors == 2 ? k : 2 * k;
    f(k, false, 0, at);
    if (isPacked ? isPair(kind.layout, n, k) : !kind.isReal) f(k, true, vectors - 1, vectors == 2 ? k : at + 1);
  }
}

template <class T>
void put(Trial& t, const Kind& kind, const Points& x) {
  const std::vector<std::size_t> to = t.call.prototype().vectors(true, false);
  for (const std::size_t k : to) std::fill(t.call.data(k).begin(), t.call.data(k).end(), std::byte{0});
  forNumbers(kind, kind.forward, to.size(), x.size(),
             [&](std::size_t k, bool imaginary, std::size_t v, std::size_t at) {
               const T number = static_cast<T>(imaginary ? x[k].imag() : x[k].real());
               std::memcpy(&t.call.data(to[v])[at * sizeof number], &number, sizeof number);
             });
}

// Relative error of two norms, in units of eps sqrt(order). Multiplying by a factor that is no power of two counts as
// one order more; so few points that luck decides count as some.
template <class T>
double relativeError(const Trial& t, const Kind& kind, const Points& y) {
  const Shape& s = t.call.shape();
  const std::vector<std::size_t> from = t.call.prototype().vectors(false, true);
  const bool scales = s.flag == FFTDivBySqrtN || s.flag == (kind.forward ? FFTDivFwdByN : FFTDivInvByN);
  const double n = static_cast<double>(y.size());
  const long double factor = !scales ? 1 : static_cast<T>(s.flag == FFTDivBySqrtN ? 1 / std::sqrt(n) : 1 / n);
  long double errors = 0, size = 0;
  forNumbers(kind, !kind.forward, from.size(), y.size(),
             [&](std::size_t k, bool imaginary, std::size_t v, std::size_t at) {
               const long double want = factor * (imaginary ? y[k].imag() : y[k].real());
               const T got = loadElement<T>(t.results()[from[v]].data(), static_cast<std::ptrdiff_t>(at));
               errors += (got - want) * (got - want);
               size += want * want;
               EXPECT_TRUE(got == 0 || want != 0) << "beside a real point";
             });
  const int order = std::max(s.order, 4) + (s.flag == FFTDivBySqrtN);
  return static_cast<double>(std::sqrt(errors / size)) / std::numeric_limits<T>::epsilon() / std::sqrt(order);
}

void check(const Prototype& p, int order, FFTFlag flag) {
  const Kind kind = kindOf(p);
  const Example& e = example(kind, order);
  Random random(p.name + std::to_string(order));
  Shape shape;
  shape.order = order;
  shape.flag = flag;
  Trial t(p, shape, random);
  const bool isDouble = p.nameHas("64");
  isDouble ? put<double>(t, kind, e.x) : put<float>(t, kind, e.x);
  EXPECT_EQ(t.first(), StatusOk);
  const double error = isDouble ? relativeError<double>(t, kind, e.y) : relativeError<float>(t, kind, e.y);
  t.again();
  t.repeat();
  EXPECT_EQ(t.error(), "");
  EXPECT_LE(error, 0.35) << p.name << " order " << order << " flag " << flag;
}

TEST(Fft, MatchesReference) {
  for (int order = 0; order <= 20; ++order) {
    int turn = 0;
    for (const Prototype& p : prototypes()) {
      if (!p.startsWith("ovksFFT") || !p.has("pBuffer")) continue;
      if (order > 13 && ++turn % 3 != order % 3) continue;
      check(p, order, FFTDivBySqrtN);
      for (const FFTFlag flag : {FFTDivFwdByN, FFTDivInvByN, FFTNoDiv}) {
        if (order <= 13) check(p, order, flag);
      }
    }
  }
}

// Few points among zeros, so that each bin is a sum of few terms, and the way back.
template <class E, class Object>
void checkLargest(std::initializer_list<int> orders, auto getSize, auto init,
                  Status (*forward)(E*, const Object*, uint8_t*), Status (*inverse)(E*, const Object*, uint8_t*)) {
  using T = Real<E>;
  Random random("bins");
  for (const int order : orders) {
    SCOPED_TRACE(order);
    const std::size_t n = std::size_t{1} << order;
    int spec, room, work;
    ASSERT_EQ(getSize(order, FFTDivInvByN, AlgHintNone, &spec, &room, &work), StatusOk);
    std::vector<uint8_t> area(static_cast<std::size_t>(spec)), buffer(static_cast<std::size_t>(std::max(room, work)));
    std::vector<T> x(parts<E> * n);
    const std::pair<std::size_t, T> points[] = {{1, 1}, {n / 2 + 12345, T(-0.5)}, {n - 7, T(0.25)}};
    for (const auto& [at, value] : points) x[parts<E> * at] = value;
    const auto data = reinterpret_cast<E*>(x.data());
    Object* object = nullptr;
    ASSERT_EQ(init(&object, order, FFTDivInvByN, AlgHintNone, area.data(), buffer.data()), StatusOk);
    ASSERT_EQ(forward(data, object, buffer.data()), StatusOk);
    const double bound = 8 * std::numeric_limits<T>::epsilon();
    for (int i = 0; i < 20000; ++i) {
      const std::size_t k = random.bits() % (n / 2 - 1) + 1;  // in the same place of both layouts
      Wide want = 0;
      for (const auto& [at, value] : points) want += Wide(value) * unitRoot(k * at % n, n);
      ASSERT_LE(std::abs(Wide(x[2 * k], x[2 * k + 1]) - want), bound) << k;
    }
    ASSERT_EQ(inverse(data, object, buffer.data()), StatusOk);
    for (const auto& [at, value] : points) x[parts<E> * at] -= value;
    for (const T rest : x) ASSERT_LE(std::fabs(rest), bound);
  }
}

TEST(Fft, LargeOrders) {
  checkLargest({21, 22, 23, 24}, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc, ovksFFTFwd_CToC_32fc_I,
               ovksFFTInv_CToC_32fc_I);
  checkLargest({19, 20, 21, 22, 23}, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc, ovksFFTFwd_CToC_64fc_I,
               ovksFFTInv_CToC_64fc_I);
}

// Some five gigabytes; with --gtest_also_run_disabled_tests.
TEST(Fft, DISABLED_LargestOrders) {
  checkLargest({28}, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc, ovksFFTFwd_CToC_32fc_I, ovksFFTInv_CToC_32fc_I);
  checkLargest({27}, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc, ovksFFTFwd_CToC_64fc_I, ovksFFTInv_CToC_64fc_I);
  checkLargest({29}, ovksFFTGetSize_R_32f, ovksFFTInit_R_32f, ovksFFTFwd_RToPerm_32f_I, ovksFFTInv_PermToR_32f_I);
  checkLargest({28}, ovksFFTGetSize_R_64f, ovksFFTInit_R_64f, ovksFFTFwd_RToPerm_64f_I, ovksFFTInv_PermToR_64f_I);
}

}  // namespace
}  // namespace ovks::test
