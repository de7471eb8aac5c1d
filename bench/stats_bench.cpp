// SPDX-License-Identifier: MIT
// Reductions beside their peers, in L1, L2 and memory. Peers add in double precision where ours do. Those that add in
// single precision stand beside the fast paths, and where there are none, in rows of their own, named single.
#include <ovks.h>

#include <memory>
#include <vector>

#include "stats_peers.hpp"
#include "support/limits.hpp"
#include "support/report.hpp"

#ifdef OVKS_HAVE_VOLK
#include <volk/volk.h>
#endif
#ifdef OVKS_HAVE_OPENBLAS
#include <cblas.h>
#endif

namespace {

struct Free {
  void operator()(void* p) const { ovksFree(p); }
};

// Two sources whose distance is no power of two, positive floats or any integers.
struct Sources {
  explicit Sources(int bytes)
      : memory(ovksMalloc_8u(2 * bytes + kApart)), b(memory.get() + bytes / 64 * 64 + kApart / 2) {
    for (int i = 0; i < bytes; ++i) {
      memory[i] = static_cast<uint8_t>(i % 4 == 3 ? 0x3f : i * 37 + 11);
      b[i] = static_cast<uint8_t>(i % 4 == 3 ? 0x3f : i * 73 + 5);
    }
  }
  static constexpr int kApart = 2 * 5184;
  std::unique_ptr<uint8_t[], Free> memory;
  uint8_t* b;
};

// Where results go.
template <class T>
T sink;

template <class T>
void keep(T value) {
  *const_cast<volatile T*>(&sink<T>) = value;
}
void keep(Complex32f value) {
  keep(value.re);
  keep(value.im);
}

constexpr const StatsPeer* kPeers[] = {
    &kLoop,
#ifdef OVKS_HAVE_EIGEN
    &kEigen,
#endif
};

// One row: f(src1, src2, n) by each implementation. Ours are named, with what follows the length and the result.
template <class S>
class Row {
 public:
  Row(const char* name, int n, int sources)
      : name_(name), n_(n), memory_(std::make_shared<Sources>(n * int{sizeof(S)})) {
    by("limit", [sources](const S* a, const S* b, int k) {
      const std::size_t bytes = static_cast<std::size_t>(k) * sizeof(S);
      return sources == 1 ? bench::limitRead(a, bytes) : bench::limitRead(a, b, bytes);
    });
  }

  template <class D, class... M>
  Row(const char* name, int n, Status (*ours)(const S*, int, D*, M...), std::type_identity_t<M>... mode)
      : Row(name, n, 1) {
    by("ovks", [=](const S* a, const S*, int k) { ours(a, k, &sink<D>, mode...); });
  }
  template <class D, class... M>
  Row(const char* name, int n, Status (*ours)(const S*, const S*, int, D*, M...), std::type_identity_t<M>... mode)
      : Row(name, n, 2) {
    by("ovks", [=](const S* a, const S* b, int k) { ours(a, b, k, &sink<D>, mode...); });
  }

  template <class R>
  Row& peers(R (*StatsPeer::*f)(const S*, int)) {
    for (const StatsPeer* peer : kPeers) by(peer->name, [g = peer->*f](const S* a, const S*, int k) { keep(g(a, k)); });
    return *this;
  }
  template <class R>
  Row& peers(R (*StatsPeer::*f)(const S*, const S*, int)) {
    for (const StatsPeer* peer : kPeers) {
      by(peer->name, [g = peer->*f](const S* a, const S* b, int k) { keep(g(a, b, k)); });
    }
    return *this;
  }

  template <class F>
  Row& by(const char* who, F f) {
    bench::add(name_, n_, who, [m = memory_, f, n = n_] {
      f(reinterpret_cast<const S*>(m->memory.get()), reinterpret_cast<const S*>(m->b), n);
    });
    return *this;
  }

