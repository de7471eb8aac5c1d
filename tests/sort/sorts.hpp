// SPDX-License-Identifier: MIT
// The family's functions by element type, inputs that tempt a sort to go wrong, and what every result must satisfy.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <span>
#include <vector>

#include "ovks.h"
#include "sort/median_killer.hpp"
#include "support/guarded.hpp"

template <class T>
struct Sorts {
  struct Direction {
    Status (*values)(T*, int);
    Status (*index)(T*, int32_t*, int);
    Status (*radix)(T*, int, uint8_t*);
    Status (*radixIndex)(const T*, int32_t*, int, uint8_t*);
  };
  DataType type;
  Direction directions[2];  // ascending, descending
};

// Names only: the table below is otherwise the same line seven times.
// clang-format off
#define SORTS_DIRECTION(way, t) \
  {ovksSort##way##_##t##_I, ovksSortIndex##way##_##t##_I, ovksSortRadix##way##_##t##_I, ovksSortRadixIndex##way##_##t}
#define SORTS(t) {DataType##t, {SORTS_DIRECTION(Ascend, t), SORTS_DIRECTION(Descend, t)}}
template <class T> extern const Sorts<T> kSorts;
template <> inline constexpr Sorts<uint8_t> kSorts<uint8_t> = SORTS(8u);
template <> inline constexpr Sorts<uint16_t> kSorts<uint16_t> = SORTS(16u);
template <> inline constexpr Sorts<int16_t> kSorts<int16_t> = SORTS(16s);
template <> inline constexpr Sorts<uint32_t> kSorts<uint32_t> = SORTS(32u);
template <> inline constexpr Sorts<int32_t> kSorts<int32_t> = SORTS(32s);
template <> inline constexpr Sorts<float> kSorts<float> = SORTS(32f);
template <> inline constexpr Sorts<double> kSorts<double> = SORTS(64f);
// clang-format on

using Elements = testing::Types<uint8_t, uint16_t, int16_t, uint32_t, int32_t, float, double>;

// The order promised: NaNs after everything, zeros alike.
template <class T>
bool before(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a) || std::isnan(b)) return !std::isnan(a) && std::isnan(b);
  }
  return a < b;
}

template <class T>
bool sameBits(T a, T b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// A fingerprint of the elements, whatever their order.
template <class T>
uint64_t contents(std::span<const T> v) {
  uint64_t sum = 0;
  for (const T& x : v) {
    uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof x);
    bits = (bits ^ bits >> 31 ^ 0x9e3779b97f4a7c15) * 0xbf58476d1ce4e5b9;
    sum += (bits ^ bits >> 29) * 0x94d049bb133111eb;
  }
  return sum;
}

template <class T>
bool sorted(std::span<const T> v, bool descending) {
  for (std::size_t i = 1; i < v.size(); ++i) {
    if (descending ? before(v[i - 1], v[i]) : before(v[i], v[i - 1])) return false;
  }
  return true;
}

// Whether index is a permutation that makes v of input.
template <class T>
bool permutes(std::span<const T> input, std::span<const int32_t> index, std::span<const T> v) {
  std::vector<bool> seen(input.size());
  for (std::size_t i = 0; i < v.size(); ++i) {
    const auto from = static_cast<std::size_t>(index[i]);
    if (from >= input.size() || seen[from] || !sameBits(input[from], v[i])) return false;
    seen[from] = true;
  }
  return true;
}

template <class T>
struct Input {
  const char* name;
  std::vector<T> v;
};

template <class T>
std::vector<Input<T>> inputs(int n, std::mt19937_64& random) {
  using Limits = std::numeric_limits<T>;
  const auto make = [n](auto f) {
    std::vector<T> v(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = static_cast<T>(f(i));
    return v;
  };
  const auto below = [&](uint64_t m) { return random() % m; };
  // Any bits at all, floats of every kind among them.
  const auto anything = [&](int) {
    const uint64_t bits = random();
    T x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
  };
  std::vector<Input<T>> all = {
      {"any bits", make(anything)},
      {"equal", make([](int) { return 7; })},
      {"two values", make([&](int) { return below(2) ? Limits::max() : Limits::lowest(); })},
      {"few values", make([&](int) { return below(5) * 20; })},
      {"ten bits", make([&](int) { return below(1024) * 4; })},
      {"mostly one value", make([&](int) { return below(100) ? 50 : below(100); })},
      {"ascending", make([&](int i) { return i; })},
      {"descending", make([&](int i) { return n - i; })},
      {"organ pipe", make([&](int i) { return std::min(i, n - i); })},
      {"saw", make([&](int i) { return i % 17; })},
      {"nearly sorted", make([&](int i) { return below(50) ? static_cast<uint64_t>(i) : below(256); })},
      {"powers", make([&](int) { return uint64_t{1} << below(sizeof(T) * 8 - 1); })},
      // What is left after each most frequent value is less than an eighth: every pivot misses the middle.
      {"nested majorities", make([&](int) {
         int level = 0;
         while (level < 30 && below(100) >= 88) ++level;
         return (uint64_t{1} << level) * 3 % 251;
       })},
      {"median-of-three killer", medianKiller<T>(n)},
  };
  if constexpr (std::is_floating_point_v<T>) {
    const T odd[] = {0,
                     -T{0},
                     1,
                     -1,
                     Limits::infinity(),
                     -Limits::infinity(),
                     Limits::denorm_min(),
                     -Limits::denorm_min(),
                     Limits::quiet_NaN(),
                     -Limits::quiet_NaN(),
                     Limits::max(),
                     Limits::lowest()};
    all.push_back({"odd floats", make([&](int) { return odd[below(std::size(odd))]; })});
    all.push_back({"infinities and NaNs", make([&](int) { return odd[4 + below(2) + (below(8) ? 0 : 4)]; })});
    all.push_back({"fractions", make([&](int) { return static_cast<T>(static_cast<double>(random()) / 1e18 - 9); })});
  }
  return all;
}
