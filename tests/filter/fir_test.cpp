// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <bit>
#include <climits>

#include "filter/filter_support.hpp"

namespace ovks::test {
namespace {

// One type's functions: S the samples', T the taps'.
template <class S, class T>
struct Fir;
template <>
struct Fir<float, float> {
  using Spec = FIRSRSpec_32f;
  static constexpr DataType kType = DataType32f;
  static constexpr auto init = ovksFIRSRInit_32f;
  static constexpr auto run = ovksFIRSR_32f;
  static constexpr int kTaps = 52, kSamples = 256, kChunk = 8192;
};
template <>
struct Fir<double, double> {
  using Spec = FIRSRSpec_64f;
  static constexpr DataType kType = DataType64f;
  static constexpr auto init = ovksFIRSRInit_64f;
  static constexpr auto run = ovksFIRSR_64f;
  static constexpr int kTaps = 34, kSamples = 512, kChunk = 4096;
};
template <>
struct Fir<Complex32f, Complex32f> {
  using Spec = FIRSRSpec_32fc;
  static constexpr DataType kType = DataType32fc;
  static constexpr auto init = ovksFIRSRInit_32fc;
  static constexpr auto run = ovksFIRSR_32fc;
  static constexpr int kTaps = 18, kSamples = 128, kChunk = 4096;
};
template <>
struct Fir<Complex64f, Complex64f> {
  using Spec = FIRSRSpec_64fc;
  static constexpr DataType kType = DataType64fc;
  static constexpr auto init = ovksFIRSRInit_64fc;
  static constexpr auto run = ovksFIRSR_64fc;
  static constexpr int kTaps = 21, kSamples = 256, kChunk = 2048;
};
template <>
struct Fir<int16_t, float> : Fir<float, float> {
  static constexpr auto run = ovksFIRSR_16s;
  static constexpr int kChunk = 4096;
};
template <>
struct Fir<Complex16s, Complex32f> : Fir<Complex32f, Complex32f> {
  static constexpr auto run = ovksFIRSR_16sc;
  static constexpr int kChunk = 2048;
};

template <class T>
constexpr long double kUnit = std::is_same_v<T, double> || std::is_same_v<T, Complex64f> ? 0x1p-53L : 0x1p-24L;

enum Aliasing { kApart, kInPlace, kOnDelay };

// A filter in memory of just the size that was asked for.
template <class S, class T>
class Filter {
 public:
  using F = Fir<S, T>;

  Filter(const Sequence<T>& taps, FilterAlg algorithm)
      : past_(taps.size() - 1),
        sizes_(query(taps.size())),
        spec_(static_cast<std::size_t>(sizes_.first), 3),
        buffer_(static_cast<std::size_t>(sizes_.second), 5) {
    EXPECT_EQ(F::init(taps.data(), static_cast<int>(taps.size()), algorithm, spec()), StatusOk);
  }

