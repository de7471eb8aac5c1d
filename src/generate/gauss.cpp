// SPDX-License-Identifier: MIT
// The Gaussian generator: the polar method on pairs of engine values.
#include "core/export.hpp"
#include "core/log.hpp"
#include "core/root.hpp"
#include "generate/interleave.hpp"
#include "generate/random.hpp"

namespace {

using namespace ovks;

template <class T>
struct State {
  static constexpr int32_t kContext = contextOf<T>(39);

  int32_t context;
  uint32_t seed;
  T mean, stdDev;
  Engine engine;
  int32_t pending;     // 1 when no deviate is kept
  double deviates[3];  // the kept one, and two that are not used
};
static_assert(sizeof(State<uint8_t>) <= 64 && sizeof(State<int16_t>) <= 64);
static_assert(sizeof(State<float>) <= 72 && sizeof(State<double>) <= 80);

using V = Vec<double>;
inline constexpr int kPairs = lanes<V>;

// The lanes of a vector that a mask keeps, moved to the front.
#ifdef __AVX512F__
struct Selection {
  __mmask8 mask;

  explicit Selection(Vec<int64_t> lanes) : mask(_mm512_movepi64_mask(bits<__m512i>(lanes))) {}
  int count() const { return __builtin_popcount(mask); }
  OVKS_INLINE V operator()(V v) const { return _mm512_maskz_compress_pd(mask, v); }
};
#else
struct Orders {
  int32_t lanes[16][8];
};
constexpr Orders kOrders = [] {
  Orders orders{};
  for (int mask = 0; mask < 16; ++mask) {
    int n = 0;
    for (int i = 0; i < 4; ++i) {
      if (!(mask >> i & 1)) continue;
      orders.lanes[mask][n++] = 2 * i;
      orders.lanes[mask][n++] = 2 * i + 1;
    }
  }
  return orders;
}();

struct Selection {
  unsigned mask;

  explicit Selection(Vec<int64_t> lanes) : mask(static_cast<unsigned>(_mm256_movemask_pd(bits<__m256d>(lanes)))) {}
  int count() const { return __builtin_popcount(mask); }
  OVKS_INLINE V operator()(V v) const {
    return bits<V>(_mm256_permutevar8x32_epi32(bits<__m256i>(v), load<__m256i>(kOrders.lanes[mask])));
  }
};
#endif

// Collects accepted pairs and turns them into deviates, many at a time: the latencies of logarithm, division and root
// are far longer than their throughput.
template <class T>
class Polar {
 public:
  Polar(T* dst, std::ptrdiff_t n, State<T>& state)
      : dst_(dst), left_(n), mean_(broadcast<V>(state.mean)), stdDev_(broadcast<V>(state.stdDev)) {
    if (!state.pending) {
      write(dst_++, 1, mean_ + stdDev_ * broadcast<V>(state.deviates[0]));
      --left_;
    }
    keeps_ = left_ % 2;
  }

  std::ptrdiff_t pairsLeft() const { return (left_ + 1) / 2 - waiting_; }

  // Pairs of engine values, in count lanes of u.
  OVKS_INLINE void take(Vec<int32_t> u, int count) {
    const V v1 = part<0>(u), v2 = part<1>(u), s = v1 * v1 + v2 * v2;
    auto accepted = (s < broadcast<V>(1)) & (s != V{});
    if (count < 2 * kPairs) {
      for (int i = count / 2; i < kPairs; ++i) accepted[i] = 0;
    }
    const Selection selection(bits<Vec<int64_t>>(accepted));
    store(first_ + waiting_, selection(v1));
    store(second_ + waiting_, selection(v2));
    store(squares_ + waiting_, selection(s));
    waiting_ += selection.count();
    if (waiting_ >= kRoom) [[unlikely]]
      finish();
  }

  // The last pairs, when none is missing. An odd deviate is kept.
  void close(State<T>& state) {
    store(squares_ + waiting_, broadcast<V>(0.5));
    waiting_ += kPairs - 1;
    finish();
    state.pending = !keeps_;
    state.deviates[0] = keeps_ ? kept_ : 0;
  }

