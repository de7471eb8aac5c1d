// SPDX-License-Identifier: MIT
#include <bit>
#include <climits>

#include "filter/sequences.hpp"

namespace ovks::test {
namespace {

// One type's functions: S the samples', T the taps'. The thresholds of the automatic choice, and the samples that are
// filtered at once where one operand lies over another.
template <class S_, class T_, int taps, int samples, int chunk>
struct Fir {
  using S = S_;
  using T = T_;
  static constexpr int kTaps = taps, kSamples = samples, kChunk = chunk;
  const char *filter, *init;
};
constexpr Fir<float, float, 52, 256, 8192> kFir32f = {"ovksFIRSR_32f", "ovksFIRSRInit_32f"};
constexpr Fir<double, double, 34, 512, 4096> kFir64f = {"ovksFIRSR_64f", "ovksFIRSRInit_64f"};
constexpr Fir<Complex32f, Complex32f, 18, 128, 4096> kFir32fc = {"ovksFIRSR_32fc", "ovksFIRSRInit_32fc"};
constexpr Fir<Complex64f, Complex64f, 21, 256, 2048> kFir64fc = {"ovksFIRSR_64fc", "ovksFIRSRInit_64fc"};
constexpr Fir<int16_t, float, 0, 0, 4096> kFir16s = {"ovksFIRSR_16s", "ovksFIRSRInit_32f"};
constexpr Fir<Complex16s, Complex32f, 0, 0, 2048> kFir16sc = {"ovksFIRSR_16sc", "ovksFIRSRInit_32fc"};

enum Aliasing { kApart, kOneDelayLine, kInPlace, kOnDelay };

// A filter in memory of just the size that was asked for, which ends at guard pages.
template <class F>
class Filter {
 public:
  using S = typename F::S;
  using T = typename F::T;

  Filter(const F& fir, const Sequence<T>& taps, FilterAlg algorithm) : fir_(fir), past_(std::ssize(taps) - 1) {
    shape_.len2 = static_cast<int>(taps.size());
    shape_.algType = algorithm;
    object_ = std::make_shared<Call>(prototype(fir.init), shape_, random_);
    object_->data(0) = bytesOf(taps);
    object_->place();
    EXPECT_EQ(object_->run(), StatusOk);
  }

  // Filters x in blocks of these lengths, the last one repeated. Without delay lines the history is zeros, and nothing
  // is kept.
  Sequence<S> run(const Sequence<S>& x, const std::vector<int>& blocks, Aliasing aliasing = kApart,
                  bool delays = true) const {
    Sequence<S> y, history(static_cast<std::size_t>(past_));
    std::ptrdiff_t done = 0;
    for (std::size_t b = 0; done < std::ssize(x); ++b) {
      const auto n = std::min<std::ptrdiff_t>(std::ssize(x) - done, blocks[std::min(b, blocks.size() - 1)]);
      const Sequence<S> block(x.begin() + done, x.begin() + done + n);
      Sequence<S> next = history;
      next.insert(next.end(), block.begin(), block.end());
      next.erase(next.begin(), next.end() - past_);
      const std::size_t src = 0, dst = 1, before = 4, after = 5;
      Shape shape = shape_;
      shape.len = static_cast<int>(n);
      Call call(prototype(fir_.filter), shape, random_, object_);
      call.data(src) = bytesOf(block);
      call.data(before) = bytesOf(history);
      const Overlap overlaps[] = {{}, {after, before, 0}, {dst, src, 0}, {dst, before, 0}};
      call.place({}, overlaps[done == 0 && aliasing != kInPlace ? kApart : aliasing]);
      if (done == 0 || !delays) call.arguments[before].set(nullptr);
      if (!delays) call.arguments[after].set(nullptr);
      EXPECT_EQ(call.run(), StatusOk);
      EXPECT_EQ(call.changed(false), "");
      EXPECT_TRUE(!delays || call.bytes(after) == bytesOf(next));
      const Sequence<S> part = sequence<S>(call.bytes(dst));
      y.insert(y.end(), part.begin(), part.end());
      done += n;
      history = next;
    }
    return y;
  }

