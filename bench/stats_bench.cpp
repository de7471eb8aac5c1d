// SPDX-License-Identifier: MIT
// Reductions beside their peers, in L1, L2 and memory. Peers that add in single precision stand beside both paths.
#include <ovks.h>

#include <memory>
#include <vector>

#include "stats_plain.hpp"
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

// One row: f(src1, src2, n) by each implementation.
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

// Where results go.
template <class T>
T sink;

template <class T>
void keep(T value) {
  *const_cast<volatile T*>(&sink<T>) = value;
}

using F = float;

void sumRows(int n) {
  Row<F> fast("Sum_32f:fast", n, 1), sum("Sum_32f", n, 1), deviation("StdDev_32f", n, 1);
  fast.by("ovks", [](const F* a, const F*, int k) { ovksSum_32f(a, k, &sink<F>, AlgHintFast); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::sum32f(a, k)); });
  sum.by("ovks", [](const F* a, const F*, int k) { ovksSum_32f(a, k, &sink<F>, AlgHintNone); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::sum32fWide(a, k)); });
  deviation.by("ovks", [](const F* a, const F*, int k) { ovksStdDev_32f(a, k, &sink<F>, AlgHintNone); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::deviation32f(a, k)); });
  Row<F>("StdDev_32f:fast", n, 1).by("ovks", [](const F* a, const F*, int k) {
    ovksStdDev_32f(a, k, &sink<F>, AlgHintFast);
  });
  Row<F>("SumLn_32f", n, 1)
      .by("ovks", [](const F* a, const F*, int k) { ovksSumLn_32f(a, k, &sink<F>); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::sumLn(a, k)); });
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
  Row<F> one("Norm_L1_32f", n, 1), two("Norm_L2_32f", n, 1), most("Norm_Inf_32f", n, 1);
  one.by("ovks", [](const F* a, const F*, int k) { ovksNorm_L1_32f(a, k, &sink<F>); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::norm1(a, k)); });
  two.by("ovks", [](const F* a, const F*, int k) { ovksNorm_L2_32f(a, k, &sink<F>); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::norm2(a, k)); });
  most.by("ovks", [](const F* a, const F*, int k) { ovksNorm_Inf_32f(a, k, &sink<F>); })
      .by("loop", [](const F* a, const F*, int k) { keep(plain::normInf(a, k)); });
#ifdef OVKS_HAVE_OPENBLAS
  one.by("openblas", [](const F* a, const F*, int k) { keep(cblas_sasum(k, a, 1)); });
  two.by("openblas", [](const F* a, const F*, int k) { keep(cblas_snrm2(k, a, 1)); });
#endif
}

void dotRows(int n) {
  using Z = Complex32f;
  Row<F> dot("DotProd_32f", n, 2);
  Row<Z> complexDot("DotProd_32fc", n, 2);
  dot.by("ovks", [](const F* a, const F* b, int k) { ovksDotProd_32f(a, b, k, &sink<F>); })
      .by("loop", [](const F* a, const F* b, int k) { keep(plain::dot32fWide(a, b, k)); });
  complexDot.by("ovks", [](const Z* a, const Z* b, int k) { ovksDotProd_32fc(a, b, k, &sink<Z>); });
#ifdef OVKS_HAVE_OPENBLAS
  dot.by("openblas", [](const F* a, const F* b, int k) { keep(cblas_dsdot(k, a, 1, b, 1)); });
#endif
#ifdef OVKS_HAVE_VOLK
  complexDot.by("volk", [](const Z* a, const Z* b, int k) {
    volk_32fc_x2_dot_prod_32fc(reinterpret_cast<lv_32fc_t*>(&sink<Z>), reinterpret_cast<const lv_32fc_t*>(a),
                               reinterpret_cast<const lv_32fc_t*>(b), static_cast<unsigned>(k));
  });
#endif
}

void shortRows(int n) {
  using S = int16_t;
  Row<S>("Sum_16s32s_Sfs", n, 1)
      .by("ovks", [](const S* a, const S*, int k) { ovksSum_16s32s_Sfs(a, k, &sink<int32_t>, 0); })
      .by("loop", [](const S* a, const S*, int k) { keep(plain::sum16s(a, k)); });
  Row<S>("DotProd_16s64s", n, 2)
      .by("ovks", [](const S* a, const S* b, int k) { ovksDotProd_16s64s(a, b, k, &sink<int64_t>); })
      .by("loop", [](const S* a, const S* b, int k) { keep(plain::dot16s(a, b, k)); });
}

}  // namespace

int main(int argc, char** argv) {
  for (const int n : {256, 2048, 65536, 1 << 22}) {
    sumRows(n);
    normRows(n);
    dotRows(n);
    shortRows(n);
  }
  return bench::run(argc, argv);
}
