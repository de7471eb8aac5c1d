// SPDX-License-Identifier: MIT
// Filtering and convolution by FFTW's transforms.
#pragma once

#include <fftw3.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "filter_calls.hpp"
#include "filter_plain.hpp"
#include "filter_timing.hpp"

namespace bench {

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
  static fftwf_complex* complexes(const std::shared_ptr<float>& p) { return reinterpret_cast<fftwf_complex*>(p.get()); }

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

inline std::vector<int> blockLengths(int tapsLen) {
  std::vector<int> lengths;
  int N = 2;
  while (N < 2 * (tapsLen - 1)) N *= 2;
  for (int i = 0; i < 5; ++i) lengths.push_back(N << i);
  return lengths;
}

// Small primes do as well as powers of two.
inline std::vector<int> wholeLengths(int results) {
  std::vector<int> lengths;
  for (const int odd : {1, 3, 5, 9, 15}) {
    int N = 2 * odd;
    while (N < results) N *= 2;
    lengths.push_back(N);
  }
  return lengths;
}

}  // namespace bench
