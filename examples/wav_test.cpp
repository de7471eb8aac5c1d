// SPDX-License-Identifier: MIT
// The reader takes every well-formed file, and refuses the others whatever their bytes are.
#include "wav.hpp"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

using Bytes = std::vector<uint8_t>;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "failed: %s\n", what);
  std::exit(1);
}

bool refused(const Bytes& file) {
  try {
    const wav::Recording r = wav::parse(file);
    require(r.frames() > 0 && r.rate > 0 && r.samples.size() % static_cast<unsigned>(r.channels) == 0, "whole frames");
    return false;
  } catch (const wav::Error&) {
    return true;
  }
}

Bytes with(Bytes file, std::size_t at, Bytes bytes) {
  std::copy(bytes.begin(), bytes.end(), file.begin() + static_cast<std::ptrdiff_t>(at));
  return file;
}

// The file with further bytes inside, and its size adjusted.
Bytes grown(Bytes file, std::size_t at, const Bytes& bytes) {
  file.insert(file.begin() + static_cast<std::ptrdiff_t>(at), bytes.begin(), bytes.end());
  return with(file, 4, {static_cast<uint8_t>(file.size() - 8)});
}

}  // namespace

int main() {
  const wav::Recording stereo{44100, 2, {0, -1, 32767, -32768, 5, 6}};
  const Bytes file = wav::format(stereo);
  require(wav::parse(file).samples == stereo.samples && wav::parse(file).channels == 2, "what was written is read");

  const Bytes odd = grown(file, 12, {'o', 'd', 'd', ' ', 3, 0, 0, 0, 1, 2, 3, 0});
  require(wav::parse(odd).samples == stereo.samples, "chunks of odd size are padded");
  const Bytes guid = {22, 0, 16, 0, 3, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xaa, 0, 0x38, 0x9b, 0x71};
  const Bytes extensible = with(with(grown(file, 36, guid), 16, {40}), 20, {0xfe, 0xff});
  require(wav::parse(extensible).samples == stereo.samples, "the extensible format may be PCM");
  require(refused(with(extensible, 44, {3})), "or not");

  require(refused(with(file, 0, {'X'})), "not RIFF");
  require(refused(with(file, 20, {3})), "not PCM");
  require(refused(with(file, 22, {0})) && refused(with(file, 22, {3})), "neither mono nor stereo");
  require(refused(with(file, 24, {0, 0, 0, 0})) && refused(with(file, 27, {0xff})), "absurd rate");
  require(refused(with(file, 34, {24})), "not 16 bits");
  require(refused(with(file, 40, {0})), "no samples");
  require(refused(with(file, 40, {11})), "a broken frame");
  require(refused(with(file, 40, {0xff, 0xff, 0xff, 0xff})), "absurd size");

  for (const Bytes& whole : {file, odd, extensible}) {
    for (std::size_t size = 0; size < whole.size(); ++size) {
      require(refused({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}), "truncated");
    }
    std::mt19937 random(1);
    for (int i = 0; i < 20000; ++i) {
      Bytes flipped = whole;
      for (int flips = 1 + i % 4; flips > 0; --flips) flipped[random() % whole.size()] ^= 1u << random() % 8;
      refused(flipped);
    }
  }
}
