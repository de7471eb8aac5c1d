// SPDX-License-Identifier: MIT
// FIR filters and convolutions beside their peers and the peak of multiply-adds.
//
// --sweep=FILE.csv measures filters of 1..300 taps instead, by each algorithm, and says what the automatic choice costs
// at most above the better one.
#include <ovks.h>
#include <sched.h>

#include <algorithm>
#include <chrono>
#include <complex>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "filter_plain.hpp"
#include "support/report.hpp"

#ifdef OVKS_HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef OVKS_HAVE_LIQUID
#include <liquid/liquid.h>
#endif
#ifdef OVKS_HAVE_VOLK
#include <volk/volk.h>
#endif

namespace {

struct Free {
  void operator()(void* p) const { ovksFree(p); }
};
using Bytes = std::shared_ptr<uint8_t>;

Bytes bytes(int64_t n) { return Bytes(n > 0 ? ovksMalloc_8u(static_cast<int>(n)) : nullptr, Free{}); }

// n elements, small and not all the same.
template <class T>
std::shared_ptr<T> vector(int n) {
  const Bytes memory = bytes(n * int64_t{sizeof(T)});
  T* p = reinterpret_cast<T*>(memory.get());
  for (int i = 0; i < n; ++i) p[i] = static_cast<T>(static_cast<float>(i % 17 - 8) / 64);
  return {memory, p};
}

using Nanoseconds = std::chrono::duration<double, std::nano>;

template <class F>
double timeOnce(F call, int calls) {
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < calls; ++i) call();
  return Nanoseconds(std::chrono::steady_clock::now() - start).count() / calls;
}

// The fastest of few, for a choice among peers' settings.
template <class F>
double quickest(F call) {
  double best = timeOnce(call, 1);
  for (int i = 0; i < 9; ++i) best = std::min(best, timeOnce(call, 1));
  return best;
}

// What the library has for an element type.
template <class T>
struct Api;

template <>
struct Api<float> {
  static constexpr const char* kName = "32f";
  static constexpr DataType kType = DataType32f;
  static constexpr int kMultiplyAdds = 1;
  using Real = float;
  using Element = float;
  using Spec = FIRSRSpec_32f;
  static constexpr auto kInit = ovksFIRSRInit_32f;
  static constexpr auto kRun = ovksFIRSR_32f;
};

template <>
struct Api<double> {
  static constexpr const char* kName = "64f";
  static constexpr DataType kType = DataType64f;
  static constexpr int kMultiplyAdds = 1;
  using Real = double;
  using Element = double;
  using Spec = FIRSRSpec_64f;
  static constexpr auto kInit = ovksFIRSRInit_64f;
  static constexpr auto kRun = ovksFIRSR_64f;
};

template <>
struct Api<std::complex<float>> {
  static constexpr const char* kName = "32fc";
  static constexpr DataType kType = DataType32fc;
  static constexpr int kMultiplyAdds = 4;
  using Real = float;
  using Element = Complex32f;
  using Spec = FIRSRSpec_32fc;
  static constexpr auto kInit = ovksFIRSRInit_32fc;
  static constexpr auto kRun = ovksFIRSR_32fc;
};

template <>
struct Api<std::complex<double>> {
  static constexpr const char* kName = "64fc";
  static constexpr DataType kType = DataType64fc;
  static constexpr int kMultiplyAdds = 4;
  using Real = double;
  using Element = Complex64f;
  using Spec = FIRSRSpec_64fc;
  static constexpr auto kInit = ovksFIRSRInit_64fc;
  static constexpr auto kRun = ovksFIRSR_64fc;
};

// A filter of the library's, with its areas and a delay line that goes from call to call.
template <class T>
class Filter {
  using A = Api<T>;
  using Element = typename A::Element;
  using Spec = typename A::Spec;

