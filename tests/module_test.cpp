// SPDX-License-Identifier: MIT
// The module's table of exports and its entry points, as the loader put them into memory.
#include <array>
#include <map>
#include <set>

#include "support/family.hpp"

namespace ovks::test {
namespace {

using Code = const unsigned char*;

// A program's pointer to a function of a DLL may point to a jump of its own: jmp [rip + offset].
Code behindImport(Code p) {
  return p[0] == 0xff && p[1] == 0x25 ? loadElement<Code>(p + 6 + loadElement<std::int32_t>(p + 2)) : p;
}

const std::map<std::string, Code>& entries() {
  static const std::map<std::string, Code> all = {
#define X(name) {#name, behindImport(reinterpret_cast<Code>(::name))},
#include "exports.inc"
#undef X
  };
  return all;
}

// Of an entry: lea r11, [rip + slot]; jmp [r11]
Code slot(Code entry) { return entry + 7 + loadElement<std::int32_t>(entry + 3); }

TEST(Module, EntersThroughOneReadOnlyTable) {
  Code next = slot(entries().begin()->second);
  for (const auto& [name, entry] : entries()) {  // in the names' order
    const std::array<unsigned char, 3> lea = {0x4c, 0x8d, 0x1d}, jmp = {0x41, 0xff, 0x23};
    EXPECT_TRUE(std::equal(lea.begin(), lea.end(), entry) && std::equal(jmp.begin(), jmp.end(), entry + 7)) << name;
    EXPECT_EQ(slot(entry), next) << name;
    EXPECT_FALSE(isWritable(next)) << name;
    next += sizeof(void*);
  }
}

TEST(Module, SharesAllocationByElementSize) {
  std::map<std::size_t, std::set<Code>> implementations;
  forFamilies<"ovksMalloc_">([&]<class T>(T* (*allocate)(int)) {
    implementations[sizeof(T)].insert(loadElement<Code>(slot(behindImport(reinterpret_cast<Code>(allocate)))));
  });
  for (const auto& [size, all] : implementations) EXPECT_EQ(all.size(), 1u) << size;
}

}  // namespace
}  // namespace ovks::test
