// SPDX-License-Identifier: MIT
#include "spectrogram.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <ovks.hpp>

namespace demo {
namespace {

constexpr int kColumns = 440;
constexpr double kFrameSeconds = 0.025, kTopHertz = 8000;
constexpr double kSilence = 1e-12;  // of full scale's power

// The power of two of samples that comes closest to kFrameSeconds from below.
int orderFor(int rate) {
  const unsigned samples = static_cast<unsigned>(kFrameSeconds * rate);
  return std::max(4, static_cast<int>(std::bit_width(samples)) - 1);
}

double decibels(double power) { return 10 * std::log10(std::max(power, kSilence)); }

class Analysis {
 public:
  explicit Analysis(int order)
      : fft_(order, FFTNoDiv),
        frame_(fft_.length()),
        spectrum_(ovks::ccsLength(fft_.length())),
        powers_(spectrum_.size() / 2) {}

  std::size_t bins() const { return powers_.size(); }

  // The power at each frequency around a moment, the channels' mean. Before and after the recording there is silence.
  const std::vector<double>& powers(const wav::Recording& r, int64_t centre) {
    // A sine wave's half of the spectrum, and the window's mean, which is a half as well.
    const double fullScale = 32768.0 * static_cast<double>(frame_.size() - 1) / 4;
    std::fill(powers_.begin(), powers_.end(), 0.0);
    for (int channel = 0; channel < r.channels; ++channel) {
      cut(r, centre - static_cast<int64_t>(frame_.size()) / 2, channel);
      ovks::hann(frame_);
      fft_.toCcs(frame_, spectrum_);
      for (std::size_t k = 0; k < bins(); ++k) {
        const double re = spectrum_[2 * k] / fullScale, im = spectrum_[2 * k + 1] / fullScale;
        powers_[k] += (re * re + im * im) / r.channels;
      }
    }
    return powers_;
  }

 private:
  void cut(const wav::Recording& r, int64_t at, int channel) {
    for (float& sample : frame_) {
      const bool within = at >= 0 && at < r.frames();
      sample = within ? r.samples[static_cast<std::size_t>(at * r.channels + channel)] : 0.0f;
      ++at;
    }
  }

  ovks::RealFFT<float> fft_;
  ovks::Vector<float> frame_, spectrum_;
  std::vector<double> powers_;
};

// Where a parabola through the decibels around a peak is highest, from -1/2 to 1/2.
double summit(double before, double peak, double after) {
  const double bend = decibels(before) - 2 * decibels(peak) + decibels(after);
  return bend == 0 ? 0 : (decibels(before) - decibels(after)) / 2 / bend;
}

}  // namespace

Spectrogram spectrogram(const wav::Recording& recording) {
  Analysis analysis(orderFor(recording.rate));
  const std::size_t bins = analysis.bins();
  const int64_t frames = recording.frames(), half = static_cast<int64_t>(bins) - 1;
  const double binHertz = recording.rate / 2.0 / static_cast<double>(half);

  Spectrogram s;
  s.seconds = recording.seconds();
  s.columns = static_cast<int>(std::min<int64_t>(kColumns, frames));
  s.rows = static_cast<int>(std::min(static_cast<double>(bins), std::ceil(kTopHertz / binHertz)));
  s.hertz = s.rows * binHertz;
  const std::size_t rows = static_cast<std::size_t>(s.rows);
  s.decibels.assign(static_cast<std::size_t>(s.columns) * rows, static_cast<float>(decibels(0)));

  // Neighbours overlap by half or more, and each column has one at least.
  double largest = kSilence;
  const int64_t step = std::min(half, frames / s.columns);
  for (int64_t at = 0; at < frames; at += step) {
    const std::vector<double>& powers = analysis.powers(recording, at);
    float* const column = s.decibels.data() + static_cast<std::size_t>(at * s.columns / frames) * rows;
    for (std::size_t k = 0; k < rows; ++k) column[k] = std::max(column[k], static_cast<float>(decibels(powers[k])));

    const auto peak = std::max_element(powers.begin() + 1, powers.end() - 1);
    if (*peak > largest) {
      largest = *peak;
      s.strongest = (static_cast<double>(peak - powers.begin()) + summit(peak[-1], peak[0], peak[1])) * binHertz;
    }
  }
  return s;
}

}  // namespace demo
