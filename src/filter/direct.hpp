// SPDX-License-Identifier: MIT
// Convolution in the time domain: y[n] = sum of taps[k] x[n - k], 0 <= k < tapsLen.
//
// Several vectors of outputs by several taps one vector apart: the inputs x[n0 + E m - k0], E elements to a vector,
// serve the outputs E j and the taps k0 + E i with j - i = m, so that I + J - 1 loads feed I J multiply-adds. The plain
// loop's load for each multiply-add, mostly across two cache lines, is what bounds it.
//
// Complex data accumulate the products with the taps' real and imaginary parts apart, and combine them at the end.
//
// The order of additions for an output depends on tapsLen alone, so that cutting a stream does not change a bit.
#pragma once

#include "core/complex.hpp"
#include "core/element.hpp"
#include "core/part.hpp"

namespace ovks {

template <class T>
class DirectFilter {
 public:
  DirectFilter(const T* taps, int tapsLen) : taps_(reals(taps)), tapsLen_(tapsLen) {}

  // y[i .. n - 1] from x[-(tapsLen - 1) .. n - 1], perhaps some of y[0 .. i - 1], too; y and x lie apart.
  void run(const T* x, T* y, std::ptrdiff_t i, std::ptrdiff_t n) const {
    for (; i + kOutputs * E <= n; i += kOutputs * E) block<kOutputs>(x + i, y + i);
    if (i < n) finish<kOutputs>(x, y, i, n);
  }

  // The same of x[0 .. count - 1] among zeros, in whole vectors: what is only zeros takes no time.
  void runAmongZeros(const T* x, std::ptrdiff_t count, T* y, std::ptrdiff_t n) const {
    blocksAmongZeros<kOutputs>(x, count, y, 0, n);
  }

 private:
  using R = Real<T>;
  using V = Vec<R>;
  static constexpr int P = parts<T>;
  static constexpr int E = lanes<V> / P;
  static constexpr int kOutputs = (kAvx512 ? 16 : 8) / P;
  static constexpr int kRows = P == 2 && !kAvx512 ? 2 : 4;

  // J vectors of sums. Rows add to `sets` of them by turns, where few sums would wait for each other.
  template <int J, int sets = 1>
  struct Accumulators {
    static_assert(P == 1 || sets == 1);
    V sum[P * sets][J];

    // One by one, as a call or string instruction for all would take longer than a few taps.
    OVKS_INLINE Accumulators() {
      for (int p = 0; p < P * sets; ++p) {
#pragma GCC unroll 16
        for (int j = 0; j < J; ++j) sum[p][j] = V{};
      }
    }

    OVKS_INLINE V result(int j) const {
      if constexpr (sets == 2) return sum[0][j] + sum[1][j];
      else if constexpr (P == 1) return sum[0][j];
      // Imaginary taps turn (re, im) into (-im, re).
      else return fmaSubAdd(sum[0][j], broadcast<V>(1), swapParts(sum[1][j]));
    }
  };

  // The inputs from x[i] on: a vector of them, or n and zeros.
  struct Inputs {
    const T* x;
    OVKS_INLINE V operator()(std::ptrdiff_t i) const { return load<V>(x + i); }
    static constexpr bool any(std::ptrdiff_t) { return true; }
  };
  struct InputsAmongZeros {
    const T* x;
    std::ptrdiff_t first, count;
    OVKS_INLINE V operator()(std::ptrdiff_t i) const { return load<V>(x + first + i); }
    OVKS_INLINE bool any(std::ptrdiff_t i) const { return first + i > -E && first + i < count; }
  };
  struct FewInputs {
    const T* x;
    std::ptrdiff_t n;
    OVKS_INLINE V operator()(std::ptrdiff_t i) const { return loadPart<V>(reals(x + i), n * P); }
    static constexpr bool any(std::ptrdiff_t) { return true; }
  };

  // Outputs i .. n - 1, fewer than J vectors: the last block overlaps what has been written.
  template <int J>
  OVKS_INLINE void finish(const T* x, T* y, std::ptrdiff_t i, std::ptrdiff_t n) const {
    constexpr std::ptrdiff_t whole = J * E, half = J / 2 * E;
    if (n - i > half && n >= whole) return lastBlock<J>(x + n - whole, y + n - whole);
    if constexpr (J == 1) {
      part(x, y, n);
    } else {
      if (n - i > half) {
        lastBlock<J / 2>(x + i, y + i);
        i += half;
      }
      finish<J / 2>(x, y, i, n);
    }
  }

  // Each in a frame of its own, so that few outputs don't pass through the large ones.
  template <int J>
  [[gnu::noinline]] void lastBlock(const T* x, T* y) const {
    block<J>(x, y);
  }

  template <int J>
  OVKS_INLINE void block(const T* x, T* y) const {
    Accumulators<J> a;
    accumulate(a, Inputs{x});
    for (int j = 0; j < J; ++j) store(y + j * E, a.result(j));
  }

