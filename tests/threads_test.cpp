// SPDX-License-Identifier: MIT
// Threads at work at once: specifications are shared, all other memory is a thread's own.
#include <atomic>
#include <thread>

#include "support/call.hpp"

namespace ovks::test {
namespace {

constexpr int kThreads = 4, kRounds = 5;

using Result = std::pair<Status, std::vector<Bytes>>;

Result resultOf(Call& call) {
  call.place();
  const Status status = call.run();
  // What a failing call leaves of its results is what was there.
  return {status, status < 0 ? std::vector<Bytes>() : call.results()};
}

// All threads make the same calls, each with its own copies of the operands, and get the same as one alone.
void check(const Prototype& p, const Shape& shape) {
  Random random(p.name);
  Call alone(p, shape, random);
  std::atomic<int> waiting = kThreads;
  std::vector<std::vector<Result>> results(kThreads);
  const auto work = [&](Call call, std::vector<Result>& all) {
    for (std::size_t i = 0; i < p.parameters.size(); ++i) call.adopt(i, alone.data(i));
    call.adoptConstants(alone);
    for (--waiting; waiting > 0;) std::this_thread::yield();
    for (int round = 0; round < kRounds; ++round) all.push_back(resultOf(call));
  };
  std::vector<std::thread> threads;
  for (auto& all : results) threads.emplace_back(work, Call(p, shape, random, alone.object()), std::ref(all));
  for (std::thread& t : threads) t.join();
  EXPECT_TRUE(results == std::vector(kThreads, std::vector(kRounds, resultOf(alone)))) << p.name;
}

TEST(Threads, ShareSpecifications) {
  Shape shape;
  shape.len = 700;
  shape.order = 11;
  for (const Prototype& p : prototypes()) {
    // What Init tells are addresses in the thread's own memory.
    if (p.nameHas("Init_")) continue;
#ifdef __SANITIZE_THREAD__
    // gcc 12 spills the masks of its AVX-512 partition as one byte here, and takes them back as eight.
    if (p.startsWith("ovksSortIndex") || p.startsWith("ovksSortRadixIndex")) continue;
#endif
    check(p, shape);
  }
}

// The first result that is large asks for the cache's size. Large transforms work by blocks.
TEST(Threads, LargeResults) {
  Shape shape;
  shape.len = 600000;
  shape.order = 19;
  for (const char* const name : {"ovksCopy_64fc", "ovksAdd_64f", "ovksFFTFwd_CToC_32fc", "ovksFFTInv_PermToR_64f"})
    check(prototype(name), shape);
}

}  // namespace
}  // namespace ovks::test
