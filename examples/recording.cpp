// SPDX-License-Identifier: MIT
// Sends a recording through the library: band-pass, gain, fades, dither and an echo. Writes out/recording.wav and, with
// their before and after, out/recording.svg and out/spectrogram.svg; prints levels, the strongest frequency, and what
// each step took beside a plain loop that does the same.
//
//   demo [file.wav | --generated]
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <ovks.hpp>
#include <stdexcept>
#include <string_view>

#include "levels.hpp"
#include "source.hpp"
#include "steps.hpp"
#include "svg.hpp"

namespace {

using demo::Signal, demo::Step, ovks::Vector;

struct Nanoseconds {
  double library, plain;  // per sample
};

double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

template <class F>
double nanoseconds(F call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - start).count();
}

bool equal(const Vector<float>& a, const Vector<float>& b, double tolerance) {
  if (tolerance == 0) return std::memcmp(a.data(), b.data(), sizeof(float) * a.size()) == 0;
  return ovks::normDiffInf(a, b) <= tolerance;
}

bool equal(const Signal& a, const Signal& b, double tolerance) {
  return a.peak == b.peak && a.pcm == b.pcm && a.echo == b.echo && equal(a.wave, b.wave, tolerance);
}

// Takes the signal one step further. Each run begins with the same samples, and both ways take turns.
Nanoseconds take(const Step& step, Signal& signal) {
  constexpr std::size_t kRuns = 301;
  constexpr double kEffort = 4e8;  // nanoseconds
  const Signal before = signal;
  Signal expected = signal;
  std::vector<double> library, plain;
  double spent = 0;
  while (plain.empty() || (plain.size() < kRuns && spent < kEffort)) {
    signal = before;
    library.push_back(nanoseconds([&] { step.library(signal); }));
    expected = before;
    plain.push_back(nanoseconds([&] { step.plain(expected); }));
    spent += library.back() + plain.back();
  }
  if (!equal(signal, expected, step.tolerance))
    throw std::runtime_error(std::string(step.call) + " differs from the plain loop");
  const double samples = static_cast<double>(step.samples);
  return {median(library) / samples, median(plain) / samples};
}

wav::Recording process(const wav::Recording& recording) {
  Signal signal(recording);
  std::printf("\n%-18s %-24s %10s %14s %8s\n", "step", "call", "ns/sample", "a plain loop", "ratio");
  for (const Step& step : demo::steps(signal)) {
    const Nanoseconds ns = take(step, signal);
    std::printf("%-18s %-24s %10.3f %14.3f %7.1fx\n", step.name, step.call, ns.library, ns.plain,
                ns.plain / ns.library);
  }
  return {recording.rate, recording.channels, {signal.pcm.begin(), signal.pcm.end()}};
}

void printTraits(const wav::Recording& recording, const wav::Recording& result, double strongest,
                 double strongestAfter) {
  const demo::Levels before = demo::levels(recording), after = demo::levels(result);
  std::printf("\n%-18s %10s %10s\n", "", "before", "after");
  std::printf("%-18s %10.1f %10.1f\n", "peak, dBFS", before.peak, after.peak);
  std::printf("%-18s %10.1f %10.1f\n", "RMS, dBFS", before.rms, after.rms);
  std::printf("%-18s %10.1f %10.1f\n", "DC offset, dBFS", before.offset, after.offset);
  std::printf("%-18s %10.1f %10.1f\n", "strongest, Hz", strongest, strongestAfter);
}

void write(const std::filesystem::path& path, const std::string& drawing) {
  std::ofstream file(path);
  file << drawing;
  if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

void run(std::string_view argument) {
  std::string name(argument);
  if (name.empty()) name = demo::packagedRecording();
  const bool generated = name.empty() || name == "--generated";
  const wav::Recording recording = generated ? demo::generatedRecording() : wav::read(name);
  if (generated) name = "a generated signal";
  std::printf("%s: %.2f s, %d Hz, %s\n", name.c_str(), recording.seconds(), recording.rate,
              recording.channels == 1 ? "mono" : "stereo");
  std::printf("%s %s\n", ovks::version().Name, ovks::version().Version);

  const wav::Recording result = process(recording);
  const demo::Spectrogram before = demo::spectrogram(recording), after = demo::spectrogram(result);
  printTraits(recording, result, before.strongest, after.strongest);

  const std::filesystem::path folder = "out";
  std::filesystem::create_directories(folder);
  wav::write((folder / "recording.wav").string(), result);
  const std::string titles[] = {"before: " + name, "after: band-pass, gain, fades, dither, echo"};
  write(folder / "recording.svg", svg::waveforms({{titles[0], recording}, {titles[1], result}}));
  write(folder / "spectrogram.svg", svg::spectrograms({{titles[0], before}, {titles[1], after}}));
  std::printf(
      "\nEvery step gave what its plain loop gives: to the bit, but the band-pass to an eighth of a 16-bit step.\n");
  std::printf("out/recording.wav, out/recording.svg, out/spectrogram.svg\n");
}

}  // namespace

int main(int argc, char** argv) {
  if (argc > 2) {
    std::fprintf(stderr, "usage: demo [file.wav | --generated]\n");
    return 2;
  }
  try {
    run(argc == 2 ? argv[1] : "");
  } catch (const std::exception& e) {
    std::fprintf(stderr, "demo: %s\n", e.what());
    return 1;
  }
}
