// SPDX-License-Identifier: MIT
// FIR filters and convolutions beside their peers and the peak of multiply-adds.
//
// --sweep=FILE.csv measures filters of 1..300 taps instead, by each algorithm, and says what the automatic choice costs
// at most above the better one.
#include <string>

#include "filter_calls.hpp"
#include "filter_plain.hpp"
#include "filter_sweep.hpp"
#include "filter_timing.hpp"
#include "support/report.hpp"

#ifdef OVKS_HAVE_FFTW
#include "filter_fftw.hpp"
#endif
#ifdef OVKS_HAVE_LIQUID
#include <liquid/liquid.h>
#endif
#ifdef OVKS_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

using namespace bench;

template <class T>
std::string rowName(const char* what, int tapsLen) {
  return std::string("FIRSR_") + Api<T>::kName + what + std::to_string(tapsLen);
}

#ifdef OVKS_HAVE_VOLK
void dot(float* dst, const float* a, const float* b, int n) { volk_32f_x2_dot_prod_32f(dst, a, b, n); }
void dot(std::complex<float>* dst, const std::complex<float>* a, const std::complex<float>* b, int n) {
  volk_32fc_x2_dot_prod_32fc(dst, a, b, n);
}
#endif

#ifdef OVKS_HAVE_LIQUID
auto liquidFilter(const float* taps, int n) {
  return std::shared_ptr<firfilt_rrrf_s>(firfilt_rrrf_create(const_cast<float*>(taps), n), firfilt_rrrf_destroy);
}
auto liquidFilter(const std::complex<float>* taps, int n) {
  return std::shared_ptr<firfilt_cccf_s>(firfilt_cccf_create(const_cast<std::complex<float>*>(taps), n),
                                         firfilt_cccf_destroy);
}
void liquidRun(firfilt_rrrf q, const float* x, int n, float* y) {
  firfilt_rrrf_execute_block(q, const_cast<float*>(x), n, y);
}
void liquidRun(firfilt_cccf q, const std::complex<float>* x, int n, std::complex<float>* y) {
  firfilt_cccf_execute_block(q, const_cast<std::complex<float>*>(x), n, y);
}
#endif

template <class T>
void directRow(int n, int tapsLen) {
  using A = Api<T>;
  const std::string name = rowName<T>(" direct:", tapsLen);
  const Data<T> data(n, tapsLen);
  const Filter<T> filter(data.taps.get(), tapsLen, FilterAlgDirect);
  bench::add(name, n, "ovks", [=] { filter(data.src(), data.dst(), n); });
  bench::add(name, n, "loop", [=] { plain::fir(data.src(), data.dst(), n, data.taps.get(), tapsLen); });
  bench::add(name, n, "limit", [=] { plain::peak(typename A::Real{}, int64_t{1} * n * tapsLen * A::kMultiplyAdds); });
  if constexpr (sizeof(typename A::Real) == sizeof(float)) {
#ifdef OVKS_HAVE_VOLK
    bench::add(name, n, "volk", [=] {
      for (int i = 0; i < n; ++i) dot(data.dst() + i, data.joint.get() + i, data.taps.get(), tapsLen);
    });
#endif
#ifdef OVKS_HAVE_LIQUID
    const auto liquid = liquidFilter(data.taps.get(), tapsLen);
    bench::add(name, n, "liquid", [=] { liquidRun(liquid.get(), data.src(), n, data.dst()); });
#endif
  }
}

void transformRow(int n, int tapsLen) {
  const std::string name = rowName<float>(" FFT:", tapsLen);
  const Data<float> data(n, tapsLen);
  const Filter<float> filter(data.taps.get(), tapsLen, FilterAlgFFT);
  bench::add(name, n, "ovks", [=] { filter(data.src(), data.dst(), n); });
#ifdef OVKS_HAVE_FFTW
  const auto run = [=](const FftwFilter& f) { f.run(data.src(), n, data.dst(), n); };
  const FftwFilter fftw = bestFftw(blockLengths(tapsLen), data.taps.get(), tapsLen, run);
  bench::add(name, n, "fftw", [=] { run(fftw); });
#endif
#ifdef OVKS_HAVE_LIQUID
  struct Liquid {
    std::shared_ptr<fftfilt_rrrf_s> q;
    int block;
  };
  const auto runLiquid = [=](const Liquid& f) {
    for (int i = 0; i + f.block <= n; i += f.block) {
      fftfilt_rrrf_execute(f.q.get(), const_cast<float*>(data.src()) + i, data.dst() + i);
    }
  };
  std::vector<Liquid> choices;
  std::vector<double> times;
  for (int i = 0; i < 4; ++i) {
    const int block = tapsLen << i;
    choices.push_back({{fftfilt_rrrf_create(data.taps.get(), tapsLen, block), fftfilt_rrrf_destroy}, block});
    times.push_back(quickest([&] { runLiquid(choices.back()); }));
  }
  const Liquid liquid = choices[std::min_element(times.begin(), times.end()) - times.begin()];
  bench::add(name, n, "liquid", [=] { runLiquid(liquid); });
#endif
}

