// SPDX-License-Identifier: MIT
#include "support/pages.hpp"

#include <new>

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/mman.h>
#include <unistd.h>
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

bool isWritable(const void* p) {
  MEMORY_BASIC_INFORMATION pages;
  constexpr DWORD kWritable = PAGE_READWRITE | PAGE_WRITECOPY | PAGE_EXECUTE_READWRITE | PAGE_EXECUTE_WRITECOPY;
  return VirtualQuery(p, &pages, sizeof pages) != 0 && (pages.Protect & kWritable) != 0;
}

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

// The system reads into such memory only.
bool isWritable(const void* p) {
  int ends[2];
  if (pipe(ends) != 0) throw std::bad_alloc();
  const bool isSame = write(ends[1], p, 1) == 1 && read(ends[0], const_cast<void*>(p), 1) == 1;
  close(ends[0]);
  close(ends[1]);
  return isSame;
}

#endif

}  // namespace ovks::test
