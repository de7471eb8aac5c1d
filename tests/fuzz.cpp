// SPDX-License-Identifier: MIT
// What no call does, over all exports: change the caller's floating-point control, its sources or memory around its
// operands, or depend on where these lie.
//
// Random calls of all exports in turn, two of each, or for FUZZ_SECONDS, from trial FUZZ_FROM (0) on of the sequence
// that belongs to --gtest_random_seed. A crash or a sanitizer's report is preceded or followed by the trial that led to
// it.
#include <chrono>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <set>

#include "support/trial.hpp"

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/common_interface_defs.h>
#endif

namespace ovks::test {
namespace {

char current[200];

void tell() { std::fputs(current, stderr); }

void tellOnDeath() {
#ifdef __SANITIZE_ADDRESS__
  __sanitizer_set_death_callback(tell);
#else
  for (const int number : {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT}) {
    std::signal(number, [](int n) {
      tell();
      std::signal(n, SIG_DFL);
    });
  }
#endif
}

long setting(const char* name, long otherwise) {
  const char* const text = std::getenv(name);
  return text ? std::atol(text) : otherwise;
}

int anyNumber(Random& random) {
  constexpr int kEdges[] = {0, 1, -1, INT_MAX, INT_MAX - 1, INT_MIN, 1 << 30};
  if (random.below(4) == 0) return kEdges[random.below(7)];
  return static_cast<int>(random.bits()) >> random.below(32);
}

int length(Random& random) {
  const int kind = random.below(1000);
  return random.between(1, kind < 750 ? 140 : kind < 975 ? 4200 : kind < 998 ? 70000 : 400000);
}

Shape anyShape(Random& random) {
  constexpr FFTFlag kFlags[] = {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv};
  Shape s;
  s.len = length(random);
  s.len2 = std::min(length(random), std::max(1, 2000000 / s.len));
  const int kind = random.below(1000);
  s.order = random.between(0, kind < 950 ? 11 : kind < 995 ? 16 : 20);
  s.flag = kFlags[random.below(4)];
  s.algType = random.below(3);
  return s;
}

template <class T>
const T& oneOf(const std::vector<T>& v, Random& random) {
  return v[static_cast<std::size_t>(random.below(static_cast<int>(v.size())))];
}

// Size queries take any numbers. They may write a size of 0 on an error.
std::string query(Call call, Random& random) {
  call.place();
  const bool wild = random.below(4) > 0;
  const Prototype& p = call.prototype();
  for (std::size_t k = 0; k < p.parameters.size(); ++k) {
    if (wild && !p.parameters[k].isPointer && random.below(2)) call.arguments[k].set(anyNumber(random));
  }
  const bool succeeds = call.run() == StatusOk;
  for (const std::size_t k : p.vectors(false, true)) {
    if (succeeds && loadElement<int>(call.bytes(k).data()) < 0) return "negative " + p.parameters[k].name;
  }
  return call.changed(false);
}

// Partly overlapping: any result will do, but not a touch of other memory. Sorting trusts positions that it has
// written.
void overlap(Trial& t, Random& random) {
  const Prototype& p = t.call.prototype();
  const auto all = p.vectors(true, true), written = p.vectors(false, true);
  if (p.startsWith("ovksSort") || all.size() < 2 || written.empty()) return;
  const std::size_t guest = oneOf(written, random), host = oneOf(all, random);
  if (guest == host || t.call.size(guest) == 0 || t.call.size(host) == 0) return;
  const int before = static_cast<int>(t.call.size(guest)) - 1, after = static_cast<int>(t.call.size(host)) - 1;
  const bool near = random.below(2);
  const int shift = random.between(-(near ? std::min(before, 80) : before), near ? std::min(after, 80) : after);
  t.call.place(t.everywhere(), {guest, host, shift});
  t.execute(t.call);
}

// What went wrong, or nothing.
std::string tryOut(const Prototype& p, Random& random) {
  if (p.nameHas("Size")) return query(Call(p, Shape(), random), random);
  const unsigned control = kDefaultControl | (random.below(2) ? static_cast<unsigned>(random.bits()) & kModes : 0);
  Trial t(p, anyShape(random), random, control);
  t.first();
  const std::vector<Overlap> permitted = t.permitted();
  const bool shares = !permitted.empty() && random.below(2);
  // Filtering by transforms cuts blocks of its own in place.
  const bool mayDiffer = shares && p.startsWith("ovksFIRSR_") && t.call.shape().algType != FilterAlgDirect;
  t.again(shares ? oneOf(permitted, random) : Overlap(), mayDiffer);
  t.outOfPlace();
  if (random.below(4) == 0) overlap(t, random);
  return t.error();
}

TEST(Fuzz, RandomCalls) {
  using Clock = std::chrono::steady_clock;
  const long seconds = setting("FUZZ_SECONDS", 0);
  const auto end = Clock::now() + std::chrono::seconds(seconds);
  const std::vector<Prototype>& all = prototypes();
  const auto from = static_cast<std::size_t>(setting("FUZZ_FROM", 0));
  ASSERT_GE(all.size(), 600u);
  std::set<std::string> failed;
  tellOnDeath();
  std::size_t trial = from;
  for (; seconds > 0 ? Clock::now() < end : trial < from + 2 * all.size(); ++trial) {
    const Prototype& p = all[trial % all.size()];
    if (failed.contains(p.name)) continue;
    std::snprintf(current, sizeof current, "%s: FUZZ_FROM=%zu with --gtest_random_seed=%d\n", p.name.c_str(), trial,
                  GTEST_FLAG_GET(random_seed));
    Random random("fuzz " + std::to_string(trial));
    const std::string error = tryOut(p, random);
    if (error.empty()) continue;
    ADD_FAILURE() << current << error;
    failed.insert(p.name);
  }
  std::printf("%zu trials of %zu exports\n", trial - from, all.size());
}

// Large enough for every algorithm that lengths choose, and for stores past the caches.
TEST(Fuzz, LargeCalls) {
  if (setting("FUZZ_SECONDS", 0) > 0) GTEST_SKIP() << "random calls are asked for";
  Shape large;
  large.len = 280001;  // of 64fc, above 4 MiB
  large.len2 = 300;
  large.order = 19;
  large.flag = FFTDivBySqrtN;
  for (const Prototype& p : prototypes()) {
    Random random(p.name);
    // Random constants may make a call one to be refused.
    bool isDone = false;
    for (int tries = 0; tries < 50 && !isDone; ++tries) {
      Trial t(p, large, random, kDefaultControl | kModes);
      isDone = t.first() >= 0;
      EXPECT_EQ(t.error(), "");
    }
    EXPECT_TRUE(isDone) << p.name << " never succeeded";
  }
}

}  // namespace
}  // namespace ovks::test
