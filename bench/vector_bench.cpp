// SPDX-License-Identifier: MIT
// Element-wise operations beside their peers, in L1, L2 and memory.
#include <ovks.h>

#include <initializer_list>
#include <memory>

#include "support/limits.hpp"
#include "support/report.hpp"
#include "vector_plain.hpp"

#ifdef OVKS_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

struct Free {
  void operator()(void* p) const { ovksFree(p); }
};

// Two sources and a destination of so many bytes, with something other than zeros in them.
struct Buffers {
  explicit Buffers(int bytes) : a(ovksMalloc_8u(bytes)), b(ovksMalloc_8u(bytes)), d(ovksMalloc_8u(bytes)) {
    for (int i = 0; i < bytes; ++i) {
      // Exponents of floats stay near 1.
      a[i] = static_cast<uint8_t>(i % 4 == 3 ? 0x3f : i * 37 + 11);
      b[i] = static_cast<uint8_t>(i % 4 == 3 ? 0x3f : i * 73 + 5);
      d[i] = 1;
    }
  }
  template <class T>
  const T* src1() const {
    return reinterpret_cast<const T*>(a.get());
  }
  template <class T>
  const T* src2() const {
    return reinterpret_cast<const T*>(b.get());
  }
  template <class T>
  T* dst() const {
    return reinterpret_cast<T*>(d.get());
  }

  std::unique_ptr<uint8_t[], Free> a, b, d;
};

// One row: f(src1, src2, dst) by each implementation.
template <class S, class D = S>
class Row {
 public:
  Row(const char* name, int n) : name_(name), n_(n), memory_(std::make_shared<Buffers>(n * int{sizeof(S)})) {}

  template <class F>
  Row& by(const char* who, F f) {
    bench::add(name_, n_, who,
               [m = memory_, f, n = n_] { f(m->template src1<S>(), m->template src2<S>(), m->template dst<D>(), n); });
    return *this;
  }

  // What the traffic alone takes; past the caches as the library would.
  Row& limit(int sources) {
    constexpr int kLarge = 1 << 24;
    const bool large = n_ * sizeof(D) >= kLarge;
    return by("limit", [sources, large](const S* a, const S* b, D* d, int n) {
      const std::size_t bytes = n * sizeof(D);
      if (sources == 1) return large ? bench::limitCopyStreaming(a, d, bytes) : bench::limitCopy(a, d, bytes);
      large ? bench::limitCombineStreaming(a, b, d, bytes) : bench::limitCombine(a, b, d, bytes);
    });
  }

 private:
  const char* name_;
  int n_;
  std::shared_ptr<Buffers> memory_;
};

void floatRows(int n) {
  using F = float;
  Row<F> add("Add_32f", n), mul("Mul_32f", n), mulC("MulC_32f", n), copy("Copy_32f", n), div("Div_32f", n);
  add.by("ovks", [](const F* a, const F* b, F* d, int k) { ovksAdd_32f(a, b, d, k); })
      .by("loop", plain::add32f)
      .limit(2);
  mul.by("ovks", [](const F* a, const F* b, F* d, int k) { ovksMul_32f(a, b, d, k); })
      .by("loop", plain::mul32f)
      .limit(2);
  mulC.by("ovks", [](const F* a, const F*, F* d, int k) { ovksMulC_32f(a, 1.5f, d, k); })
      .by("loop", [](const F* a, const F*, F* d, int k) { plain::mulC32f(a, 1.5f, d, k); })
      .limit(1);
  copy.by("ovks", [](const F* a, const F*, F* d, int k) { ovksCopy_32f(a, d, k); })
      .by("memcpy", [](const F* a, const F*, F* d, int k) { __builtin_memcpy(d, a, k * sizeof(F)); })
      .limit(1);
  div.by("ovks", [](const F* a, const F* b, F* d, int k) { ovksDiv_32f(a, b, d, k); })
      .by("loop", plain::div32f)
      .limit(2);
#ifdef OVKS_HAVE_VOLK
  add.by("volk", [](const F* a, const F* b, F* d, int k) { volk_32f_x2_add_32f(d, a, b, k); });
  mul.by("volk", [](const F* a, const F* b, F* d, int k) { volk_32f_x2_multiply_32f(d, a, b, k); });
  mulC.by("volk", [](const F* a, const F*, F* d, int k) { volk_32f_s32f_multiply_32f(d, a, 1.5f, k); });
  div.by("volk", [](const F* a, const F* b, F* d, int k) { volk_32f_x2_divide_32f(d, b, a, k); });
#endif
}

