// SPDX-License-Identifier: MIT
// Windows and generators beside their peers. Those of windows from recurrences are the recurrence alone, a step after the
// other, and functions of one weight.
#include <ovks.h>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "support/report.hpp"

#ifdef OVKS_HAVE_LIQUID
#include <complex>

#include <liquid/liquid.h>
#endif
#ifdef OVKS_HAVE_GSL
#include <gsl/gsl_randist.h>
#include <gsl/gsl_rng.h>
#endif

namespace {

struct Vectors {
  explicit Vectors(int n)
      : a(static_cast<std::size_t>(n), 0.5f), b(a), c(a.size(), 0.5), d(c), s(a.size(), 1000), t(s) {}
  std::vector<float> a, b;
  std::vector<double> c, d;
  std::vector<int16_t> s, t;
};
using Shared = std::shared_ptr<Vectors>;

// c(k + 1) = m c(k) - c(k - 1), one step after the other.
void recurrence(int steps, double m) {
  double c = 0.5, before = 0.5 * m / 2;
  for (int k = 0; k < steps; k += 2) {
    before = m * c - before;
    c = m * before - c;
    asm volatile("" : "+x"(c), "+x"(before));
  }
}

void windowRows(int n) {
  const Shared v = std::make_shared<Vectors>(n);
  const float alpha = 2 * 8.6f / static_cast<float>(n - 1);
  const double m = 2 * std::cos(2 * M_PI / (n - 1));
  bench::add("WinHann_32f", n, "ovks", [=] { ovksWinHann_32f(v->a.data(), v->b.data(), n); });
  bench::add("WinHann_32f", n, "single steps", [=] { recurrence(n / 4, m); });
  bench::add("WinHann_32f", n, "cos", [=] {
    for (int i = 0; i < n; ++i) v->b[i] = v->a[i] * (0.5f - 0.5f * std::cos(2 * float(M_PI) * i / (n - 1)));
  });
  bench::add("WinHann_16s", n, "ovks", [=] { ovksWinHann_16s(v->s.data(), v->t.data(), n); });
  bench::add("WinHann_16s", n, "single steps", [=] { recurrence(n / 4, m); });
  bench::add("WinHann_64f", n, "ovks", [=] { ovksWinHann_64f(v->c.data(), v->d.data(), n); });
  bench::add("WinHann_64f", n, "single steps", [=] { recurrence(n / 4, m); });
  bench::add("WinBlackmanStd_32f", n, "ovks", [=] { ovksWinBlackmanStd_32f(v->a.data(), v->b.data(), n); });
  bench::add("WinBlackmanStd_32f", n, "single steps", [=] { recurrence(n, m); });
  bench::add("WinKaiser_32f", n, "ovks", [=] { ovksWinKaiser_32f(v->a.data(), v->b.data(), n, alpha); });
  bench::add("WinKaiser_32f", n, "cyl_bessel_i", [=] {
    for (int i = 0; i < n; ++i) {
      const double u = 2.0 * i / (n - 1) - 1;
      v->b[i] = v->a[i] * static_cast<float>(std::cyl_bessel_i(0, 8.6 * std::sqrt(1 - u * u)));
    }
  });
  bench::add("WinBartlett_32f", n, "ovks", [=] { ovksWinBartlett_32f(v->a.data(), v->b.data(), n); });
#ifdef OVKS_HAVE_LIQUID
  const auto length = static_cast<unsigned>(n);
  bench::add("WinHann_32f", n, "liquid", [=] {
    for (unsigned i = 0; i < length; ++i) v->b[i] = v->a[i] * liquid_hann(i, length);
  });
  bench::add("WinKaiser_32f", n, "liquid", [=] {
    for (unsigned i = 0; i < length; ++i) v->b[i] = v->a[i] * liquid_kaiser(i, length, 8.6f);
  });
  bench::add("WinBartlett_32f", n, "liquid", [=] {
    for (unsigned i = 0; i < length; ++i) v->b[i] = v->a[i] * liquid_triangular(i, length, length - 1);
  });
#endif
}

// A generator's state and the call on it.
template <class S, class T>
std::function<void()> generator(Status (*getSize)(int*), Status (*init)(S*, T, T, uint32_t),
                                Status (*fill)(T*, int, S*), T a, T b, int n) {
  int size;
  getSize(&size);
  const std::shared_ptr<char[]> state(new char[static_cast<std::size_t>(size)]);
  const std::shared_ptr<T[]> values(new T[static_cast<std::size_t>(n)]);
  S* const s = reinterpret_cast<S*>(state.get());
  init(s, a, b, 1);
  return [=, keep = state] { fill(values.get(), n, s); };
}

template <class T, class Distribution>
std::function<void()> standard(Distribution distribution, int n) {
  const std::shared_ptr<T[]> values(new T[static_cast<std::size_t>(n)]);
  return [=, engine = std::mt19937()]() mutable {
    for (int i = 0; i < n; ++i) values[i] = distribution(engine);
  };
}

void randomRows(int n) {
  bench::add("RandUniform_32f", n, "ovks",
             generator(ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f, 0.0f, 1.0f, n));
  bench::add("RandUniform_32f", n, "mt19937", standard<float>(std::uniform_real_distribution<float>(), n));
  bench::add("RandUniform_16s", n, "ovks",
             generator<RandUniformState_16s, int16_t>(ovksRandUniformGetSize_16s, ovksRandUniformInit_16s,
                                                      ovksRandUniform_16s, -1000, 1000, n));
  bench::add("RandUniform_64f", n, "ovks",
             generator(ovksRandUniformGetSize_64f, ovksRandUniformInit_64f, ovksRandUniform_64f, 0.0, 1.0, n));
  bench::add("RandGauss_32f", n, "ovks",
             generator(ovksRandGaussGetSize_32f, ovksRandGaussInit_32f, ovksRandGauss_32f, 0.0f, 1.0f, n));
  bench::add("RandGauss_32f", n, "mt19937", standard<float>(std::normal_distribution<float>(), n));
  bench::add("RandGauss_64f", n, "ovks",
             generator(ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f, 0.0, 1.0, n));
  bench::add("RandGauss_64f", n, "mt19937", standard<double>(std::normal_distribution<double>(), n));
#ifdef OVKS_HAVE_GSL
  gsl_rng* const rng = gsl_rng_alloc(gsl_rng_mt19937);
  const std::shared_ptr<double[]> x(new double[static_cast<std::size_t>(n)]);
  bench::add("RandUniform_64f", n, "gsl", [=] {
    for (int i = 0; i < n; ++i) x[i] = gsl_rng_uniform(rng);
  });
  bench::add("RandGauss_64f", n, "gsl", [=] {
    for (int i = 0; i < n; ++i) x[i] = gsl_ran_gaussian_ziggurat(rng, 1);
  });
#endif
}

}  // namespace

int main(int argc, char** argv) {
  for (const int n : {64, 4096, 1 << 20}) {
    windowRows(n);
    randomRows(n);
  }
  return bench::run(argc, argv);
}
