// SPDX-License-Identifier: MIT
// Random calls of all exports in turn, for FUZZ_SECONDS (30), from trial FUZZ_FROM (0) on of the sequence that belongs
// to --gtest_random_seed. A crash or a sanitizer's report is preceded or followed by the trial that led to it.
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "fuzz/trial.hpp"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace ovks::test {
namespace {

char current[200];
struct sigaction former[NSIG];

void tell() { std::fputs(current, stderr); }

void onSignal(int number, siginfo_t* info, void* context) {
  tell();
  sigaction(number, &former[number], nullptr);
  if (former[number].sa_flags & SA_SIGINFO) former[number].sa_sigaction(number, info, context);
}

void tellOnDeath() {
#ifdef __SANITIZE_ADDRESS__
  __sanitizer_set_death_callback(tell);
#endif
  struct sigaction action = {};
  action.sa_sigaction = onSignal;
  action.sa_flags = SA_SIGINFO;
  for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) sigaction(number, &action, &former[number]);
}

long setting(const char* name, long otherwise) {
  const char* const text = std::getenv(name);
  return text ? std::atol(text) : otherwise;
}

TEST(Fuzz, RandomCalls) {
  using Clock = std::chrono::steady_clock;
  const auto end = Clock::now() + std::chrono::seconds(setting("FUZZ_SECONDS", 30));
  const std::vector<Prototype>& all = prototypes();
  const auto from = static_cast<std::size_t>(setting("FUZZ_FROM", 0));
  std::set<std::string> failed;
  std::vector<int> successes(all.size());
  tellOnDeath();
  std::size_t trial = from;
  for (; Clock::now() < end; ++trial) {
    const Prototype& p = all[trial % all.size()];
    if (failed.count(p.name)) continue;
    std::snprintf(current, sizeof current, "%s: FUZZ_FROM=%zu with --gtest_random_seed=%d\n", p.name.c_str(), trial,
                  GTEST_FLAG_GET(random_seed));
    Random random("fuzz " + std::to_string(trial));
    Trial t(p, random);
    const std::string error = t.run();
    successes[trial % all.size()] += t.succeeded();
    if (error.empty()) continue;
    ADD_FAILURE() << current << error;
    failed.insert(p.name);
  }
  std::printf("%zu trials of %zu exports\n", trial - from, all.size());
  constexpr std::size_t kEnough = 40;
  for (std::size_t k = 0; k < all.size() && trial - from > kEnough * all.size(); ++k)
    EXPECT_TRUE(successes[k] > 0 || failed.count(all[k].name)) << all[k].name << " never succeeded";
}

}  // namespace
}  // namespace ovks::test
