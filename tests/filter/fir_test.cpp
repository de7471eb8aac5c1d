// SPDX-License-Identifier: MIT
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

  Filter(const F& fir, const Sequence<T>& taps, FilterAlg algorithm) : fir_(fir) {
    shape_.len2 = static_cast<int>(taps.size());
    shape_.algType = algorithm;
    object_ = std::make_shared<Call>(prototype(fir.init), shape_, random_);
    object_->data(0) = bytesOf(taps);
    object_->place();
    EXPECT_EQ(object_->run(), StatusOk);
  }

  // Filters x whole or in blocks of these lengths, the last one repeated: the first without a history, the others with
  // what the one before has kept. The last one keeps nothing.
  Sequence<S> run(const Sequence<S>& x, const std::vector<int>& blocks = {INT_MAX}, Aliasing aliasing = kApart) const {
    constexpr std::size_t src = 0, dst = 1, before = 4, after = 5;
    Sequence<S> y;
    Bytes history;
    for (std::size_t b = 0; y.size() < x.size(); ++b) {
      const auto from = x.begin() + std::ssize(y);
      Shape shape = shape_;
      shape.len = std::min(static_cast<int>(x.end() - from), blocks[std::min(b, blocks.size() - 1)]);
      Call call(prototype(fir_.filter), shape, random_, object_);
      call.data(src) = bytesOf(Sequence<S>(from, from + shape.len));
      call.adopt(before, history);
      const Overlap overlaps[] = {{}, {after, before, 0}, {dst, src, 0}, {dst, before, 0}};
      call.place({}, overlaps[b == 0 && aliasing != kInPlace ? kApart : aliasing]);
      if (b == 0) call.arguments[before].set(nullptr);
      if (from + shape.len == x.end()) call.arguments[after].set(nullptr);
      EXPECT_EQ(call.run(), StatusOk);
      EXPECT_EQ(call.changed(false), "");
      const Sequence<S> part = sequence<S>(call.bytes(dst));
      y.insert(y.end(), part.begin(), part.end());
      history = call.bytes(after);
    }
    return y;
  }

 private:
  const F& fir_;
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
      expectConvolution(Filter(fir, taps, FilterAlgDirect).run(x), taps, x, false);
      expectConvolution(Filter(fir, taps, FilterAlgFFT).run(x), taps, x, true);
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
      const auto whole = direct.run(x);
      for (const std::vector<int>& blocks : cuts) {
        for (const Aliasing aliasing : {kApart, kOneDelayLine, kInPlace, kOnDelay})
          EXPECT_TRUE(sameBits(direct.run(x, blocks, aliasing), whole)) << aliasing;
        expectConvolution(transform.run(x, blocks, kInPlace), taps, x, true);
      }
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
      const auto want = filter.run(x);
      *reinterpret_cast<Real<typename F::T>*>(x.data()) = std::numeric_limits<float>::infinity();
      auto y = filter.run(x);
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
        const auto want = Filter(fir, taps, few || brief ? FilterAlgDirect : FilterAlgFFT).run(x);
        EXPECT_TRUE(sameBits(Filter(fir, taps, FilterAlgAuto).run(x), want)) << fir.filter << few << brief;
      }
    }
  });
}

template <class F>
void checkShort(const F& fir) {
  Random random(fir.filter);
  for (const std::size_t L : {1, 7, 31, 32, 100}) {
    const auto taps = noise<typename F::T>(random, L);
    const auto x = noise<typename F::S>(random, 2 * F::kChunk + 9);
    const Filter filter(fir, taps, FilterAlgAuto);
    const auto y = filter.run(x);
    expectConvolution(y, taps, x, false);
    for (const Aliasing aliasing : {kOneDelayLine, kInPlace, kOnDelay})
      EXPECT_TRUE(sameBits(filter.run(x, {3, 500, 1, 999}, aliasing), y)) << aliasing;
  }
}

TEST(Fir, ShortsAreRoundedAndSaturated) {
  checkShort(kFir16s);
  checkShort(kFir16sc);
  const Filter half(kFir16s, {0.5f}, FilterAlgDirect);
  EXPECT_EQ(half.run({1, 3, 5, -1, -3, 32767}), (Sequence<int16_t>{0, 2, 2, 0, -2, 16384}));
}

// Of all filters of up to 5000 taps; they stay what they are from release to release.
TEST(Fir, SizesAddUp) {
  const std::tuple<DataType, int64_t, int64_t> sums[] = {{DataType32f, 1018968632, 661991248},
                                                         {DataType64f, 1612158856, 1159506528},
                                                         {DataType32fc, 1333252872, 1159541344},
                                                         {DataType64fc, 2625962408, 2154604672}};
  for (const auto& [type, specs, buffers] : sums) {
    std::pair<int64_t, int64_t> got;
    for (int L = 1, spec, buffer; L <= 5000; ++L, got.first += spec, got.second += buffer)
      ASSERT_EQ(ovksFIRSRGetSize(L, type, &spec, &buffer), StatusOk);
    EXPECT_EQ(got, std::pair(specs, buffers)) << type;
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
