// SPDX-License-Identifier: MIT
// Transforms of every size class beside FFTW's, planned by measurement.
#include <ovks.h>

#include <memory>
#include <string>

#include "support/report.hpp"

#ifdef OVKS_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

struct Free {
  void operator()(void* p) const { ovksFree(p); }
};
using Bytes = std::shared_ptr<uint8_t>;

Bytes bytes(int n) { return Bytes(n > 0 ? ovksMalloc_8u(n) : nullptr, Free{}); }

// A specification with its areas.
template <class Object>
struct Plan {
  template <class GetSize, class Init>
  Plan(GetSize getSize, Init init, int order) {
    int sizes[3];
    getSize(order, FFTNoDiv, AlgHintNone, &sizes[0], &sizes[1], &sizes[2]);
    area = bytes(sizes[0]);
    work = bytes(sizes[2]);
    const Bytes room = bytes(sizes[1]);
    init(&spec, order, FFTNoDiv, AlgHintNone, area.get(), room.get());
  }

  Bytes area, work;
  Object* spec = nullptr;
};

// n elements, small and not all the same.
template <class T>
std::shared_ptr<T> vector(int n) {
  const Bytes memory = bytes(n * int{sizeof(T)});
  T* p = reinterpret_cast<T*>(memory.get());
  for (int i = 0; i < n; ++i) p[i] = static_cast<T>(i % 17 - 8) / 16;
  return {memory, p};
}

// Imaginary parts in arrays of their own.
template <class T>
struct Imaginary {
  explicit Imaginary(int n) : src(vector<T>(n)), dst(vector<T>(n)) {}
  std::shared_ptr<T> src, dst;
};

template <class T, class Object, class GetSize, class Init, class Run>
void ours(const std::string& name, int order, int reals, GetSize getSize, Init init, Run transform) {
  const Plan<Object> plan(getSize, init, order);
  const auto src = vector<T>(reals), dst = vector<T>(reals);
  bench::add(name, 1 << order, "ovks", [=] { transform(src.get(), dst.get(), plan.spec, plan.work.get()); });
}

#ifdef OVKS_HAVE_FFTW
unsigned patience(int order) { return order <= 10 ? FFTW_PATIENT : FFTW_MEASURE; }

template <class T, class MakePlan, class Execute>
void theirs(const std::string& name, int order, int reals, MakePlan makePlan, Execute execute) {
  const auto src = vector<T>(reals), dst = vector<T>(reals);
  const auto plan = makePlan(src.get(), dst.get());
  bench::add(name, 1 << order, "fftw", [=] { (void)src, (void)dst, (void)makePlan, execute(plan); });
}
#endif

void complexRows(int order) {
  const int n = 1 << order;
  const std::string single = "FFTFwd_CToC_32fc", wide = "FFTFwd_CToC_64fc";
  ours<float, FFTSpec_C_32fc>(single, order, 2 * n, ovksFFTGetSize_C_32fc, ovksFFTInit_C_32fc,
                              [](float* s, float* d, const FFTSpec_C_32fc* spec, uint8_t* work) {
                                ovksFFTFwd_CToC_32fc(reinterpret_cast<Complex32f*>(s), reinterpret_cast<Complex32f*>(d),
                                                     spec, work);
                              });
  ours<double, FFTSpec_C_64fc>(wide, order, 2 * n, ovksFFTGetSize_C_64fc, ovksFFTInit_C_64fc,
                               [](double* s, double* d, const FFTSpec_C_64fc* spec, uint8_t* work) {
                                 ovksFFTFwd_CToC_64fc(reinterpret_cast<Complex64f*>(s),
                                                      reinterpret_cast<Complex64f*>(d), spec, work);
                               });
  const Imaginary<float> singleIm(n);
  const Imaginary<double> wideIm(n);
  const std::string singleSplit = "FFTFwd_CToC_32f", wideSplit = "FFTFwd_CToC_64f";
  ours<float, FFTSpec_C_32f>(singleSplit, order, n, ovksFFTGetSize_C_32f, ovksFFTInit_C_32f,
                             [=](float* s, float* d, const FFTSpec_C_32f* spec, uint8_t* work) {
                               ovksFFTFwd_CToC_32f(s, singleIm.src.get(), d, singleIm.dst.get(), spec, work);
                             });
  ours<double, FFTSpec_C_64f>(wideSplit, order, n, ovksFFTGetSize_C_64f, ovksFFTInit_C_64f,
                              [=](double* s, double* d, const FFTSpec_C_64f* spec, uint8_t* work) {
                                ovksFFTFwd_CToC_64f(s, wideIm.src.get(), d, wideIm.dst.get(), spec, work);
                              });
#ifdef OVKS_HAVE_FFTW
  const auto planSingle = [=](float* s, float* d) {
    return fftwf_plan_dft_1d(n, reinterpret_cast<fftwf_complex*>(s), reinterpret_cast<fftwf_complex*>(d), FFTW_FORWARD,
                             patience(order));
  };
  const auto planWide = [=](double* s, double* d) {
    return fftw_plan_dft_1d(n, reinterpret_cast<fftw_complex*>(s), reinterpret_cast<fftw_complex*>(d), FFTW_FORWARD,
                            patience(order));
  };
  theirs<float>(single, order, 2 * n, planSingle, fftwf_execute);
  theirs<double>(wide, order, 2 * n, planWide, fftw_execute);
  const fftw_iodim whole = {n, 1, 1};
  const auto planSingleSplit = [=](float* s, float* d) {
    return fftwf_plan_guru_split_dft(1, &whole, 0, nullptr, s, singleIm.src.get(), d, singleIm.dst.get(),
                                     patience(order));
  };
  const auto planWideSplit = [=](double* s, double* d) {
    return fftw_plan_guru_split_dft(1, &whole, 0, nullptr, s, wideIm.src.get(), d, wideIm.dst.get(), patience(order));
  };
  theirs<float>(singleSplit, order, n, planSingleSplit, fftwf_execute);
  theirs<double>(wideSplit, order, n, planWideSplit, fftw_execute);
#endif
}

void realRows(int order) {
  const int n = 1 << order;
  const std::string single = "FFTFwd_RToCCS_32f", wide = "FFTFwd_RToCCS_64f";
  ours<float, FFTSpec_R_32f>(single, order, n + 2, ovksFFTGetSize_R_32f, ovksFFTInit_R_32f, ovksFFTFwd_RToCCS_32f);
  ours<double, FFTSpec_R_64f>(wide, order, n + 2, ovksFFTGetSize_R_64f, ovksFFTInit_R_64f, ovksFFTFwd_RToCCS_64f);
#ifdef OVKS_HAVE_FFTW
  const auto planSingle = [=](float* s, float* d) {
    return fftwf_plan_dft_r2c_1d(n, s, reinterpret_cast<fftwf_complex*>(d), patience(order));
  };
  const auto planWide = [=](double* s, double* d) {
    return fftw_plan_dft_r2c_1d(n, s, reinterpret_cast<fftw_complex*>(d), patience(order));
  };
  theirs<float>(single, order, n + 2, planSingle, fftwf_execute);
  theirs<double>(wide, order, n + 2, planWide, fftw_execute);
#endif
}

}  // namespace

int main(int argc, char** argv) {
  for (const int order : {4, 6, 8, 10, 12, 14, 16, 18, 20, 22}) {
    complexRows(order);
    realRows(order);
  }
  return bench::run(argc, argv);
}
