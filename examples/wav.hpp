// SPDX-License-Identifier: MIT
// Recordings of 16-bit PCM samples in WAV files.
#pragma once

#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace wav {

struct Recording {
  int rate = 0;                  // frames per second
  int channels = 0;              // samples per frame: 1 or 2
  std::vector<int16_t> samples;  // of all channels in turn

  int frames() const { return static_cast<int>(samples.size()) / channels; }
  double seconds() const { return static_cast<double>(frames()) / rate; }
};

// What is wrong with a file, in one line.
struct Error : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// The recording in a file's bytes, whatever they are: at least one frame, or an Error.
Recording parse(std::span<const uint8_t> file);

// A file's bytes for a recording.
std::vector<uint8_t> format(const Recording& recording);

Recording read(const std::string& path);
void write(const std::string& path, const Recording& recording);

}  // namespace wav
