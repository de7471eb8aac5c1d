// SPDX-License-Identifier: MIT
// What every export promises, over all of them: null pointers before lengths, nothing written on an error.
#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

#include "ovks.h"
#include "support/harness.hpp"

namespace ovks::test {
namespace {

// Beginnings of names of exports that have no length, may do without a pointer, or look at something else first.
constexpr std::string_view kOtherwise[] = {"ovksFFT",
                                           "ovksFIRSR",
                                           "ovksRandGaussGetSize",
                                           "ovksRandGaussInit",
                                           "ovksRandUniformGetSize",
                                           "ovksRandUniformInit",
                                           "ovksSortRadixGetBufferSize",
                                           "ovksWinBlackmanOpt"};

class Contract : public testing::Test {
 protected:
  using Memory = std::array<std::byte, 4096>;
  static constexpr std::size_t kMost = 12;

  void SetUp() override {
    for (Memory& m : memory_) m.fill(std::byte{1});
  }

  // Calls with the pointer at position null taken away (none at -1), ints being len, and constants 0x01 bytes.
  template <class... P>
  Status call(Status (*function)(P...), int null, int len) {
    int position = 0;
    const auto argument = [&]<class T>(T*) {
      const int k = position++;
      if constexpr (std::is_pointer_v<T>) {
        return k == null ? nullptr : reinterpret_cast<T>(memory_[static_cast<std::size_t>(k)].data());
      } else if constexpr (std::is_same_v<T, int>) {
        return len;
      } else {
        T constant;
        std::memset(&constant, 1, sizeof constant);
        return constant;
      }
    };
    const std::tuple<P...> arguments{argument(static_cast<P*>(nullptr))...};
    return std::apply(function, arguments);
  }

  template <class... P>
  void check(std::string_view name, Status (*function)(P...)) {
    static_assert(sizeof...(P) <= kMost);
    for (const std::string_view other : kOtherwise) {
      if (name.substr(0, other.size()) == other) return;
    }
    constexpr bool pointers[] = {std::is_pointer_v<P>...};
    for (int k = 0; k < int{sizeof...(P)}; ++k) {
      if (!pointers[k]) continue;
      for (const int len : {1, 0}) EXPECT_EQ(call(function, k, len), StatusNullPtr) << name << ", parameter " << k;
    }
    for (const int len : {0, -1, INT_MIN}) EXPECT_EQ(call(function, -1, len), StatusBadSize) << name << ' ' << len;
    for (const Memory& m : memory_) {
      const bool untouched = std::all_of(m.begin(), m.end(), [](std::byte b) { return b == std::byte{1}; });
      ASSERT_TRUE(untouched) << name << " wrote in spite of an error";
    }
    ++checked_;
  }

  // Exports that return something else have no such contract.
  void check(std::string_view, ...) {}

  std::array<Memory, kMost> memory_;
  int checked_ = 0;
};

TEST_F(Contract, NullPointersComeBeforeLengths) {
#define X(name) check(#name, name);
#include "exports.inc"
#undef X
  EXPECT_GE(checked_, 281);
}

}  // namespace
}  // namespace ovks::test