 private:
  static constexpr int kRoom = 256;

  // Lanes 0, 2, 4, ... or 1, 3, 5, ... in [-1, 1).
  template <int odd>
  static OVKS_INLINE V part(Vec<int32_t> u) {
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
      return convert<double>(__builtin_shufflevector(u, u, (2 * static_cast<int>(i) + odd)...));
    }
    (std::make_index_sequence<kPairs>{}) * broadcast<V>(0x1p-31);
  }

  // Whole vectors of pairs; what is left moves to the front.
  [[gnu::noinline]] void finish() {
    const V mean = mean_, stdDev = stdDev_;
    T* dst = dst_;
    std::ptrdiff_t left = left_;
    int i = 0;
    // Logarithms first: in one loop with what follows, too few of these long chains would run at a time.
    double logs[kRoom + 2 * kPairs];
    for (; i + kPairs <= waiting_; i += kPairs) {
      const Scientific<V> parts(load<V>(squares_ + i));
      store(logs + i, logOfParts(parts.mantissa, parts.exponent()));
    }
    for (i = 0; i + kPairs <= waiting_; i += kPairs) {
      const V f = squareRoot(broadcast<V>(-2) * load<V>(logs + i) / load<V>(squares_ + i));
      const V z1 = load<V>(first_ + i) * f, z2 = load<V>(second_ + i) * f;
      const int n = left < 2 * kPairs ? static_cast<int>(left) : 2 * kPairs;
      if (n < 2 * kPairs && keeps_) kept_ = z2[n / 2];
      write(dst, n, mean + stdDev * interleaved<0>(z1, z2));
      write(dst + kPairs, n - kPairs, mean + stdDev * interleaved<1>(z1, z2));
      dst += n;
      left -= n;
    }
    for (double* pairs : {first_, second_, squares_}) store(pairs, load<V>(pairs + i));
    waiting_ -= i;
    dst_ = dst;
    left_ = left;
  }

  T* dst_;
  std::ptrdiff_t left_;
  V mean_, stdDev_;
  int waiting_ = 0;
  bool keeps_;  // whether the last pair's second deviate is one too many
  double kept_ = 0;
  double first_[kRoom + 2 * kPairs], second_[kRoom + 2 * kPairs], squares_[kRoom + 2 * kPairs];
};

template <class S, class T>
Status init(S* pState, T mean, T stdDev, uint32_t seed) {
  if (!pState) return StatusNullPtr;
  auto state = blank<State<T>>();
  state.context = State<T>::kContext;
  state.seed = seed;
  state.mean = mean;
  state.stdDev = stdDev;
  state.engine = Engine(seed);
  state.pending = 1;
  save(pState, state);
  return StatusOk;
}

template <class T, class S>
Status gauss(T* pDst, int len, S* pState) {
  State<T> state;
  if (const Status s = restore(state, pDst, len, pState)) return s;
  // The caller's rounding must not change which pairs are accepted.
  const DefaultFloatControl control;
  Polar<T> polar(pDst, len, state);
  while (polar.pairsLeft() > 0) {
    generate(state.engine, 2 * polar.pairsLeft(), [&](auto u, std::ptrdiff_t, int count) { polar.take(u, count); });
  }
  polar.close(state);
  save(pState, state);
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksRandGaussGetSize_8u, getSize<64>);
OVKS_EXPORT(ovksRandGaussGetSize_16s, getSize<64>);
OVKS_EXPORT(ovksRandGaussGetSize_32f, getSize<72>);
OVKS_EXPORT(ovksRandGaussGetSize_64f, getSize<80>);
OVKS_EXPORT(ovksRandGaussInit_8u, init);
OVKS_EXPORT(ovksRandGaussInit_16s, init);
OVKS_EXPORT(ovksRandGaussInit_32f, init);
OVKS_EXPORT(ovksRandGaussInit_64f, init);
OVKS_EXPORT(ovksRandGauss_8u, gauss);
OVKS_EXPORT(ovksRandGauss_16s, gauss);
OVKS_EXPORT(ovksRandGauss_32f, gauss);
OVKS_EXPORT(ovksRandGauss_64f, gauss);
