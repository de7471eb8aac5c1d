// SPDX-License-Identifier: MIT
#include "wav.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <optional>
#include <string_view>

namespace wav {
namespace {

using Bytes = std::span<const uint8_t>;

constexpr std::size_t kMaxBytes = std::size_t{128} << 20;  // a quarter of an hour in stereo
constexpr uint32_t kMaxRate = 768000;
constexpr unsigned kPcm = 1, kExtensible = 0xfffe;
constexpr std::size_t kFormatBytes = 16, kExtensibleBytes = 40;
// The subformat of PCM, after its first two bytes, which are the plain format's code.
constexpr std::array<uint8_t, 14> kSubformatTail = {0, 0, 0, 0, 0x10, 0, 0x80, 0, 0, 0xaa, 0, 0x38, 0x9b, 0x71};

unsigned u16(Bytes b, std::size_t at) { return b[at] | b[at + 1] << 8; }
uint32_t u32(Bytes b, std::size_t at) { return u16(b, at) | uint32_t{u16(b, at + 2)} << 16; }

bool tagged(Bytes b, std::size_t at, std::string_view tag) { return std::memcmp(b.data() + at, tag.data(), 4) == 0; }

struct Format {
  int rate, channels;
};

Format parseFormat(Bytes chunk) {
  if (chunk.size() < kFormatBytes) throw Error("its format chunk is too short");
  unsigned code = u16(chunk, 0);
  const unsigned channels = u16(chunk, 2), frameBytes = u16(chunk, 12), sampleBits = u16(chunk, 14);
  const uint32_t rate = u32(chunk, 4);
  if (code == kExtensible) {
    if (chunk.size() < kExtensibleBytes) throw Error("its extensible format chunk is too short");
    const Bytes tail = chunk.subspan(26, kSubformatTail.size());
    if (std::equal(tail.begin(), tail.end(), kSubformatTail.begin())) code = u16(chunk, 24);
  }
  if (code != kPcm) throw Error("its samples are not PCM (format code " + std::to_string(code) + ")");
  if (sampleBits != 16) throw Error("its samples have " + std::to_string(sampleBits) + " bits, not 16");
  if (channels != 1 && channels != 2) throw Error("it has " + std::to_string(channels) + " channels, not 1 or 2");
  if (frameBytes != 2 * channels) throw Error("its frames have " + std::to_string(frameBytes) + " bytes");
  if (rate == 0 || rate > kMaxRate) throw Error("its sample rate is " + std::to_string(rate) + " Hz");
  return {static_cast<int>(rate), static_cast<int>(channels)};
}

Recording parseData(Format format, Bytes chunk) {
  const std::size_t frameBytes = 2 * static_cast<std::size_t>(format.channels);
  if (chunk.empty()) throw Error("it holds no samples");
  if (chunk.size() % frameBytes != 0) throw Error("its samples end within a frame");
  Recording r{format.rate, format.channels, {}};
  r.samples.reserve(chunk.size() / 2);
  for (std::size_t i = 0; i < chunk.size(); i += 2) r.samples.push_back(static_cast<int16_t>(u16(chunk, i)));
  return r;
}

std::string truncated(std::size_t present, std::size_t promised) {
  return "it is truncated: " + std::to_string(present) + " of " + std::to_string(promised) + " bytes";
}

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

File open(const std::string& path, const char* mode) {
  File file(std::fopen(path.c_str(), mode), std::fclose);
  if (!file) throw Error(path + ": " + std::strerror(errno));
  return file;
}

std::vector<uint8_t> readBytes(const std::string& path) {
  const File file = open(path, "rb");
  std::vector<uint8_t> bytes;
  std::array<uint8_t, 1 << 16> block;
  while (const std::size_t n = std::fread(block.data(), 1, block.size(), file.get())) {
    bytes.insert(bytes.end(), block.begin(), block.begin() + n);
    if (bytes.size() > kMaxBytes) throw Error(path + ": larger than " + std::to_string(kMaxBytes >> 20) + " MiB");
  }
  if (std::ferror(file.get())) throw Error(path + ": " + std::strerror(errno));
  return bytes;
}

}  // namespace

Recording parse(Bytes file) {
  constexpr std::size_t kHeader = 12, kChunkHeader = 8;
  if (file.size() < kHeader || !tagged(file, 0, "RIFF") || !tagged(file, 8, "WAVE"))
    throw Error("it is not a RIFF WAVE file");
  const std::size_t promised = std::size_t{u32(file, 4)} + 8;
  if (promised > file.size()) throw Error(truncated(file.size(), promised));
  if (promised < kHeader) throw Error("its size is absurd");

  std::optional<Format> format;
  Bytes rest = file.subspan(kHeader, promised - kHeader);
  while (rest.size() >= kChunkHeader) {
    const std::size_t size = u32(rest, 4);
    const Bytes body = rest.subspan(kChunkHeader);
    if (size > body.size()) throw Error("one of its chunks goes beyond its end");
    if (tagged(rest, 0, "fmt ")) format = parseFormat(body.first(size));
    if (tagged(rest, 0, "data")) {
      if (!format) throw Error("its samples come before their format");
      return parseData(*format, body.first(size));
    }
    rest = body.subspan(std::min(body.size(), size + size % 2));  // chunks of odd size are padded
  }
  throw Error(format ? "it has no samples" : "it has no format");
}

std::vector<uint8_t> format(const Recording& recording) {
  const uint32_t dataBytes = 2 * static_cast<uint32_t>(recording.samples.size());
  const uint32_t frameBytes = 2 * static_cast<uint32_t>(recording.channels);
  const uint32_t rate = static_cast<uint32_t>(recording.rate);
  std::vector<uint8_t> bytes;
  bytes.reserve(44 + dataBytes);
  const auto put = [&](std::string_view tag) {
    for (const char c : tag) bytes.push_back(static_cast<uint8_t>(c));
  };
  const auto put16 = [&](uint32_t v) {
    bytes.push_back(static_cast<uint8_t>(v));
    bytes.push_back(static_cast<uint8_t>(v >> 8));
  };
  const auto put32 = [&](uint32_t v) { put16(v), put16(v >> 16); };
  put("RIFF"), put32(36 + dataBytes), put("WAVE");
  put("fmt "), put32(kFormatBytes), put16(kPcm), put16(static_cast<uint32_t>(recording.channels));
  put32(rate), put32(rate * frameBytes), put16(frameBytes), put16(16);
  put("data"), put32(dataBytes);
  for (const int16_t s : recording.samples) put16(static_cast<uint16_t>(s));
  return bytes;
}

Recording read(const std::string& path) {
  const std::vector<uint8_t> bytes = readBytes(path);
  try {
    return parse(bytes);
  } catch (const Error& e) {
    throw Error(path + ": " + e.what());
  }
}

void write(const std::string& path, const Recording& recording) {
  const std::vector<uint8_t> bytes = format(recording);
  File file = open(path, "wb");
  const bool written = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  if (std::fclose(file.release()) != 0 || !written) throw Error(path + ": " + std::strerror(errno));
}

}  // namespace wav
