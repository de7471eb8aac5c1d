// SPDX-License-Identifier: MIT
// The 32-bit integer engine of the generators: a lag-3 subtract-with-borrow sequence plus a congruential one.
#pragma once

#include <algorithm>

#include "core/simd.hpp"

namespace ovks {

// Whether any lane of a comparison's result is set.
template <class V>
OVKS_INLINE bool any(V mask) {
  if constexpr (sizeof(V) == 64) return _mm512_test_epi32_mask(bits<__m512i>(mask), bits<__m512i>(mask)) != 0;
  else return !_mm256_testz_si256(bits<__m256i>(mask), bits<__m256i>(mask));
}

// The engine as the states keep it.
struct Engine {
  static constexpr uint32_t kFactor = 69069, kIncrement = 1013904243;

  uint32_t lcg, x1, x2, x3;  // x1 is the newest subtract-with-borrow value
  int32_t borrow;            // 0 or -1

  Engine() = default;
  explicit Engine(uint32_t seed)
      : lcg(1131199209), x1(seed), x2(kFactor * x1 + kIncrement), x3(kFactor * x2 + kIncrement), borrow(-1) {}

  // The next subtract-with-borrow value.
  uint32_t step() {
    uint32_t s = x2 - x3 + static_cast<uint32_t>(borrow);
    borrow = static_cast<int32_t>(s) >> 31;
    s += static_cast<uint32_t>(borrow) * 18;
    x3 = x2;
    x2 = x1;
    x1 = s;
    return s;
  }
};

namespace detail {

using Values = Vec<uint32_t>;
inline constexpr int kValues = lanes<Values>;

// The congruential sequence, a vector of consecutive values at a time: the value k steps on is A^k lcg + C_k.
class Congruential {
 public:
  explicit Congruential(uint32_t before)
      : values_(broadcast<Values>(before) * load<Values>(kJumps.factor) + load<Values>(kJumps.increment)) {}

  OVKS_INLINE Values next() {
    const Values v = values_;
    values_ = v * broadcast<Values>(kJumps.factor[kValues - 1]) + broadcast<Values>(kJumps.increment[kValues - 1]);
    return v;
  }

 private:
  struct Jumps {
    uint32_t factor[kValues], increment[kValues];
  };
  static constexpr Jumps kJumps = [] {
    Jumps jumps{};
    uint32_t factor = 1, increment = 0;
    for (int k = 0; k < kValues; ++k) {
      jumps.factor[k] = factor *= Engine::kFactor;
      jumps.increment[k] = increment = increment * Engine::kFactor + Engine::kIncrement;
    }
    return jumps;
  }();

  Values values_;
};

// A stretch of the subtract-with-borrow sequence after the three values before it.
struct Stretch {
  static constexpr int kSize = 512;
  alignas(64) uint32_t memory[16 + kSize];

  uint32_t* values() { return memory + 16; }

  // The next n values; between() is called after each vector of them. The borrow is the sign of x2 - x3 unless the
  // other 31 bits of that are zero: predicted so, it is off the chain from value to value, and the rare stretch where
  // it may be wrong is made again.
  template <class F>
  OVKS_INLINE void fill(Engine& engine, int n, F between) {
    Engine e = engine;  // stays in registers
    begin(e);
    int i = 0;
    for (; i + kValues <= n; i += kValues) {
      predicted(e, i);
      between();
    }
    for (; i < n; ++i) values()[i] = e.step();
    if (mayBeWrong(n)) [[unlikely]]
      refill(engine, n);
    else engine = e;
  }

 private:
  void begin(const Engine& engine) {
    uint32_t* x = values();
    x[-3] = engine.x3;
    x[-2] = engine.x2;
    x[-1] = engine.x1;
  }

  OVKS_INLINE void predicted(Engine& engine, int i) {
    uint32_t x1 = engine.x1, x2 = engine.x2, x3 = engine.x3, borrow = static_cast<uint32_t>(engine.borrow);
    uint32_t* x = values() + i;
#pragma GCC unroll 16
    for (int k = 0; k < kValues; ++k) {
      const uint32_t difference = x2 - x3, less = borrow - 18;
      const bool negative = static_cast<int32_t>(difference) < 0;
      uint32_t s = difference + (negative ? less : borrow);
      asm("" : "+r"(s));  // in a general register: vectors of two make the chain longer
      borrow = static_cast<uint32_t>(static_cast<int32_t>(difference) >> 31);
      x3 = x2;
      x2 = x1;
      x1 = s;
      x[k] = s;
    }
    engine.x1 = x1;
    engine.x2 = x2;
    engine.x3 = x3;
    engine.borrow = static_cast<int32_t>(borrow);
  }

  bool mayBeWrong(int n) {
    const uint32_t* x = values();
    Signed<Values> zero{};
    for (int i = 0; i + kValues <= n; i += kValues) {
      const Values difference = load<Values>(x + i - 2) - load<Values>(x + i - 3);
      zero |= (difference << 1) == Values{};
    }
    return any(zero);
  }

  [[gnu::noinline]] void refill(Engine& engine, int n) {
    for (int i = 0; i < n; ++i) values()[i] = engine.step();
  }
};

}  // namespace detail

// emit(u, i, count) with the values i .. i + count - 1 of the next n in the first lanes of u, i = 0, w, 2 w, ... for
// vectors of w lanes. A stretch is given out while the chain of the next one goes on.
template <class F>
void generate(Engine& engine, std::ptrdiff_t n, F emit) {
  using namespace detail;
  constexpr std::integral_constant<int, kValues> kWhole;
  Stretch stretches[2];
  Congruential congruential(engine.lcg);
  Values lcg;
  std::ptrdiff_t emitted = 0;
  uint32_t *waiting = nullptr, *end = nullptr;
  const auto give = [&](auto count) {
    lcg = congruential.next();
    emit(bits<Signed<Values>>(load<Values>(waiting) + lcg), emitted, count);
    waiting += count;
    emitted += count;
  };
  for (std::ptrdiff_t made = 0; made < n;) {
    Stretch& next = stretches[made / Stretch::kSize % 2];
    const int size = static_cast<int>(std::min<std::ptrdiff_t>(n - made, Stretch::kSize));
    next.fill(engine, size, [&] {
      if (waiting != end) give(kWhole);
    });
    while (waiting != end) give(kWhole);
    waiting = next.values();
    end = waiting + size;
    made += size;
  }
  while (end - waiting >= kValues) give(kWhole);
  const int rest = static_cast<int>(end - waiting);
  if (rest > 0) give(rest);
  uint32_t lanes[kValues];
  store(lanes, lcg);
  engine.lcg = lanes[rest > 0 ? rest - 1 : kValues - 1];
}

}  // namespace ovks
