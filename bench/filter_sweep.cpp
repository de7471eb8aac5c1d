// SPDX-License-Identifier: MIT
#include "filter_sweep.hpp"

#include <sched.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <vector>

#include "filter_calls.hpp"
#include "filter_timing.hpp"

namespace bench {
namespace {

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

}  // namespace

int sweepTaps(const std::string& path) {
  cpu_set_t set;
  CPU_ZERO(&set);
  CPU_SET(sched_getcpu(), &set);
  sched_setaffinity(0, sizeof set, &set);
  std::ofstream csv(path);
  if (!csv) return 1;
  csv << "type,block,taps,auto_ns,direct_ns,fft_ns\n";
  std::printf("%-5s %6s %12s %5s %16s %22s\n", "type", "block", "worst ratio", "taps", "taps above 1.3",
              "FFT first ahead at");
  for (const int n : {256, 512, 4096}) {
    sweep<float>(n, csv);
    sweep<double>(n, csv);
    sweep<std::complex<float>>(n, csv);
    sweep<std::complex<double>>(n, csv);
  }
  return 0;
}

}  // namespace bench
