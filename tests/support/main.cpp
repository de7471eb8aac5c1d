// SPDX-License-Identifier: MIT
// Runs the tests on the level that the command line names, or on whichever the loader took.
#include <gtest/gtest.h>

#include <cstdio>
#include <ctime>
#include <string_view>

#include "ovks.h"

int main(int argc, char** argv) {
  constexpr std::string_view kOption = "--level=";
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(random_seed) == 0) GTEST_FLAG_SET(random_seed, static_cast<int>(std::time(nullptr) % 99999 + 1));
  const std::string_view loaded = ovksGetLibVersion()->targetCpu;
  for (int i = 1; i < argc; ++i) {
    const std::string_view argument = argv[i];
    if (argument.substr(0, kOption.size()) != kOption) continue;
    const std::string_view wanted = argument.substr(kOption.size());
    if (wanted == loaded) continue;
    std::printf("level %s was asked for, the loader took %s\n", wanted.data(), loaded.data());
    return 1;
  }
  std::printf("level %s, --gtest_random_seed=%d\n", loaded.data(), GTEST_FLAG_GET(random_seed));
  return RUN_ALL_TESTS();
}
