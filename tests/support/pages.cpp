// SPDX-License-Identifier: MIT
#include "support/pages.hpp"

#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#endif

namespace ovks::test {

#ifdef _WIN32

std::byte* reservePages(std::size_t bytes) {
  void* p = VirtualAlloc(nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_NOACCESS);
  if (!p) throw std::bad_alloc();
  return static_cast<std::byte*>(p);
}

void openPages(std::byte* begin, std::size_t bytes) {
  DWORD before;
  if (!VirtualProtect(begin, bytes, PAGE_READWRITE, &before)) throw std::bad_alloc();
}

void releasePages(std::byte* begin, std::size_t) { VirtualFree(begin, 0, MEM_RELEASE); }

#else

std::byte* reservePages(std::size_t bytes) {
  void* p = mmap(nullptr, bytes, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (p == MAP_FAILED) throw std::bad_alloc();
  return static_cast<std::byte*>(p);
}

void openPages(std::byte* begin, std::size_t bytes) {
  if (mprotect(begin, bytes, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
}

void releasePages(std::byte* begin, std::size_t bytes) { munmap(begin, bytes); }

#endif

}  // namespace ovks::test
