// SPDX-License-Identifier: MIT
// An endless stream of 32-bit words from a generator, for batteries of statistical tests that read raw words:
//
//   random_quality engine 1 | dieharder -a -g 200
//
// engine    the words that both generators are made from
// uniform   the 24 leading bits of each 32f value between 0 and 1, side by side
// gauss     each normal deviate in 64f, through its own distribution function
#include <ovks.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr int kBlock = 1 << 14;

template <class T, class Init, class Fill, class Words>
void stream(int size, Init init, Fill fill, Words words) {
  std::vector<char> state(static_cast<std::size_t>(size));
  std::vector<T> values(kBlock);
  std::vector<uint32_t> out;
  init(state.data());
  do {
    fill(values.data(), state.data());
    out.clear();
    words(values, out);
  } while (std::fwrite(out.data(), sizeof out[0], out.size(), stdout) == out.size());
}

void engine(uint32_t seed) {
  int size;
  ovksRandUniformGetSize_64f(&size);
  const auto state = [](char* p) { return reinterpret_cast<RandUniformState_64f*>(p); };
  // On this interval the values are the engine's own.
  stream<double>(
      size, [&](char* p) { ovksRandUniformInit_64f(state(p), -0x1p31, 0x1p31, seed); },
      [&](double* x, char* p) { ovksRandUniform_64f(x, kBlock, state(p)); },
      [](const auto& x, auto& out) {
        for (const double v : x) out.push_back(static_cast<uint32_t>(static_cast<int32_t>(v)));
      });
}

void uniform(uint32_t seed) {
  int size;
  ovksRandUniformGetSize_32f(&size);
  const auto state = [](char* p) { return reinterpret_cast<RandUniformState_32f*>(p); };
  stream<float>(
      size, [&](char* p) { ovksRandUniformInit_32f(state(p), 0, 1, seed); },
      [&](float* x, char* p) { ovksRandUniform_32f(x, kBlock, state(p)); },
      [](const auto& x, auto& out) {
        const auto leading = [&](std::size_t i) { return static_cast<uint32_t>(x[i] * 0x1p24f) & 0xffffffu; };
        for (std::size_t i = 0; i + 4 <= x.size(); i += 4) {
          const uint32_t a = leading(i), b = leading(i + 1), c = leading(i + 2), d = leading(i + 3);
          out.insert(out.end(), {a | b << 24, b >> 8 | c << 16, c >> 16 | d << 8});
        }
      });
}

void gauss(uint32_t seed) {
  int size;
  ovksRandGaussGetSize_64f(&size);
  const auto state = [](char* p) { return reinterpret_cast<RandGaussState_64f*>(p); };
  stream<double>(
      size, [&](char* p) { ovksRandGaussInit_64f(state(p), 0, 1, seed); },
      [&](double* x, char* p) { ovksRandGauss_64f(x, kBlock, state(p)); },
      [](const auto& x, auto& out) {
        for (const double z : x) out.push_back(static_cast<uint32_t>(0.5 * std::erfc(-z / std::sqrt(2.0)) * 0x1p32));
      });
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kind = argc > 1 ? argv[1] : "";
  const auto seed = static_cast<uint32_t>(argc > 2 ? std::strtoul(argv[2], nullptr, 0) : 1);
  if (kind == "engine") engine(seed);
  else if (kind == "uniform") uniform(seed);
  else if (kind == "gauss") gauss(seed);
  else return std::fputs("random_quality engine|uniform|gauss [seed]\n", stderr), 1;
}
