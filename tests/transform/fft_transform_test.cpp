// SPDX-License-Identifier: MIT
// Transforms against one in long double.
#include <map>
#include <numbers>

#include "support/trial.hpp"
#include "transform/spectra.hpp"

namespace ovks::test {
namespace {

using Wide = Complex<long double>;
using Points = std::vector<Wide>;

// exp(-2 pi i k / n)
Wide unitRoot(std::size_t k, std::size_t n) {
  const long double turns = static_cast<long double>(k) / static_cast<long double>(n);
  const long double angle = -2 * std::numbers::pi_v<long double> * turns;
  return {std::cos(angle), std::sin(angle)};
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

bool isForward(const Prototype& p) { return p.nameHas("Fwd"); }
bool isReal(const Prototype& p) { return p.nameHas("RTo") || p.nameHas("ToR"); }  // from or to real signals

// Points to transform and what becomes of them, without a factor.
struct Example {
  Points x, y;
};

// Noise, the same in both precisions: real, or with the symmetry of real signals' spectra, where that is asked for.
Example noise(int order, bool real, bool symmetric) {
  std::mt19937 random(static_cast<unsigned>(order));  // of few points luck decides
  const std::size_t n = std::size_t{1} << order;
  const auto one = [&] { return static_cast<float>(static_cast<std::int32_t>(random()) >> 8) / (1 << 23); };
  Points x(n);
  for (Wide& z : x) z = {one(), real ? 0 : one()};
  for (std::size_t k = 0; k <= n / 2 && symmetric; ++k) {
    if (2 * k % n == 0) x[k].im = 0;
    x[(n - k) % n] = {x[k].re, -x[k].im};
  }
  return {x, transformed(x)};
}

// The numbers that represent points in a call's operands, one after the other.
std::vector<long double> numbers(const Prototype& p, bool areSignal, const Points& x) {
  if (isReal(p) && !areSignal) return packed(p, x, x.size());
  const bool isSplit = p.vectors(true, false).size() == 2;
  std::vector<long double> first, second;
  for (const Wide& z : x) {
    first.push_back(z.re);
    if (!isReal(p)) (isSplit ? second : first).push_back(z.im);
  }
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

template <class T>
void put(Trial& t, const std::vector<long double>& all) {
  Bytes bytes = bytesOf(std::vector<T>(all.begin(), all.end()));
  for (const std::size_t k : t.call.prototype().vectors(true, false)) {
    t.call.adopt(k, bytes);
    bytes.erase(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(std::min(bytes.size(), t.call.size(k))));
  }
}

// Relative error of two norms, in units of eps sqrt(order). Multiplying by a factor that is no power of two counts as
// one order more; so few points that luck decides count as some.
template <class T>
double relativeError(const Trial& t, const std::vector<long double>& wants) {
  const Shape& s = t.call.shape();
  const bool forward = isForward(t.call.prototype());
  const double n = std::exp2(s.order);
  const bool scales = s.flag == FFTDivBySqrtN || s.flag == (forward ? FFTDivFwdByN : FFTDivInvByN);
  const long double factor = !scales ? 1 : static_cast<T>(s.flag == FFTDivBySqrtN ? 1 / std::sqrt(n) : 1 / n);
  Bytes all;
  for (const Bytes& result : t.results()) all.insert(all.end(), result.begin(), result.end());
  const std::vector<T> got = sequence<T>(all);
  long double errors = 0, size = 0;
  for (std::size_t i = 0; i < wants.size(); ++i) {
    const long double want = factor * wants[i], error = got[i] - want;
    errors += error * error;
    size += want * want;
    EXPECT_TRUE(got[i] == 0 || want != 0) << "beside a real point";
  }
  const int order = std::max(s.order, 4) + (s.flag == FFTDivBySqrtN);
  return static_cast<double>(std::sqrt(errors / size)) / std::numeric_limits<T>::epsilon() / std::sqrt(order);
}

template <class T>
void check(const Prototype& p, const Example& e, int order, FFTFlag flag) {
  Random random(p.name + std::to_string(order));
  Shape shape;
  shape.order = order;
  shape.flag = flag;
  Trial t(p, shape, random);
  put<T>(t, numbers(p, isForward(p), e.x));
  EXPECT_EQ(t.first(), StatusOk);
  Points y = e.y;
  if (!isForward(p)) std::reverse(y.begin() + 1, y.end());
  EXPECT_LE(relativeError<T>(t, numbers(p, !isForward(p), y)), 0.35)
      << p.name << " order " << order << " flag " << flag;
  t.repeat();
  EXPECT_EQ(t.error(), "");
}

TEST(Fft, MatchesReference) {
  for (int order = 0; order <= 20; ++order) {
    const Example complex = noise(order, false, false), real = noise(order, true, false),
                  symmetric = noise(order, false, true);
    int turn = 0;
    for (const Prototype& p : prototypes()) {
      if (!p.startsWith("ovksFFT") || !p.has("pBuffer")) continue;
      if (order > 13 && ++turn % 3 != order % 3) continue;
      const Example& e = !isReal(p) ? complex : isForward(p) ? real : symmetric;
      for (const FFTFlag flag : {FFTDivBySqrtN, FFTDivFwdByN, FFTDivInvByN, FFTNoDiv}) {
        if (order > 13 && flag != FFTDivBySqrtN) continue;
        p.nameHas("64") ? check<double>(p, e, order, flag) : check<float>(p, e, order, flag);
      }
    }
  }
}

template <class Object>
struct Plan {
  Plan(int order, FFTFlag flag, auto getSize, auto init) {
    int size, room, work;
    EXPECT_EQ(getSize(order, flag, AlgHintNone, &size, &room, &work), StatusOk);
    area.resize(static_cast<std::size_t>(size)), buffer.resize(static_cast<std::size_t>(std::max(room, work)));
    EXPECT_EQ(init(&object, order, flag, AlgHintNone, area.data(), buffer.data()), StatusOk);
  }
  std::vector<uint8_t> area, buffer;
  Object* object = nullptr;
};

// Few points among zeros, so that each bin is a sum of few terms; their energy, and the way back.
template <class E, class Object>
void checkLargest(std::initializer_list<int> orders, auto getSize, auto init,
                  Status (*apart)(const E*, E*, const Object*, uint8_t*),
                  Status (*forward)(E*, const Object*, uint8_t*), Status (*inverse)(E*, const Object*, uint8_t*)) {
  using T = Real<E>;
  Random random("bins");
  for (const int order : orders) {
    SCOPED_TRACE(order);
    const std::size_t n = std::size_t{1} << order;
    Plan<Object> plan(order, FFTDivInvByN, getSize, init);
    const auto [object, buffer] = std::pair(plan.object, plan.buffer.data());
    std::vector<T> x(parts<E> * n), y(x.size());
    const std::pair<std::size_t, T> points[] = {{1, 1}, {n / 2 + 12345, T(-0.5)}, {n - 7, T(0.25)}};
    for (const auto& [at, value] : points) x[parts<E> * at] = value;
    const auto data = reinterpret_cast<E*>(x.data());
    ASSERT_EQ(apart(data, reinterpret_cast<E*>(y.data()), object, buffer), StatusOk);
    ASSERT_EQ(forward(data, object, buffer), StatusOk);
    EXPECT_EQ(x, y);
    long double energy = 0, energyOfPoints = 0;
    for (const T v : x) energy += static_cast<long double>(v) * v;
    if (parts<E> == 1) energy = 2 * energy - x[0] * x[0] - x[1] * x[1];  // real signals' bins come twice but those
    for (const auto& [at, value] : points) energyOfPoints += static_cast<long double>(value) * value;
    EXPECT_NEAR(static_cast<double>(energy / static_cast<long double>(n) / energyOfPoints), 1,
                4 * std::numeric_limits<T>::epsilon());
    const double bound = 8 * std::numeric_limits<T>::epsilon();
    for (int i = 0; i < 20000; ++i) {
      const std::size_t k = random.bits() % (n / 2 - 1) + 1;  // in the same place of both layouts
      Wide rest = {x[2 * k], x[2 * k + 1]};
      for (const auto& [at, value] : points) rest = rest - static_cast<long double>(value) * unitRoot(k * at % n, n);
      ASSERT_LE(std::hypot(rest.re, rest.im), bound) << k;
    }
    ASSERT_EQ(inverse(data, object, buffer), StatusOk);
    for (const auto& [at, value] : points) x[parts<E> * at] -= value;
    for (const T rest : x) ASSERT_LE(std::fabs(rest), bound);
  }
}

TEST(Fft, LargeOrders) {
  checkLargest({21, 22, 23, 24}, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc, ovksFFTFwd_CToC_32fc,
               ovksFFTFwd_CToC_32fc_I, ovksFFTInv_CToC_32fc_I);
  checkLargest({19, 20, 21, 22, 23}, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc, ovksFFTFwd_CToC_64fc,
               ovksFFTFwd_CToC_64fc_I, ovksFFTInv_CToC_64fc_I);
}

// Two arrays get the bits that interleaved points get, however they lie within memory pages, in place or not.
template <class E, class Object, class Split>
void checkTwoArrays(std::initializer_list<int> orders, auto getSize, auto init,
                    Status (*interleaved)(const E*, E*, const Object*, uint8_t*), auto getSplitSize, auto initSplit,
                    Status (*split)(const Real<E>*, const Real<E>*, Real<E>*, Real<E>*, const Split*, uint8_t*),
                    auto splitInPlace) {
  using T = Real<E>;
  for (const int order : orders) {
    const std::size_t n = std::size_t{1} << order;
    std::vector<T> x(2 * n), y(2 * n), room(2 * n + 2048), roomForResults(room.size());
    std::mt19937 random(static_cast<unsigned>(order));
    for (T& v : x) v = static_cast<T>(static_cast<std::int32_t>(random())) / 65536;
    Plan<Object> plan(order, FFTDivFwdByN, getSize, init);
    interleaved(reinterpret_cast<E*>(x.data()), reinterpret_cast<E*>(y.data()), plan.object, plan.buffer.data());
    const auto differ = [&](const T* re, const T* im) {
      for (std::size_t i = 0; i < n; ++i)
        if (re[i] != y[2 * i] || im[i] != y[2 * i + 1]) return true;
      return false;
    };
    Plan<Split> splitPlan(order, FFTDivFwdByN, getSplitSize, initSplit);
    const auto aligned = [](T* p) { return p + -reinterpret_cast<std::uintptr_t>(p) % 64 / sizeof(T); };
    for (const std::size_t shift : {0, 512, 1501}) {
      T *const re = aligned(room.data()), *const im = re + n + shift;
      T *const toRe = aligned(roomForResults.data()), *const toIm = toRe + n + shift;
      for (std::size_t i = 0; i < n; ++i) re[i] = x[2 * i], im[i] = x[2 * i + 1];
      split(re, im, toRe, toIm, splitPlan.object, splitPlan.buffer.data());
      EXPECT_FALSE(differ(toRe, toIm)) << order << " " << shift;
      splitInPlace(re, im, splitPlan.object, splitPlan.buffer.data());
      EXPECT_FALSE(differ(re, im)) << order << " " << shift;
    }
  }
}

TEST(Fft, TwoArrays) {
  checkTwoArrays({10, 13, 14, 15, 19, 20, 21, 22, 23}, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc, ovksFFTFwd_CToC_32fc,
                 ovksFFTGetSize_C_32f, ovksFFTInit_C_32f, ovksFFTFwd_CToC_32f, ovksFFTFwd_CToC_32f_I);
  checkTwoArrays({9, 12, 13, 14, 18, 19, 21, 22}, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc, ovksFFTFwd_CToC_64fc,
                 ovksFFTGetSize_C_64f, ovksFFTInit_C_64f, ovksFFTFwd_CToC_64f, ovksFFTFwd_CToC_64f_I);
}

// What stands between a real signal's passes is twice its spectrum, but for a factor taken in time.
template <class T, class Object>
void checkLargestNumbers(auto getSize, auto init, Status (*forward)(const T*, T*, const Object*, uint8_t*)) {
  for (int order = 5; order <= 20; ++order) {
    Plan<Object> plan(order, FFTNoDiv, getSize, init);
    for (const std::size_t at : {0, 1}) {
      std::vector<T> x(std::size_t{1} << order), y(x.size());
      x[at] = T(0.99) * std::numeric_limits<T>::max();
      forward(x.data(), y.data(), plan.object, plan.buffer.data());
      EXPECT_TRUE(std::all_of(y.begin(), y.end(), [](T v) { return std::isfinite(v); })) << order << " " << at;
    }
  }
}

TEST(Fft, LargestNumbers) {
  checkLargestNumbers<float>(ovksFFTGetSize_R_32f, ovksFFTInit_R_32f, ovksFFTFwd_RToPerm_32f);
  checkLargestNumbers<double>(ovksFFTGetSize_R_64f, ovksFFTInit_R_64f, ovksFFTFwd_RToPerm_64f);
}

// Some eight gigabytes; with --gtest_also_run_disabled_tests.
TEST(Fft, DISABLED_LargestOrders) {
  checkLargest({28}, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc, ovksFFTFwd_CToC_32fc, ovksFFTFwd_CToC_32fc_I,
               ovksFFTInv_CToC_32fc_I);
  checkLargest({27}, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc, ovksFFTFwd_CToC_64fc, ovksFFTFwd_CToC_64fc_I,
               ovksFFTInv_CToC_64fc_I);
  checkLargest({29}, ovksFFTGetSize_R_32f, ovksFFTInit_R_32f, ovksFFTFwd_RToPerm_32f, ovksFFTFwd_RToPerm_32f_I,
               ovksFFTInv_PermToR_32f_I);
  checkLargest({28}, ovksFFTGetSize_R_64f, ovksFFTInit_R_64f, ovksFFTFwd_RToPerm_64f, ovksFFTFwd_RToPerm_64f_I,
               ovksFFTInv_PermToR_64f_I);
}

}  // namespace
}  // namespace ovks::test
