// SPDX-License-Identifier: MIT
// With h = N/2, z[m] = x[2m] + i x[2m + 1], T = -i exp(-2 pi i m / N), Z and W the transforms of the sequences' pairs
// and R that of the results':
//   R[m] = Z[m] W[m] + c d,   conj R[h - m] = conj(Z[h - m] W[h - m]) + c d,
//   d = (Z[m] - conj Z[h - m]) (W[m] - conj W[h - m]),   c = (T^2 - 1) / 4 = i T Im(T) / 2,
// which is the split into the spectra of the reals, their product and the way back in one.
#include "transform/real_convolution.hpp"

#include "transform/convolution_tables.hpp"
#include "transform/in_cache.hpp"

namespace ovks::fft {
namespace {

// n reals as points. From the vector on that the end cuts, there are two vectors of points in `room`.
template <class T>
struct Bounds {
  T *p, *room;
  std::ptrdiff_t edge;
};
template <class T>
struct Ragged {
  using Order = ByChunks;
  const Bounds<T>* bounds;
  std::ptrdiff_t at;

  template <class V>
  OVKS_INLINE Complex<V> get(std::ptrdiff_t i) const {
    return place<V>(at + 2 * i).template get<V>(0);
  }
  template <class V>
  OVKS_INLINE void put(std::ptrdiff_t i, Complex<V> x) const {
    place<V>(at + 2 * i).put(0, x);
  }
  OVKS_INLINE Ragged from(std::ptrdiff_t i) const { return {bounds, at + 2 * i}; }
  OVKS_INLINE friend void hide(Ragged& r) { asm("" : "+r"(r.at)); }

 private:
  template <class V>
  OVKS_INLINE Interleaved<T> place(std::ptrdiff_t i) const {
    if (i < bounds->edge) return {bounds->p + i};
    return {i == bounds->edge ? bounds->room : bounds->room + 2 * lanes<V>};
  }
};

template <class V>
OVKS_INLINE Complex<V> product(Complex<V> a, Complex<V> b) {
  return {fma(a.re, b.re, -(a.im * b.im)), a.re * b.im + a.im * b.re};
}

// The results' spectrum in place of one sequence's.
template <class V, class Pairs>
[[gnu::noinline]] void multiplyPairs(Lane<V>* z, const Lane<V>* w, std::ptrdiff_t h, Pairs pairs) {
  using T = Lane<V>;
  const Interleaved<T> out = {z};
  const Interleaved<const T> other = {w};
  const T re = z[0] * w[0] + z[1] * w[1], im = z[0] * w[1] + z[1] * w[0];
  for (std::ptrdiff_t i = 0; i < h / 2; i += lanes<V>) {
    const std::ptrdiff_t m = 1 + i, mirrored = h - i - lanes<V>;
    const Complex<V> a = out.template get<V>(m), b = reversed(out.template get<V>(mirrored));
    const Complex<V> c = other.template get<V>(m), d = reversed(other.template get<V>(mirrored));
    const Complex<V> t = pairs.at(i);
    const Complex<V> odd = product(Complex<V>{a.re - b.re, a.im + b.im}, Complex<V>{c.re - d.re, c.im + d.im});
    const V half = t.im * splat<V>(T(0.5));
    const Complex<V> turned = turn<Direction::forward>(Complex<V>{-(odd.im * half), odd.re * half}, t.re, t.im);
    out.put(m, product(a, c) + turned);
    const Complex<V> back = product(b, d);
    out.put(mirrored, reversed(Complex<V>{back.re + turned.re, back.im - turned.im}));
  }
  z[0] = re;
  z[1] = im;
}

// The elements of a sequence, up to its last whole vector of points; the others in room, zeros behind them.
template <class T>
Bounds<T> padded(Sequence<T> s, T* room) {
  constexpr std::ptrdiff_t kVector = 2 * kLanes<T>;
  const std::ptrdiff_t edge = s.length & -kVector, rest = s.length - edge;
  for (std::ptrdiff_t i = 0; i < 2 * kVector; ++i) room[i] = i < rest ? s.elements[edge + i] : T(0);
  return {const_cast<T*>(s.elements), room, edge};
}

template <class Tables, class T>
void convolve(int order, const Tables& tables, Sequence<T> a, Sequence<T> b, T* dst, int64_t results,
              const ConvolutionMemory<T>& memory) {
  constexpr std::ptrdiff_t kVector = 2 * kLanes<T>;
  alignas(64) T room[2 * kVector];
  T *const z = memory.spectra, *const w = z + (std::ptrdiff_t{1} << order);
  const Interleaved<T> spectrumA = {z}, spectrumB = {w};
  const auto forward = [&](Sequence<T> x, Interleaved<T> spectrum) {
    const Bounds<T> bounds = padded(x, room);
    const Job<T> job = {order - 1, nullptr, tables.bitReversal, memory.work, false, T(1)};
    inCache<Direction::forward, Vec<T>>(job, tables.columns, tables.tiles, Ragged<T>{&bounds, 0}, spectrum);
  };
  forward(a, spectrumA);
  forward(b, spectrumB);
  multiplyPairs<Vec<T>>(z, w, std::ptrdiff_t{1} << (order - 1), tables.pairs);
  const std::ptrdiff_t edge = results & -kVector;
  const T factor = T(2) / static_cast<T>(std::ptrdiff_t{1} << order);
  const Bounds<T> bounds = {dst, room, edge};
  const Job<T> job = {order - 1, nullptr, tables.bitReversal, memory.work, true, factor};
  inCache<Direction::inverse, Vec<T>>(job, tables.columns, tables.tiles, spectrumA, Ragged<T>{&bounds, 0});
  for (std::ptrdiff_t i = edge; i < results; ++i) dst[i] = room[i - edge];
}

}  // namespace

template <class T>
void convolveReals(int order, Sequence<T> a, Sequence<T> b, T* dst, int64_t results,
                   const ConvolutionMemory<T>& memory) {
  const auto with = [&](const auto& tables) { convolve(order, tables, a, b, dst, results, memory); };
  const TableArea area(memory.tables);
  if (order > kMaxConstantSplitOrder) return with(makeProductTables<T>(area, order));
  const T* const twiddles = constantTwiddles<T>(order - 1);
  if constexpr (kMinProductsOrder<T> < kMaxConstantSplitOrder)
    if (order - 1 >= kMinProductsOrder<T>)
      return with(constantTables(area, order, twiddles, productsIn(twiddles, order - 1)));
  with(constantTables(area, order, twiddles, TileTwiddles<Vec<T>>{twiddles}));
}

template void convolveReals(int, Sequence<float>, Sequence<float>, float*, int64_t, const ConvolutionMemory<float>&);
template void convolveReals(int, Sequence<double>, Sequence<double>, double*, int64_t,
                            const ConvolutionMemory<double>&);

}  // namespace ovks::fft