  template <int J>
  void blocksAmongZeros(const T* x, std::ptrdiff_t count, T* y, std::ptrdiff_t i, std::ptrdiff_t n) const {
    for (; i + J * E <= n; i += J * E) {
      Accumulators<J, (P == 1 && J < kOutputs ? 2 : 1)> a;
      accumulate(a, InputsAmongZeros{x, i, count});
      for (int j = 0; j < J; ++j) store(y + i + j * E, a.result(j));
    }
    if constexpr (J > 1) blocksAmongZeros<J / 2>(x, count, y, i, n);
  }

  void part(const T* x, T* y, std::ptrdiff_t n) const {
    Accumulators<1> a;
    accumulate(a, FewInputs{x, n});
    storePart(reals(y), a.result(0), n * P);
  }

  // at(i) gives the inputs from x[i] on.
  template <class A, class F>
  OVKS_INLINE void accumulate(A& a, F at) const {
    int first = 0;
    for (; first + kRows * E <= tapsLen_; first += kRows * E) {
      for (int k = first; k < first + E; ++k) rows<kRows>(a, at, k);
    }
    const int rest = tapsLen_ - first, whole = rest / E, last = first + rest % E;
    remaining(a, at, first, last, whole + 1);
    remaining(a, at, last, first + E, whole);
  }

  // Taps k .. end - 1, each with the ones whole vectors behind it, count rows in all.
  template <class A, class F>
  OVKS_INLINE void remaining(A& a, F at, int k, int end, int count) const {
    if (count == 1) {
      few<1>(a, at, k, end);
    } else if (count == 2) {
      few<2>(a, at, k, end);
    } else if (count == 3) {
      for (; k < end; ++k) rows<3>(a, at, k);
    } else if (count == 4) {
      for (; k < end; ++k) rows<4>(a, at, k);
    }
  }

  // Few rows ask for many loads: one for two taps does where vectors shift cheaply.
  template <int I, class A, class F>
  OVKS_INLINE void few(A& a, F at, int k, int end) const {
    if constexpr (kAvx512 && P == 1 && !std::is_same_v<F, InputsAmongZeros>)
      for (; k + 1 < end; k += 2) neighbours<I>(a, at, k);
    for (; k < end; ++k) rows<I>(a, at, k);
  }

  // The taps k, k + E ... k + (I - 1) E and those behind them: the inputs of the second come out of registers.
  template <int I, int J, class F>
  OVKS_INLINE void neighbours(Accumulators<J>& a, F at, int k) const {
    V tap[I], next[I];
    for (int i = 0; i < I; ++i) {
      tap[i] = broadcast<V>(taps_[k + i * E]);
      next[i] = broadcast<V>(taps_[k + i * E + 1]);
    }
    V before;
#pragma GCC unroll 32
    for (int m = 1 - I; m < J; ++m) {
      const bool loads = m == 1 - I || std::is_same_v<F, FewInputs>;
      const V x = inRegister(at(m * E - k)), behind = loads ? at(m * E - k - 1) : oneBehind(before, x);
#pragma GCC unroll 4
      for (int i = 0; i < I; ++i) {
        const int j = m + i;
        if (j >= 0 && j < J) a.sum[0][j] = fma(next[i], behind, fma(tap[i], x, a.sum[0][j]));
      }
      before = x;
    }
  }

  // x's lanes one place on, the last of the vector before in front of them.
  static OVKS_INLINE V oneBehind(V before, V x) {
    if constexpr (sizeof(R) == 4) return bits<V>(_mm512_alignr_epi32(bits<__m512i>(x), bits<__m512i>(before), 15));
    else return bits<V>(_mm512_alignr_epi64(bits<__m512i>(x), bits<__m512i>(before), 7));
  }

  // The taps k, k + E, ... k + (I - 1) E.
  template <int I, int J, int sets, class F>
  OVKS_INLINE void rows(Accumulators<J, sets>& a, F at, int k) const {
    V tap[P][I];
    for (int p = 0; p < P; ++p) {
      for (int i = 0; i < I; ++i) tap[p][i] = broadcast<V>(taps_[(k + i * E) * P + p]);
    }
#pragma GCC unroll 32
    for (int m = J - 1; m > -I; --m) {
      if (!at.any(m * E - k)) continue;
      const V x = inRegister(at(m * E - k));
#pragma GCC unroll 4
      for (int i = 0; i < I; ++i) {
        const int j = m + i;
        if (j < 0 || j >= J) continue;
        for (int p = 0; p < P; ++p) {
          V& sum = a.sum[p + i % sets][j];
          sum = fma(tap[p][i], x, sum);
        }
      }
    }
  }

  const R* taps_;
  int tapsLen_;
};

// y[0 .. n - 1] from x[-(tapsLen - 1) .. n - 1]; y and x lie apart.
template <class T>
inline void convolveInTime(const T* taps, int tapsLen, const T* x, T* y, std::ptrdiff_t n) {
  if (n > 0) DirectFilter<T>(taps, tapsLen).run(x, y, 0, n);
}

}  // namespace ovks
