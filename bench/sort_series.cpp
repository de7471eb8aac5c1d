// SPDX-License-Identifier: MIT
#include "sort_series.hpp"

#include <ovks.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "sort/median_killer.hpp"
#include "sort/pivot_killer.hpp"

namespace {

template <class T>
using Call = std::function<void(T*, int)>;

template <class T>
struct Sort {
  std::string name;
  Call<T> call;
};

// f on every sort of one type: values, values with positions, digits.
template <class T, class F>
void forSorts(const char* name, DataType type, Status (*values)(T*, int), Status (*index)(T*, int32_t*, int),
              Status (*radix)(T*, int, uint8_t*), F f) {
  static std::vector<int32_t> positions;
  static std::vector<uint8_t> buffer;
  f(Sort<T>{std::string("Sort_") + name, values});
  f(Sort<T>{std::string("SortIndex_") + name, [index](T* v, int n) {
              positions.resize(std::max(positions.size(), static_cast<std::size_t>(n)));
              index(v, positions.data(), n);
            }});
  f(Sort<T>{std::string("SortRadix_") + name, [radix, type](T* v, int n) {
              int size = 0;
              ovksSortRadixGetBufferSize(n, type, &size);
              buffer.resize(std::max(buffer.size(), static_cast<std::size_t>(size)));
              radix(v, n, buffer.data());
            }});
}

// Names only.
#define OVKS_SORTS(t, f) \
  forSorts(#t, DataType##t, ovksSortAscend_##t##_I, ovksSortIndexAscend_##t##_I, ovksSortRadixAscend_##t##_I, f)

template <class F>
void forAllSorts(F f) {
  OVKS_SORTS(8u, f);
  OVKS_SORTS(16u, f);
  OVKS_SORTS(16s, f);
  OVKS_SORTS(32u, f);
  OVKS_SORTS(32s, f);
  OVKS_SORTS(32f, f);
  OVKS_SORTS(64f, f);
}

// The best of some runs in ns an element. Short inputs come in a row of many, the copies before the time.
template <class T>
double nanoseconds(const Call<T>& sort, const std::vector<T>& input, int n) {
  using Clock = std::chrono::steady_clock;
  const int runs = n > 3000000 ? 2 : n > 300000 ? 4 : 12;
  double best = std::numeric_limits<double>::infinity();
  std::vector<T> v(input.size());
  for (int run = 0; run < runs; ++run) {
    v = input;
    const auto start = Clock::now();
    for (std::size_t i = 0; i + static_cast<std::size_t>(n) <= v.size(); i += static_cast<std::size_t>(n))
      sort(v.data() + i, n);
    best = std::min(best, std::chrono::duration<double, std::nano>(Clock::now() - start).count());
  }
  return best / static_cast<double>(input.size() / static_cast<std::size_t>(n) * static_cast<std::size_t>(n));
}

template <class T>
std::vector<T> randomElements(std::size_t n) {
  std::mt19937_64 random(7);
  std::vector<T> v(n);
  for (T& x : v) {
    if constexpr (std::is_floating_point_v<T>) x = static_cast<T>(std::normal_distribution<double>()(random));
    else x = static_cast<T>(random());
  }
  return v;
}

// Ranks as elements in the same order; the last rank goes far from the others. None for elements that are counted.
template <class T>
std::vector<T> againstPivots(int n) {
  using K = std::conditional_t<sizeof(T) == 8, int64_t, int32_t>;
  constexpr K highest = std::numeric_limits<K>::max();
  if (sizeof(T) == 1 || (sizeof(T) == 2 && n > 65536)) return {};
  const std::ptrdiff_t block = sizeof(T) == 8 ? 128 : 256;
  std::vector<T> v;
  for (const K rank : pivotKiller<K>(n, block, highest, 4))
    v.push_back(rank == highest ? std::numeric_limits<T>::max() : static_cast<T>(rank));
  return v;
}

template <class T>
std::vector<std::pair<const char*, std::vector<T>>> patterns(int n) {
  const auto make = [n](auto f) {
    std::vector<T> v(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = static_cast<T>(f(i));
    return v;
  };
  std::mt19937 random(1);
  std::vector<T> ordered = randomElements<T>(static_cast<std::size_t>(n));
  std::sort(ordered.begin(), ordered.end());
  return {{"random", randomElements<T>(static_cast<std::size_t>(n))},
          {"sorted", ordered},
          {"reversed", {ordered.rbegin(), ordered.rend()}},
          {"equal", make([](int) { return 7; })},
          {"5 values", make([&](int) { return random() % 5; })},
          {"pipe", make([n](int i) { return std::min(i, n - i); })},
          {"median-3", medianKiller<T>(n)},
          {"our pivots", againstPivots<T>(n)}};
}

}  // namespace

void sortPatterns() {
  bool header = true;
  for (const int n : {10000, 1000000, 10000000}) {
    forAllSorts([&]<class T>(const Sort<T>& sort) {
      const auto inputs = patterns<T>(n);
      if (std::exchange(header, false)) {
        std::printf("%-16s %9s", "ns/element", "elements");
        for (const auto& input : inputs) std::printf(" %10s", input.first);
        std::printf("\n");
      }
      std::printf("%-16s %9d", sort.name.c_str(), n);
      for (const auto& [name, elements] : inputs) {
        if (elements.empty()) std::printf(" %10s", "-");
        else std::printf(" %10.3f", nanoseconds(sort.call, elements, n));
      }
      std::printf("\n");
      std::fflush(stdout);
    });
  }
}

void sortSweep() {
  std::printf("row,elements,ns_per_element\n");
  forAllSorts([]<class T>(const Sort<T>& sort) {
    for (int n = 2; n <= 10000000; n = std::max(n + 1, n + n / 8)) {
      const auto many = static_cast<std::size_t>(std::max(n, 1 << 16));
      std::printf("%s,%d,%.4f\n", sort.name.c_str(), n, nanoseconds(sort.call, randomElements<T>(many), n));
    }
  });
}