// What a caller with a delay line of its own would write.
void shortCallRow(int n, int tapsLen) {
  const std::string name = rowName<float>(" short:", tapsLen);
  const Data<float> data(n, tapsLen);
  const Filter<float> filter(data.taps.get(), tapsLen, FilterAlgAuto);
  bench::add(name, n, "ovks", [=] { filter(data.src(), data.dst(), n); });
  bench::add(name, n, "loop", [=] {
    const int past = tapsLen - 1;
    plain::fir(data.src(), data.dst(), n, data.taps.get(), tapsLen);
    std::memmove(data.joint.get(), data.src() + n - past, past * sizeof(float));
  });
#ifdef OVKS_HAVE_LIQUID
  const auto liquid = liquidFilter(data.taps.get(), tapsLen);
  bench::add(name, n, "liquid", [=] { liquidRun(liquid.get(), data.src(), n, data.dst()); });
#endif
}

void convolveRow(int longer, int shorter, FilterAlg algorithm = FilterAlgAuto) {
  const std::string way = algorithm == FilterAlgDirect ? " direct:" : ":";
  const std::string name = "Convolve_32f" + way + std::to_string(longer) + "x" + std::to_string(shorter);
  const int results = longer + shorter - 1;
  // A history of zeros, for the overlap-save.
  const auto joint = vector<float>(shorter - 1 + longer);
  std::fill_n(joint.get(), shorter - 1, 0.0f);
  const auto taps = vector<float>(shorter), out = vector<float>(results);
  const float* const src = joint.get() + shorter - 1;
  int size;
  ovksConvolveGetBufferSize(longer, shorter, DataType32f, algorithm, &size);
  const Bytes buffer = bytes(size);
  bench::add(name, results, "ovks", [=] {
    (void)joint, ovksConvolve_32f(src, longer, taps.get(), shorter, out.get(), algorithm, buffer.get());
  });
  if (longer <= 1024) {
    bench::add(name, results, "loop",
               [=] { (void)joint, plain::convolve(src, longer, taps.get(), shorter, out.get()); });
  }
  // No limit of multiply-adds where transforms need fewer.
  if (shorter <= 64) {
    bench::add(name, results, "limit", [=] { plain::peak(0.0f, int64_t{1} * longer * shorter); });
  }
#ifdef OVKS_HAVE_FFTW
  const auto whole = [=](const FftwFilter& f) { (void)joint, f.convolve(src, longer, out.get(), results); };
  const FftwFilter one = bestFftw(wholeLengths(results), taps.get(), shorter, whole);
  bench::add(name, results, "fftw", [=] { whole(one); });
  if (longer >= 4 * shorter) {
    const auto blocks = [=](const FftwFilter& f) { (void)joint, f.run(src, longer, out.get(), results); };
    const FftwFilter some = bestFftw(blockLengths(shorter), taps.get(), shorter, blocks);
    bench::add(name, results, "fftw blocks", [=] { blocks(some); });
  }
#endif
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.rfind("--sweep=", 0) == 0) return sweepTaps(word.substr(8));
  }
  // 16 KB of samples: source and destination stay in L1.
  for (const int taps : {4, 16, 32, 64, 256}) directRow<float>(4096, taps);
  for (const int taps : {16, 64}) {
    directRow<std::complex<float>>(2048, taps);
    directRow<double>(2048, taps);
    directRow<std::complex<double>>(1024, taps);
  }
  shortCallRow(16, 4);
  for (const int taps : {256, 1024, 4096}) transformRow(1 << 16, taps);
  convolveRow(64, 64);
  convolveRow(1024, 64, FilterAlgDirect);
  convolveRow(1024, 64);
  convolveRow(1024, 1024);
  convolveRow(65536, 256);
  convolveRow(65536, 65536);
  return bench::run(argc, argv);
}