  // Filters x in blocks of these lengths, the last one repeated.
  Sequence<S> run(const Sequence<S>& x, std::vector<int> blocks, Aliasing aliasing = kApart, bool delays = true) const {
    Sequence<S> y;
    const Exactly delay(past_ * sizeof(S));
    for (std::size_t done = 0, b = 0; done < x.size(); ++b) {
      const std::size_t most = static_cast<std::size_t>(blocks[b < blocks.size() ? b : blocks.size() - 1]);
      const std::size_t n = std::min(x.size() - done, most);
      const Sequence<S> block(x.begin() + static_cast<std::ptrdiff_t>(done),
                              x.begin() + static_cast<std::ptrdiff_t>(done + n));
      const Exactly src(block), out(std::max(n, past_) * sizeof(S));
      if (aliasing == kOnDelay && done > 0) std::memcpy(out.as<S>(), delay.as<S>(), past_ * sizeof(S));
      S* const dst = aliasing == kInPlace ? src.as<S>() : out.as<S>();
      const S* const old = done == 0 ? nullptr : aliasing == kOnDelay ? out.as<S>() : delay.as<S>();
      const Status status = F::run(src.as<S>(), dst, static_cast<int>(n), spec(), delays ? old : nullptr,
                                   delays ? delay.as<S>() : nullptr, buffer_.as<uint8_t>());
      EXPECT_EQ(status, StatusOk);
      const Sequence<S> part = aliasing == kInPlace ? src.values<S>(n) : out.values<S>(n);
      y.insert(y.end(), part.begin(), part.end());
      done += n;
      const std::size_t known = std::min(done, past_);
      const Sequence<S> recent(x.begin() + static_cast<std::ptrdiff_t>(done - known),
                               x.begin() + static_cast<std::ptrdiff_t>(done));
      const Sequence<S> kept = delay.values<S>(past_);
      const bool followed = sameBits(recent, Sequence<S>(kept.end() - static_cast<std::ptrdiff_t>(known), kept.end()));
      EXPECT_TRUE(followed || !delays);
      EXPECT_TRUE(delay.intact() && src.intact() && out.intact() && buffer_.intact() && spec_.intact());
    }
    return y;
  }

  typename F::Spec* spec() const { return spec_.template as<typename F::Spec>(); }
  uint8_t* buffer() const { return buffer_.as<uint8_t>(); }

 private:
  static std::pair<int, int> query(std::size_t taps) {
    std::pair<int, int> sizes;
    EXPECT_EQ(ovksFIRSRGetSize(static_cast<int>(taps), F::kType, &sizes.first, &sizes.second), StatusOk);
    return sizes;
  }

