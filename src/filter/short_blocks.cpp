// SPDX-License-Identifier: MIT
#include "filter/short_blocks.hpp"

#include "ovks/types.h"
#include "transform/small_transform.hpp"

namespace ovks {
namespace {

using namespace fft;

constexpr int kLeastOrder = 6;

// Points in registers.
template <class PointOrder, class V>
struct Held {
  using Order = PointOrder;
  const Complex<V>* x;

  template <class>
  OVKS_INLINE Complex<V> get(int i) const {
    return x[i / lanes<V>];
  }
};

template <class From, class To>
struct Reordered {
  template <class V>
  static constexpr int lane(int i) {
    return From::template place<V>(To::template lane<V>(i));
  }
};

// The whole spectrum of n points from the half that the Perm layout holds; the other is its mirrored conjugate.
template <class T, int n>
struct WholeSpectrum {
  const T* p;

  template <class V>
  OVKS_INLINE Complex<V> get(int i) const {
    constexpr int L = lanes<V>, half = n / 2;
    if (i < half) {
      const Complex<V> x = Interleaved<const T>{p}.template get<V, InOrder>(i);
      return i == 0 ? real(x, p[0]) : x;
    }
    if (i == half) return real(mirrored<V, 2 * L>(p + n - 2 * L), p[1]);
    return mirrored<V, 2 * L - 2>(p + 2 * (n - i - L + 1));
  }

 private:
  template <int first, int part>
  struct Descending {
    template <class V>
    static constexpr int lane(int i) {
      return (first - 2 * i + part) % (2 * lanes<V>);
    }
  };
  // Pairs from `first` down.
  template <class V, int first>
  static OVKS_INLINE Complex<V> mirrored(const T* pairs) {
    const V a = load<V>(pairs), b = load<V>(pairs + lanes<V>);
    return {shuffle2<Descending<first, 0>>(a, b), -shuffle2<Descending<first, 1>>(a, b)};
  }
  // With a real number as the first point.
  template <class V>
  static OVKS_INLINE Complex<V> real(Complex<V> x, T first) {
    x.re[0] = first;
    x.im[0] = 0;
    return x;
  }
};

template <class V>
OVKS_INLINE Complex<V> operator*(Complex<V> a, Complex<V> b) {
  return turn<Direction::forward>(a, b.re, b.im);
}

// Reals from number `first` of a block on, in an array that begins with that one.
template <class T>
struct From {
  T* p;
  int first;

  // Reals i, i + 1, ...
  template <class V>
  OVKS_INLINE void put(int i, V v) const {
    if (i >= first) return store(p + (i - first), v);
    if (i + lanes<V> <= first) return;
    const uint32_t rest = ~uint32_t{0} << (first - i);
    T* const at = p - (first - i);
    if constexpr (sizeof(T) == 4) _mm512_mask_storeu_epi32(at, static_cast<__mmask16>(rest), bits<__m512i>(v));
    else _mm512_mask_storeu_epi64(at, static_cast<__mmask8>(rest), bits<__m512i>(v));
  }
};

// Where a block's results go.
template <class T>
struct InterleavedFrom {
  From<T> pairs;

  template <class PointOrder, class V>
  OVKS_INLINE void put(int i, Complex<V> x) const {
    pairs.put(2 * i, shuffle2<fft::detail::PointsHalf<PointOrder, 0>>(x.re, x.im));
    pairs.put(2 * i + lanes<V>, shuffle2<fft::detail::PointsHalf<PointOrder, 1>>(x.re, x.im));
  }
};
template <class T>
struct SplitFrom {
  From<T> re, im;

  template <class PointOrder, class V>
  OVKS_INLINE void put(int i, Complex<V> x) const {
    re.put(i, shuffle2<fft::detail::Placed<PointOrder>>(x.re, x.re));
    im.put(i, shuffle2<fft::detail::Placed<PointOrder>>(x.im, x.im));
  }
};

// z = the spectrum of src times that of the filter, in whole vectors.
template <int order, class Points, class Spectrum, class V>
OVKS_INLINE void transformAndMultiply(Points src, Spectrum spectrum, Complex<V>* z) {
  using Order = typename Points::Order;
  transformRows<Direction::forward, order, lanes<V>, Lane<V>>(
      src, [&]<class From = Order>(auto i, Complex<V> x) __attribute__((always_inline)) {
        const Complex<V> inOrder = {shuffle2<Reordered<From, Order>>(x.re, x.re),
                                    shuffle2<Reordered<From, Order>>(x.im, x.im)};
        z[i / lanes<V>] = inOrder * spectrum.template get<V>(i);
      });
}

template <int order, class Order, class V, class Results>
OVKS_INLINE void transformBack(const Complex<V>* z, Results dst) {
  const V factor = splat<V>(Lane<V>(1) / (1 << order));
  transformRows<Direction::inverse, order, lanes<V>, Lane<V>>(
      Held<Order, V>{z}, [&]<class From = Order>(auto i, Complex<V> x) __attribute__((always_inline)) {
        dst.template put<From>(i, Complex<V>{x.re * factor, x.im * factor});
      });
}

// Two blocks of reals are the real and the imaginary part of one of complex points. Of the shortest complex blocks two
// are worked on, so that one's latencies pass with the other; longer ones fill the registers.
template <class T, int order>
constexpr int blocksAtOnce() {
  return !isComplex<T> || (1 << order) <= 4 * lanes<Vec<Real<T>>> ? 2 : 1;
}

template <class T, int order>
void filterBlocks(const T* const* x, const T* spectrum, T* const* y, int first) {
  using R = Real<T>;
  using V = Vec<R>;
  constexpr int n = 1 << order, rows = n / lanes<V>;
  if constexpr (isComplex<T>) {
    constexpr int count = blocksAtOnce<T, order>();
    const auto points = [](const T* p) { return Interleaved<R>{const_cast<R*>(reals(p))}; };
    Complex<V> z[count][rows];
#pragma GCC unroll 2
    for (int b = 0; b < count; ++b) transformAndMultiply<order>(points(x[b]), points(spectrum), z[b]);
#pragma GCC unroll 2
    for (int b = 0; b < count; ++b) transformBack<order, ByChunks>(z[b], InterleavedFrom<R>{{reals(y[b]), 2 * first}});
  } else {
    Complex<V> z[rows];
    transformAndMultiply<order>(Split<T>{const_cast<T*>(x[0]), const_cast<T*>(x[1])}, WholeSpectrum<T, n>{spectrum}, z);
    transformBack<order, InOrder>(z, SplitFrom<T>{{y[0], first}, {y[1], first}});
  }
}

}  // namespace

template <class T>
ShortBlocks<T> shortBlocks(int order) {
  constexpr int kMost = kMaxShortOrder<Real<T>>;
  static_assert(1 << kMost <= kMostShortPoints);
  if constexpr (kAvx512) {
    return [&]<int... i>(std::integer_sequence<int, i...>)->ShortBlocks<T> {
      constexpr ShortBlocks<T> kOfOrder[] = {{blocksAtOnce<T, kLeastOrder + i>(), filterBlocks<T, kLeastOrder + i>}...};
      return order < kLeastOrder || order > kMost ? ShortBlocks<T>{1, nullptr} : kOfOrder[order - kLeastOrder];
    }
    (std::make_integer_sequence<int, kMost - kLeastOrder + 1>{});
  }
  return {1, nullptr};
}

template ShortBlocks<float> shortBlocks(int);
template ShortBlocks<double> shortBlocks(int);
template ShortBlocks<Complex32f> shortBlocks(int);
template ShortBlocks<Complex64f> shortBlocks(int);

}  // namespace ovks
