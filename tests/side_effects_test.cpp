// SPDX-License-Identifier: MIT
// What no call does, over all exports: touch the heap or the address space, change the caller's floating-point control,
// its sources or memory around its operands.
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <xmmintrin.h>

#include "support/call.hpp"

namespace {
int heapCalls = 0;
}

#ifndef __SANITIZE_ADDRESS__
// In place of the C library's, for the modules too.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t n, std::size_t size);
void* __libc_realloc(void* p, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* p);

void* malloc(std::size_t size) {
  ++heapCalls;
  return __libc_malloc(size);
}
void* calloc(std::size_t n, std::size_t size) {
  ++heapCalls;
  return __libc_calloc(n, size);
}
void* realloc(void* p, std::size_t size) {
  ++heapCalls;
  return __libc_realloc(p, size);
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
  ++heapCalls;
  return __libc_memalign(alignment, size);
}
void free(void* p) {
  ++heapCalls;
  __libc_free(p);
}
void* mmap(void* address, std::size_t size, int protection, int flags, int file, off_t offset) noexcept {
  ++heapCalls;
  return reinterpret_cast<void*>(syscall(SYS_mmap, address, size, protection, flags, file, offset));
}
}
#endif

namespace ovks::test {
namespace {

struct FloatControl {
  unsigned mxcsr;
  std::uint16_t x87;

  static FloatControl get() {
    FloatControl c{_mm_getcsr() & ~0x3fu, 0};
    asm volatile("fnstcw %0" : "=m"(c.x87));
    return c;
  }
  void set() const {
    _mm_setcsr(mxcsr);
    asm volatile("fldcw %0" : : "m"(x87));
  }
  bool operator==(const FloatControl&) const = default;
};

// Upward rounding, denormals as zeros; double precision of the x87.
constexpr FloatControl kUnusual = {0xdfc0, 0x0a7f};

// Whether the call, which random constants may have made one to be refused, was an example of a successful one.
bool check(const Prototype& p, const Shape& shape, Random& random) {
  Call call(p, shape, random);
  call.place();
  const FloatControl before = FloatControl::get();
  kUnusual.set();
  const int callsBefore = heapCalls;
  const Status status = call.run();
  const int calls = heapCalls - callsBefore;
  const FloatControl after = FloatControl::get();
  before.set();
  EXPECT_EQ(calls, 0) << p.name << " allocates or releases memory";
  EXPECT_EQ(after, kUnusual) << p.name << ": MXCSR " << std::hex << after.mxcsr << ", x87 " << after.x87;
  EXPECT_EQ(call.changed(status < 0), "") << p.name;
  return status >= 0;
}

void check(const Prototype& p, const Shape& shape) {
  Random random(p.name);
  bool done = false;
  for (int tries = 0; tries < 50 && !done; ++tries) done = check(p, shape, random);
  EXPECT_TRUE(done) << p.name << " never succeeded";
}

// Small, then large enough for every algorithm that lengths choose, and for stores past the caches.
TEST(SideEffects, None) {
  Shape large;
  large.len = 280001;  // of 64fc, above 4 MiB
  large.len2 = 300;
  large.order = 19;
  large.flag = FFTDivBySqrtN;
  ASSERT_GE(prototypes().size(), 600u);
  for (const Prototype& p : prototypes()) {
    check(p, Shape());
    check(p, large);
  }
}

// The counter counts.
TEST(SideEffects, AllocationIsSeen) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "the sanitizer's own allocator is in place";
#endif
  const int before = heapCalls;
  ovksFree(ovksMalloc_8u(100));
  EXPECT_EQ(heapCalls - before, 2);
}

}  // namespace
}  // namespace ovks::test