 private:
  const char* name_;
  int n_;
  std::shared_ptr<Sources> memory_;
};

using F = float;
using Z = Complex32f;
using S = int16_t;

void sumRows(int n) {
  Row<F> fast("Sum_32f:fast", n, ovksSum_32f, AlgHintFast), deviation("StdDev_32f", n, ovksStdDev_32f, AlgHintNone);
  fast.peers(&StatsPeer::sum);
  Row<F>("Sum_32f", n, ovksSum_32f, AlgHintNone).peers(&StatsPeer::wideSum);
  deviation.peers(&StatsPeer::deviation);
  Row<F>("StdDev_32f:fast", n, ovksStdDev_32f, AlgHintFast);
  Row<F>("SumLn_32f", n, ovksSumLn_32f).peers(&StatsPeer::logarithms);
#ifdef OVKS_HAVE_VOLK
  fast.by("volk",
          [](const F* a, const F*, int k) { volk_32f_accumulator_s32f(&sink<F>, a, static_cast<unsigned>(k)); });
  deviation.by("volk", [](const F* a, const F*, int k) {
    float mean;
    volk_32f_stddev_and_mean_32f_x2(&sink<F>, &mean, a, static_cast<unsigned>(k));
  });
#endif
}

void normRows(int n) {
  Row<F>("Norm_L1_32f", n, ovksNorm_L1_32f).peers(&StatsPeer::wideNorm1);
  Row<F>("Norm_L2_32f", n, ovksNorm_L2_32f).peers(&StatsPeer::wideNorm2);
  Row<F> one("Norm_L1_32f:single", n, ovksNorm_L1_32f), two("Norm_L2_32f:single", n, ovksNorm_L2_32f);
  one.peers(&StatsPeer::norm1);
  two.peers(&StatsPeer::norm2);
  Row<F>("Norm_Inf_32f", n, ovksNorm_Inf_32f).peers(&StatsPeer::normInf);
  Row<Z>("Norm_L1_32fc64f", n, ovksNorm_L1_32fc64f).peers(&StatsPeer::moduli);
  Row<Z>("Norm_Inf_32fc32f", n, ovksNorm_Inf_32fc32f).peers(&StatsPeer::largestModulus);
  Row<F>("NormDiff_L1_32f", n, ovksNormDiff_L1_32f).peers(&StatsPeer::wideDifference1);
  Row<F>("NormDiff_L2_32f", n, ovksNormDiff_L2_32f).peers(&StatsPeer::wideDifference2);
  Row<F>("NormDiff_L1_32f:single", n, ovksNormDiff_L1_32f).peers(&StatsPeer::difference1);
  Row<F>("NormDiff_L2_32f:single", n, ovksNormDiff_L2_32f).peers(&StatsPeer::difference2);
  Row<F>("NormDiff_Inf_32f", n, ovksNormDiff_Inf_32f).peers(&StatsPeer::differenceInf);
#ifdef OVKS_HAVE_OPENBLAS
  one.by("openblas", [](const F* a, const F*, int k) { keep(cblas_sasum(k, a, 1)); });
  two.by("openblas", [](const F* a, const F*, int k) { keep(cblas_snrm2(k, a, 1)); });
#endif
}

void dotRows(int n) {
  Row<F> dot("DotProd_32f", n, ovksDotProd_32f);
  Row<Z> complexDot("DotProd_32fc", n, ovksDotProd_32fc);
  dot.peers(&StatsPeer::wideDot);
  complexDot.peers(&StatsPeer::complexDot);
#ifdef OVKS_HAVE_OPENBLAS
  dot.by("openblas", [](const F* a, const F* b, int k) { keep(cblas_dsdot(k, a, 1, b, 1)); });
  complexDot.by("openblas", [](const Z* a, const Z* b, int k) { cblas_cdotu_sub(k, a, 1, b, 1, &sink<Z>); });
#endif
#ifdef OVKS_HAVE_VOLK
  complexDot.by("volk", [](const Z* a, const Z* b, int k) {
    volk_32fc_x2_dot_prod_32fc(reinterpret_cast<lv_32fc_t*>(&sink<Z>), reinterpret_cast<const lv_32fc_t*>(a),
                               reinterpret_cast<const lv_32fc_t*>(b), static_cast<unsigned>(k));
  });
#endif
}

void shortRows(int n) {
  Row<S>("Sum_16s32s_Sfs", n, ovksSum_16s32s_Sfs, 0).peers(&StatsPeer::shortSum);
  Row<S>("Norm_L1_16s64s_Sfs", n, ovksNorm_L1_16s64s_Sfs, 0).peers(&StatsPeer::shortNorm1);
  Row<S>("Norm_L2Sqr_16s64s_Sfs", n, ovksNorm_L2Sqr_16s64s_Sfs, 0).peers(&StatsPeer::shortNorm2Sqr);
  Row<S>("NormDiff_L1_16s64s_Sfs", n, ovksNormDiff_L1_16s64s_Sfs, 0).peers(&StatsPeer::shortDifference1);
  Row<S>("DotProd_16s64s", n, ovksDotProd_16s64s).peers(&StatsPeer::shortDot);
  Row<Complex16s> complexDot("DotProd_16sc64sc", n, ovksDotProd_16sc64sc);
#ifdef OVKS_HAVE_VOLK
  complexDot.by("volk", [](const Complex16s* a, const Complex16s* b, int k) {  // in 16 bits, saturated
    volk_16ic_x2_dot_prod_16ic(reinterpret_cast<lv_16sc_t*>(&sink<Complex16s>), reinterpret_cast<const lv_16sc_t*>(a),
                               reinterpret_cast<const lv_16sc_t*>(b), static_cast<unsigned>(k));
  });
#endif
}

}  // namespace

int main(int argc, char** argv) {
  for (const int n : {256, 4096, 65536, 1 << 22}) {
    sumRows(n);
    normRows(n);
    dotRows(n);
    shortRows(n);
  }
  return bench::run(argc, argv);
}