void complexRows(int n) {
  using Z = Complex32f;
  Row<Z> mul("Mul_32fc", n);
  mul.by("ovks", [](const Z* a, const Z* b, Z* d, int k) { ovksMul_32fc(a, b, d, k); })
      .by("loop", [](const Z* a, const Z* b, Z* d, int k) { plain::mul32fc(&a->re, &b->re, &d->re, k); })
      .limit(2);
#ifdef OVKS_HAVE_VOLK
  mul.by("volk", [](const Z* a, const Z* b, Z* d, int k) {
    volk_32fc_x2_multiply_32fc(reinterpret_cast<lv_32fc_t*>(d), reinterpret_cast<const lv_32fc_t*>(a),
                               reinterpret_cast<const lv_32fc_t*>(b), k);
  });
#endif
}

void shortRows(int n) {
  using S = int16_t;
  Row<S>("Add_16s", n)
      .by("ovks", [](const S* a, const S* b, S* d, int k) { ovksAdd_16s(a, b, d, k); })
      .by("loop", plain::add16s)
      .limit(2);
  for (const int s : {1, 4}) {
    Row<S>(s == 1 ? "Add_16s_Sfs:1" : "Add_16s_Sfs:4", n)
        .by("ovks", [s](const S* a, const S* b, S* d, int k) { ovksAdd_16s_Sfs(a, b, d, k, s); })
        .by("loop", [s](const S* a, const S* b, S* d, int k) { plain::add16sScaled(a, b, d, k, s); })
        .limit(2);
  }
  for (const int s : {4, 15}) {
    Row<S>(s == 4 ? "Mul_16s_Sfs:4" : "Mul_16s_Sfs:15", n)
        .by("ovks", [s](const S* a, const S* b, S* d, int k) { ovksMul_16s_Sfs(a, b, d, k, s); })
        .by("loop", [s](const S* a, const S* b, S* d, int k) { plain::mul16sScaled(a, b, d, k, s); })
        .limit(2);
  }
}

void byteRows(int n) {
  using B = uint8_t;
  Row<B>("Add_8u_Sfs:0", n)
      .by("ovks", [](const B* a, const B* b, B* d, int k) { ovksAdd_8u_Sfs(a, b, d, k, 0); })
      .by("loop", plain::add8u)
      .limit(2);
  Row<B>("Mul_8u_Sfs:8", n)
      .by("ovks", [](const B* a, const B* b, B* d, int k) { ovksMul_8u_Sfs(a, b, d, k, 8); })
      .by("loop", [](const B* a, const B* b, B* d, int k) { plain::mul8uScaled(a, b, d, k, 8); })
      .limit(2);
}

void conversionRows(int n) {
  Row<float, int16_t> row("Convert_32f16s_Sfs:0", n);
  row.by("ovks", [](const float* a, const float*, int16_t* d, int k) { ovksConvert_32f16s_Sfs(a, d, k, RoundNear, 0); })
      .by("loop", [](const float* a, const float*, int16_t* d, int k) { plain::convert32f16s(a, d, k); });
#ifdef OVKS_HAVE_VOLK
  row.by("volk", [](const float* a, const float*, int16_t* d, int k) { volk_32f_s32f_convert_16i(d, a, 1.0f, k); });
#endif
}

}  // namespace

int main(int argc, char** argv) {
  // In L1, in L2, and 64 MB in memory.
  for (const int n : {16, 256, 2048, 32768, 1 << 24}) {
    floatRows(n);
    complexRows(n < 1 << 24 ? n : n / 2);
    shortRows(n);
    byteRows(n);
    conversionRows(n);
  }
  return bench::run(argc, argv);
}
