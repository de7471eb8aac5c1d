// SPDX-License-Identifier: MIT
// The built module: what it exports, its table of exports and its entry points.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "ovkcore.h"
#include "ovks.h"
#include "support/module.hpp"

namespace ovks::test {
namespace {

using Address = Module::Address;

const Module& module() {
  static const Module m(reinterpret_cast<const void*>(ovksGetLibVersion));
  return m;
}

const std::vector<std::string> kNames = {
#define X(name) #name,
#include "exports.inc"
#undef X
};

Address slot(const std::string& name) { return module().internal.at("ovksSlot_" + name); }

TEST(Module, ExportsTheDeclaredNamesAndNothingElse) {
  std::vector<std::string> exported;
  for (const auto& symbol : module().exported) exported.push_back(symbol.first);
  EXPECT_EQ(exported, kNames);  // both in byte order
  EXPECT_TRUE(std::is_sorted(kNames.begin(), kNames.end()));
}

TEST(Module, HasOneReadOnlyTableOfCodePointers) {
  const Address table = module().internal.at("ExportTable");
  EXPECT_TRUE(module().isReadOnly(table, 8 * kNames.size()));
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    EXPECT_EQ(slot(kNames[i]), table + 8 * i) << kNames[i];
    const Address code = module().address(module().loaded<const void*>(table + 8 * i));
    EXPECT_TRUE(module().isCode(code)) << kNames[i];
  }
}

// lea r11, [rip + slot]; jmp [r11]
TEST(Module, EntersThroughTheTable) {
  for (const std::string& name : kNames) {
    const Address entry = module().exported.at(name);
    const auto code = module().loaded<std::array<unsigned char, 10>>(entry);
    const std::array<unsigned char, 3> lea = {0x4c, 0x8d, 0x1d}, jmp = {0x41, 0xff, 0x23};
    EXPECT_TRUE(std::equal(lea.begin(), lea.end(), code.begin()) && std::equal(jmp.begin(), jmp.end(), &code[7]))
        << name;
    EXPECT_EQ(entry + 7 + static_cast<Address>(module().loaded<std::int32_t>(entry + 3)), slot(name)) << name;
  }
}

TEST(Module, SharesAllocationByElementSize) {
  const auto implementations = [](const std::vector<std::string>& suffixes) {
    std::set<const void*> found;
    for (const std::string& s : suffixes) found.insert(module().loaded<const void*>(slot("ovksMalloc_" + s)));
    return found.size();
  };
  EXPECT_EQ(implementations({"8u", "8s"}), 1u);
  EXPECT_EQ(implementations({"16s", "16u", "8sc"}), 1u);
  EXPECT_EQ(implementations({"32f", "32s", "32u", "16sc"}), 1u);
  EXPECT_EQ(implementations({"64f", "64s", "32fc", "32sc"}), 1u);
  EXPECT_EQ(implementations({"64fc", "64sc"}), 1u);
}

TEST(Module, NeedsTheCompanionAndTheCRuntimeOnly) {
#ifdef __SANITIZE_ADDRESS__
  GTEST_SKIP() << "sanitizers bring libraries of their own";
#endif
#ifdef _WIN32
  const std::string companion = "ovkcore-9.0.dll";
  const std::set<std::string> allowed = {companion, "msvcrt.dll", "KERNEL32.dll"};
#else
  const std::string companion = "libovkcore-9.0.so";
  const std::set<std::string> allowed = {companion, "libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"};
#endif
  EXPECT_EQ(module().needed.count(companion), 1u);
  for (const Module& m : {module(), Module(reinterpret_cast<const void*>(ovkMalloc))}) {
    for (const std::string& n : m.needed) EXPECT_EQ(allowed.count(n), 1u) << n;
  }
}

}  // namespace
}  // namespace ovks::test