 private:
  const F& fir_;
  std::ptrdiff_t past_;
  Shape shape_;
  mutable Random random_{"filter"};
  std::shared_ptr<Call> object_;
};

// f for each of the floating-point types.
template <class F>
void forTypes(F f) {
  f(kFir32f);
  f(kFir64f);
  f(kFir32fc);
  f(kFir64fc);
}

TEST(Fir, EveryTapCountOnEveryPath) {
  forTypes([]<class F>(const F& fir) {
    Random random(fir.filter);
    for (std::size_t L = 1; L <= 300; ++L) {
      const auto taps = noise<typename F::T>(random, L), x = noise<typename F::T>(random, 97 + 5 * L % 450);
      const std::vector<int> all = {static_cast<int>(x.size())};
      expectConvolution(Filter(fir, taps, FilterAlgDirect).run(x, all), taps, x, false);
      expectConvolution(Filter(fir, taps, FilterAlgFFT).run(x, all), taps, x, true);
    }
  });
}

// Nor does filtering in place, which takes long blocks by chunks.
TEST(Fir, CuttingAStreamChangesNoBit) {
  forTypes([]<class F>(const F& fir) {
    Random random(fir.filter);
    constexpr int kLong = 2 * F::kChunk + 77;
    const auto check = [&](int L, int n, const std::vector<std::vector<int>>& cuts) {
      SCOPED_TRACE(std::string(fir.filter) + ' ' + std::to_string(L));
      const auto taps = noise<typename F::T>(random, L), x = noise<typename F::T>(random, n);
      const Filter direct(fir, taps, FilterAlgDirect), transform(fir, taps, FilterAlgFFT);
      const auto whole = direct.run(x, {n});
      for (const std::vector<int>& blocks : cuts) {
        for (const Aliasing aliasing : {kApart, kOneDelayLine, kInPlace, kOnDelay})
          EXPECT_TRUE(sameBits(direct.run(x, blocks, aliasing), whole)) << aliasing;
        expectConvolution(transform.run(x, blocks, kInPlace), taps, x, true);
      }
      EXPECT_TRUE(sameBits(direct.run(x, {n}, kApart, false), whole));
    };
    for (const int L : {1, 2, 5, 16, 23, 24, 40, 131, 300})
      check(L, 700, {{1, 2, 3, 5, 8, 13, 21}, {16}, {17, 200, 1, 64, 127}, {std::max(L - 1, 3)}});
    check(40, kLong, {{kLong}});
  });
}

// Blocks that don't contain a sample know nothing of it.
TEST(Fir, InfinityStaysInItsBlocks) {
  forTypes([]<class F>(const F& fir) {
    Random random(fir.filter);
    constexpr std::size_t L = 100, N = 256;
    const Filter filter(fir, noise<typename F::T>(random, L), FilterAlgFFT);
    for (int n = 3 * N; n < 5 * int{N}; n += 25) {
      auto x = noise<typename F::T>(random, n);
      const auto want = filter.run(x, {n});
      *reinterpret_cast<Real<typename F::T>*>(x.data()) = std::numeric_limits<float>::infinity();
      auto y = filter.run(x, {n});
      std::copy_n(want.begin(), 2 * N, y.begin());
      EXPECT_TRUE(sameBits(y, want)) << fir.filter << ' ' << n;
    }
  });
}

// Auto gives the direct path's bits below a threshold, and the transform's from it on.
TEST(Fir, AutomaticChoice) {
  forTypes([]<class F>(const F& fir) {
    Random random(fir.filter);
    for (const bool few : {true, false}) {
      for (const bool brief : {true, false}) {
        const auto taps = noise<typename F::T>(random, F::kTaps - few),
                   x = noise<typename F::T>(random, F::kSamples - brief);
        const std::vector<int> all = {static_cast<int>(x.size())};
        const auto want = Filter(fir, taps, few || brief ? FilterAlgDirect : FilterAlgFFT).run(x, all);
        EXPECT_TRUE(sameBits(Filter(fir, taps, FilterAlgAuto).run(x, all), want)) << fir.filter << few << brief;
      }
    }
  });
}

template <class F>
void checkShort(const F& fir) {
  using T = typename F::T;
  Random random(fir.filter);
  for (const std::size_t L : {1, 7, 31, 32, 100}) {
    const auto taps = noise<T>(random, L);
    const auto x = noise<typename F::S>(random, 2 * F::kChunk + 9);
    const Filter filter(fir, taps, FilterAlgAuto);
    const auto y = filter.run(x, {static_cast<int>(x.size())});
    const auto want = convolution(taps, x, x.size());
    for (std::size_t n = 0; n < x.size(); ++n) {
      const long double bound =
          0.5L + std::numeric_limits<float>::epsilon() * static_cast<long double>(L) * want[n].second;
      const auto saturated = [](long double exact) { return std::clamp(exact, -32768.0L, 32767.0L); };
      const std::complex<long double> exact = want[n].first, got = wide(y[n]);
      ASSERT_LE(std::fabs(got.real() - saturated(exact.real())), bound) << L << ' ' << n;
      ASSERT_LE(std::fabs(got.imag() - saturated(exact.imag())), bound) << L << ' ' << n;
    }
    EXPECT_TRUE(sameBits(filter.run(x, {3, 500, 1, 999}, kInPlace), y));
    EXPECT_TRUE(sameBits(filter.run(x, {500}, kOnDelay), y));
    EXPECT_TRUE(sameBits(filter.run(x, {500}, kOneDelayLine), y));
  }
}

TEST(Fir, ShortsAreRoundedAndSaturated) {
  checkShort(kFir16s);
  checkShort(kFir16sc);
  const Filter half(kFir16s, {0.5f}, FilterAlgDirect);
  EXPECT_EQ(half.run({1, 3, 5, -1, -3, 32767}, {6}), (Sequence<int16_t>{0, 2, 2, 0, -2, 16384}));
}

TEST(Fir, SizesAsLaidOut) {
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

TEST(Fir, SizesThatThereAreNot) {
  int a = 7, b = 7;
  EXPECT_EQ(ovksFIRSRGetSize(0, -1, nullptr, nullptr), StatusBadSize);
  EXPECT_EQ(ovksFIRSRGetSize(1, 12, nullptr, nullptr), StatusBadDataType);
  // Sizes that no int holds, and some that would wrap to small ones.
  for (const int L : {1 << 26, (1 << 27) + 1, INT_MAX})
    EXPECT_EQ(ovksFIRSRGetSize(L, DataType32f, &a, &b), StatusBadSize) << L;
  EXPECT_EQ(std::pair(a, b), std::pair(7, 7));
}

}  // namespace
}  // namespace ovks::test