 public:
  Filter(const T* taps, int tapsLen, FilterAlg algorithm) : delay_(vector<T>(tapsLen)) {
    int specSize, bufferSize;
    ovksFIRSRGetSize(tapsLen, A::kType, &specSize, &bufferSize);
    spec_ = bytes(specSize);
    buffer_ = bytes(bufferSize);
    A::kInit(reinterpret_cast<const Element*>(taps), tapsLen, algorithm, spec());
  }

  void operator()(const T* src, T* dst, int n) const {
    const auto delay = reinterpret_cast<Element*>(delay_.get());
    A::kRun(reinterpret_cast<const Element*>(src), reinterpret_cast<Element*>(dst), n, spec(), delay, delay,
            buffer_.get());
  }

 private:
  Spec* spec() const { return reinterpret_cast<Spec*>(spec_.get()); }

  std::shared_ptr<T> delay_;
  Bytes spec_, buffer_;
};

// Taps, and samples with a history before them, which the peers read where it is.
template <class T>
struct Data {
  Data(int samples, int tapCount)
      : n(samples), tapsLen(tapCount), joint(vector<T>(n + tapsLen)), taps(vector<T>(tapsLen)), out(vector<T>(n)) {}

  const T* src() const { return joint.get() + tapsLen - 1; }
  T* dst() const { return out.get(); }

  int n, tapsLen;
  std::shared_ptr<T> joint, taps, out;
};

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
  bench::add(name, n, "limit",
             [=] { plain::peak(typename A::Real{}, int64_t{1} * n * tapsLen * A::kMultiplyAdds); });
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

#ifdef OVKS_HAVE_FFTW
// Filtering by FFTW's transforms of length N, which have room of their own.
class FftwFilter {
 public:
  FftwFilter(int N, const float* taps, int tapsLen)
      : N_(N), past_(tapsLen - 1), block_(vector<float>(N + 2)), spectrum_(vector<float>(N + 2)) {
    const auto room = vector<float>(N + 2);
    work_ = room;
    forward_ = fftwf_plan_dft_r2c_1d(N, block_.get(), complexes(work_), FFTW_MEASURE);
    inverse_ = fftwf_plan_dft_c2r_1d(N, complexes(work_), block_.get(), FFTW_MEASURE);
    std::fill_n(block_.get(), N, 0.0f);
    for (int i = 0; i < tapsLen; ++i) block_.get()[i] = taps[i] / static_cast<float>(N);
    fftwf_execute_dft_r2c(forward_, block_.get(), complexes(spectrum_));
  }

  // Overlap-save; src has its history before it, and is followed by zeros after available samples.
  void run(const float* src, int available, float* dst, int n) const {
    const int S = N_ - past_;
    for (int done = 0; done < n; done += S) {
      const int have = std::clamp(available - done + past_, 0, N_);
      std::memcpy(block_.get(), src + done - past_, have * sizeof(float));
      std::fill(block_.get() + have, block_.get() + N_, 0.0f);
      apply();
      std::memcpy(dst + done, block_.get() + past_, std::min(S, n - done) * sizeof(float));
    }
  }

  // One transform for the whole result.
  void convolve(const float* src, int available, float* dst, int n) const {
    std::memcpy(block_.get(), src, available * sizeof(float));
    std::fill(block_.get() + available, block_.get() + N_, 0.0f);
    apply();
    std::memcpy(dst, block_.get(), n * sizeof(float));
  }

 private:
  static fftwf_complex* complexes(const std::shared_ptr<float>& p) {
    return reinterpret_cast<fftwf_complex*>(p.get());
  }

  void apply() const {
    fftwf_execute(forward_);
    plain::multiply(spectrum_.get(), work_.get(), N_ / 2 + 1);
    fftwf_execute(inverse_);
  }

  int N_, past_;
  std::shared_ptr<float> block_, spectrum_, work_;
  fftwf_plan forward_, inverse_;  // for the life of the program
};