  std::size_t past_;
  std::pair<int, int> sizes_;
  Exactly spec_, buffer_;
};

template <class S, class T>
void expectNear(const Sequence<T>& taps, const Sequence<S>& x, const Sequence<S>& y, long double spread = 0) {
  const auto want = convolution(taps, x, 0, x.size());
  for (std::size_t n = 0; n < x.size(); ++n) {
    // Each of the additions rounds once; a transform spreads the largest result's error over all.
    const long double bound = kUnit<T> * (2 * taps.size() * want[n].second + spread * std::sqrt(taps.size())) + 1e-300L;
    const long double error = std::abs(Wider<S>::of(y[n]) - want[n].first);
    ASSERT_LE(error, bound) << taps.size() << " taps, " << x.size() << " samples, at " << n;
  }
}

template <class P>
class FirTest : public testing::Test {};
template <class S_, class T_>
struct Types {
  using S = S_;
  using T = T_;
};
using Floating = testing::Types<Types<float, float>, Types<double, double>, Types<Complex32f, Complex32f>,
                                Types<Complex64f, Complex64f>>;
TYPED_TEST_SUITE(FirTest, Floating);

TYPED_TEST(FirTest, EveryTapCountOnEveryPath) {
  using T = typename TypeParam::T;
  Noise noise(1);
  for (std::size_t L = 1; L <= 300; ++L) {
    const auto taps = noise.sequence<T>(L);
    const auto x = noise.sequence<T>(97 + 5 * L % 450);
    expectNear(taps, x, Filter<T, T>(taps, FilterAlgDirect).run(x, {static_cast<int>(x.size())}));
    expectNear(taps, x, Filter<T, T>(taps, FilterAlgFFT).run(x, {static_cast<int>(x.size())}), 16.0L);
  }
}

TYPED_TEST(FirTest, CuttingAStreamChangesNoBit) {
  using T = typename TypeParam::T;
  Noise noise(2);
  for (const std::size_t L : {1, 2, 5, 16, 23, 24, 40, 131, 300}) {
    const auto taps = noise.sequence<T>(L);
    const auto x = noise.sequence<T>(700);
    const Filter<T, T> direct(taps, FilterAlgDirect), transform(taps, FilterAlgFFT);
    const auto whole = direct.run(x, {700});
    for (const std::vector<int>& blocks :
         {std::vector{1, 2, 3, 5, 8, 13, 21}, {16}, {17, 200, 1, 64, 127}, {L > 1 ? int(L) - 1 : 1}}) {
      EXPECT_TRUE(sameBits(direct.run(x, blocks), whole)) << L;
      EXPECT_TRUE(sameBits(direct.run(x, blocks, kInPlace), whole)) << L;
      EXPECT_TRUE(sameBits(direct.run(x, blocks, kOnDelay), whole)) << L;
      expectNear(taps, x, transform.run(x, blocks, kInPlace), 16.0L);
    }
  }
}

TYPED_TEST(FirTest, LongBlocksInPlaceGoByChunks) {
  using T = typename TypeParam::T;
  using F = Fir<T, T>;
  Noise noise(3);
  const auto taps = noise.sequence<T>(40), x = noise.sequence<T>(2 * F::kChunk + 77);
  const std::vector<int> all = {static_cast<int>(x.size())};
  const Filter<T, T> direct(taps, FilterAlgDirect), transform(taps, FilterAlgFFT);
  EXPECT_TRUE(sameBits(direct.run(x, all, kInPlace), direct.run(x, all)));
  expectNear(taps, x, transform.run(x, all, kInPlace), 16.0L);
  // Without delay lines the history is zeros and nothing is kept.
  EXPECT_TRUE(sameBits(direct.run(x, all, kApart, false), direct.run(x, all)));
}

// Auto gives the direct path's bits below a threshold, and the transform's from it on.
TYPED_TEST(FirTest, AutomaticChoice) {
  using T = typename TypeParam::T;
  using F = Fir<T, T>;
  Noise noise(4);
  for (const auto& [L, n] :
       {std::pair{F::kTaps, F::kSamples - 1}, {F::kTaps - 1, F::kSamples}, {F::kTaps, F::kSamples}}) {
    const auto taps = noise.sequence<T>(static_cast<std::size_t>(L)),
               x = noise.sequence<T>(static_cast<std::size_t>(n));
    const bool transform = L == F::kTaps && n == F::kSamples;
    const auto want = Filter<T, T>(taps, transform ? FilterAlgFFT : FilterAlgDirect).run(x, {n});
    EXPECT_TRUE(sameBits(Filter<T, T>(taps, FilterAlgAuto).run(x, {n}), want)) << L << ' ' << n;
  }
}

template <class S, class T>
void checkShort() {
  Noise noise(5);
  for (const std::size_t L : {1, 7, 31, 32, 100}) {
    auto taps = noise.sequence<T>(L);
    const auto x = noise.sequence<S>(2 * Fir<S, T>::kChunk + 9);
    const Filter<S, T> filter(taps, FilterAlgAuto);
    const auto y = filter.run(x, {static_cast<int>(x.size())});
    const auto want = convolution(taps, x, 0, x.size());
    for (std::size_t n = 0; n < x.size(); n += 7) {
      const auto near = [bound = 0.5L + kUnit<T> * 2 * L * want[n].second](long double got, long double exact) {
        return std::fabs(got - std::clamp(exact, -32768.0L, 32767.0L)) <= bound;
      };
      if constexpr (std::is_same_v<S, int16_t>) ASSERT_TRUE(near(y[n], want[n].first)) << L << ' ' << n;
      else ASSERT_TRUE(near(y[n].re, want[n].first.real()) && near(y[n].im, want[n].first.imag())) << L << ' ' << n;
    }
    EXPECT_TRUE(sameBits(filter.run(x, {3, 500, 1}, kInPlace), y));
    EXPECT_TRUE(sameBits(filter.run(x, {500}, kOnDelay), y));
  }
}

TEST(FirShort, RoundedAndSaturated) {
  checkShort<int16_t, float>();
  checkShort<Complex16s, Complex32f>();
  const Filter<int16_t, float> half({0.5f}, FilterAlgDirect);
  EXPECT_EQ(half.run({1, 3, 5, -1, -3, 32767}, {6}), (Sequence<int16_t>{0, 2, 2, 0, -2, 16384}));
}

TEST(FirSizes, AsLaidOut) {
  const auto a64 = [](int x) { return (x + 63) / 64 * 64; };
  for (const int L : {1, 2, 3, 4, 31, 32, 300, 5000}) {
    const int order = std::bit_width(static_cast<unsigned>(L)) + 1, N = 1 << order;
    int spec, init, work, got[2];
    ASSERT_EQ(ovksFFTGetSize_R_32f(order, FFTDivInvByN, AlgHintNone, &spec, &init, &work), StatusOk);
    ASSERT_EQ(ovksFIRSRGetSize(L, DataType32f, got, got + 1), StatusOk);
    EXPECT_EQ(got[0], std::max(a64(32 * L), 32 * ((L + 16) & ~7)) + 191 + spec + 4 * N + std::max(init, work));
    EXPECT_EQ(got[1], a64(8 * L) + ((8 * L + 55) & ~63) + 32768 + 4 * N + work);
    ASSERT_EQ(ovksFFTGetSize_C_64fc(order, FFTDivInvByN, AlgHintNone, &spec, &init, &work), StatusOk);
    ASSERT_EQ(ovksFIRSRGetSize(L, DataType64fc, got, got + 1), StatusOk);
    EXPECT_EQ(got[0], 64 * L + 191 + spec + 16 * N + std::max(init, work));
    EXPECT_EQ(got[1], a64(32 * L) + ((32 * L + 31) & ~63) + 32768 + 16 * N + work);
  }
}

TEST(FirContract, ChecksInTheirOrder) {
  int a = 7, b = 7;
  EXPECT_EQ(ovksFIRSRGetSize(0, -1, nullptr, nullptr), StatusBadSize);
  EXPECT_EQ(ovksFIRSRGetSize(1, 12, nullptr, nullptr), StatusBadDataType);
  EXPECT_EQ(ovksFIRSRGetSize(1, DataType32f, nullptr, &b), StatusNullPtr);
  EXPECT_EQ(ovksFIRSRGetSize(1, DataType32f, &a, nullptr), StatusNullPtr);
  // Sizes that no int holds, and some that would wrap to small ones.
  for (const int L : {1 << 26, (1 << 27) + 1, INT_MAX})
    EXPECT_EQ(ovksFIRSRGetSize(L, DataType32f, &a, &b), StatusBadSize) << L;
  EXPECT_EQ(std::pair(a, b), std::pair(7, 7));
  const float taps[2] = {1, 2};
  const Filter<float, float> f({1, 2}, FilterAlgDirect);
  EXPECT_EQ(ovksFIRSRInit_32f(nullptr, 0, 9, nullptr), StatusBadSize);
  EXPECT_EQ(ovksFIRSRInit_32f(nullptr, 2, 9, f.spec()), StatusNullPtr);
  EXPECT_EQ(ovksFIRSRInit_32f(taps, 2, 9, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksFIRSRInit_32f(taps, 2, 3, f.spec()), StatusBadAlgType);
  float x[2] = {1, 1}, y[2] = {9, 9};
  EXPECT_EQ(ovksFIRSR_32f(x, y, 0, nullptr, nullptr, nullptr, f.buffer()), StatusNullPtr);
  EXPECT_EQ(ovksFIRSR_32f(nullptr, y, 0, f.spec(), nullptr, nullptr, f.buffer()), StatusNullPtr);
  EXPECT_EQ(ovksFIRSR_32f(x, y, 0, f.spec(), nullptr, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksFIRSR_32f(x, y, 0, f.spec(), nullptr, nullptr, f.buffer()), StatusBadSize);
  EXPECT_EQ(y[0], 9);
  EXPECT_EQ(ovksFIRSR_32f(x, y, 2, f.spec(), nullptr, nullptr, f.buffer()), StatusOk);
  EXPECT_EQ(std::pair(y[0], y[1]), std::pair(1.f, 3.f));
}

}  // namespace
}  // namespace ovks::test