// The best of several lengths by trial.
template <class Run>
FftwFilter bestFftw(const std::vector<int>& lengths, const float* taps, int tapsLen, Run run) {
  std::vector<FftwFilter> filters;
  std::vector<double> times;
  for (const int N : lengths) {
    filters.emplace_back(N, taps, tapsLen);
    times.push_back(quickest([&] { run(filters.back()); }));
  }
  return filters[std::min_element(times.begin(), times.end()) - times.begin()];
}

std::vector<int> blockLengths(int tapsLen) {
  std::vector<int> lengths;
  int N = 2;
  while (N < 2 * (tapsLen - 1)) N *= 2;
  for (int i = 0; i < 5; ++i) lengths.push_back(N << i);
  return lengths;
}

// Small primes do as well as powers of two.
std::vector<int> wholeLengths(int results) {
  std::vector<int> lengths;
  for (const int odd : {1, 3, 5, 9, 15}) {
    int N = 2 * odd;
    while (N < results) N *= 2;
    lengths.push_back(N);
  }
  return lengths;
}
#endif

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
    bench::add(name, results, "loop", [=] {
      (void)joint, plain::convolve(src, longer, taps.get(), shorter, out.get());
    });
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

// Medians of interleaved runs by automatic choice, in the time domain, and by transforms.
template <class T>
void sweep(int n, std::ostream& csv) {
  constexpr FilterAlg kAlgorithms[] = {FilterAlgAuto, FilterAlgDirect, FilterAlgFFT};
  constexpr int kMostTaps = 300, kRepetitions = 15;
  constexpr double kSlice = 40000;
  double worst = 0;
  int worstTaps = 0, above = 0, crossing = 0;
  for (int tapsLen = 1; tapsLen <= kMostTaps; ++tapsLen) {
    const Data<T> data(n, tapsLen);
    std::vector<Filter<T>> filters;
    for (const FilterAlg algorithm : kAlgorithms) filters.emplace_back(data.taps.get(), tapsLen, algorithm);
    std::vector<double> times[3];
    int calls[3];
    for (int a = 0; a < 3; ++a) {
      calls[a] = 1 + static_cast<int>(kSlice / quickest([&] { filters[a](data.src(), data.dst(), n); }));
    }
    for (int i = 0; i < kRepetitions; ++i) {
      for (int a = 0; a < 3; ++a) {
        times[a].push_back(timeOnce([&] { filters[a](data.src(), data.dst(), n); }, calls[a]));
      }
    }
    double median[3];
    for (int a = 0; a < 3; ++a) {
      std::nth_element(times[a].begin(), times[a].begin() + kRepetitions / 2, times[a].end());
      median[a] = times[a][kRepetitions / 2] / n;
    }
    const double ratio = median[0] / std::min(median[1], median[2]);
    csv << Api<T>::kName << ',' << n << ',' << tapsLen;
    for (const double ns : median) csv << ',' << ns;
    csv << '\n';
    if (ratio > worst) worst = ratio, worstTaps = tapsLen;
    if (ratio > 1.3) ++above;
    if (!crossing && median[2] < median[1]) crossing = tapsLen;
  }
  std::printf("%-5s %6d %12.2f %5d %16d %22d\n", Api<T>::kName, n, worst, worstTaps, above, crossing);
  std::fflush(stdout);
}

int sweepAll(const std::string& path) {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(sched_getcpu(), &set);
  sched_setaffinity(0, sizeof set, &set);
  std::ofstream csv(path);
  if (!csv) return 1;
  csv << "type,block,taps,auto_ns,direct_ns,fft_ns\n";
  std::printf("%-5s %6s %12s %5s %16s %22s\n", "type", "block", "worst ratio", "taps", "taps above 1.3", "FFT first ahead at");
  for (const int n : {256, 512, 4096}) {
    sweep<float>(n, csv);
    sweep<double>(n, csv);
    sweep<std::complex<float>>(n, csv);
    sweep<std::complex<double>>(n, csv);
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.rfind("--sweep=", 0) == 0) return sweepAll(word.substr(8));
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
