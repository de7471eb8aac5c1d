// SPDX-License-Identifier: MIT
// The built module: what it exports, its table of exports and its entry points.
#include <dlfcn.h>
#include <elf.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "ovkcore.h"
#include "ovks.h"

namespace {

// The file, and where the loader put it.
class Module {
 public:
  explicit Module(const void* function) {
    Dl_info info;
    if (!dladdr(function, &info)) return;
    std::ifstream file(info.dli_fname, std::ios::binary);
    file_.assign(std::istreambuf_iterator<char>(file), {});
    base_ = static_cast<const char*>(info.dli_fbase);
    const auto header = at<Elf64_Ehdr>(0);
    for (int i = 0; i < header.e_phnum; ++i)
      segments.push_back(at<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr)));
    for (int i = 0; i < header.e_shnum; ++i)
      sections_.push_back(at<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr)));
    for (const Elf64_Shdr& s : sections_) {
      if (s.sh_type != SHT_DYNSYM && s.sh_type != SHT_SYMTAB) continue;
      for (Elf64_Off at = 0; at < s.sh_size; at += sizeof(Elf64_Sym)) read(this->at<Elf64_Sym>(s.sh_offset + at), s);
    }
    for (const Elf64_Shdr& s : sections_) {
      if (s.sh_type != SHT_DYNAMIC) continue;
      for (Elf64_Off at = 0; at < s.sh_size; at += sizeof(Elf64_Dyn)) {
        const auto d = this->at<Elf64_Dyn>(s.sh_offset + at);
        if (d.d_tag == DT_NEEDED) needed.insert(text(s.sh_link, d.d_un.d_val));
      }
    }
  }

  template <class T>
  T loaded(Elf64_Addr address) const {
    T x;
    std::memcpy(&x, base_ + address, sizeof x);
    return x;
  }
  Elf64_Addr address(const void* p) const { return static_cast<Elf64_Addr>(static_cast<const char*>(p) - base_); }

  // Whether a segment of that type and with these flags holds the bytes.
  bool holds(Elf64_Word type, Elf64_Word flags, Elf64_Addr address, Elf64_Addr size) const {
    return std::any_of(segments.begin(), segments.end(), [=](const Elf64_Phdr& p) {
      return p.p_type == type && (p.p_flags & flags) == flags && address >= p.p_vaddr &&
             address + size <= p.p_vaddr + p.p_memsz;
    });
  }

  std::vector<Elf64_Phdr> segments;
  std::map<std::string, Elf64_Addr> exported, internal;
  std::set<std::string> needed;

 private:
  template <class T>
  T at(Elf64_Off offset) const {
    T x{};
    if (offset + sizeof x <= file_.size()) std::memcpy(&x, &file_[offset], sizeof x);
    return x;
  }
  std::string text(Elf64_Word section, Elf64_Off offset) const { return &file_[sections_[section].sh_offset + offset]; }
  void read(const Elf64_Sym& symbol, const Elf64_Shdr& table) {
    if (symbol.st_shndx == SHN_UNDEF || symbol.st_name == 0) return;
    (table.sh_type == SHT_DYNSYM ? exported : internal)[text(table.sh_link, symbol.st_name)] = symbol.st_value;
  }

  std::vector<char> file_;
  const char* base_ = nullptr;
  std::vector<Elf64_Shdr> sections_;
};

const Module& module() {
  static const Module m(reinterpret_cast<const void*>(ovksGetLibVersion));
  return m;
}

const std::vector<std::string> kNames = {
#define X(name) #name,
#include "exports.inc"
#undef X
};

Elf64_Addr slot(const std::string& name) { return module().internal.at("ovksSlot_" + name); }

TEST(Module, ExportsTheDeclaredNamesAndNothingElse) {
  std::vector<std::string> exported;
  for (const auto& symbol : module().exported) exported.push_back(symbol.first);
  EXPECT_EQ(exported, kNames);  // both in byte order
  EXPECT_TRUE(std::is_sorted(kNames.begin(), kNames.end()));
}

TEST(Module, HasOneReadOnlyTableOfCodePointers) {
  const Elf64_Addr table = module().internal.at("ExportTable");
  EXPECT_TRUE(module().holds(PT_GNU_RELRO, 0, table, 8 * kNames.size()));
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    EXPECT_EQ(slot(kNames[i]), table + 8 * i) << kNames[i];
    const Elf64_Addr code = module().address(module().loaded<const void*>(table + 8 * i));
    EXPECT_TRUE(module().holds(PT_LOAD, PF_X, code, 1)) << kNames[i];
  }
}

// lea r11, [rip + slot]; jmp [r11]
TEST(Module, EntersThroughTheTable) {
  for (const std::string& name : kNames) {
    const Elf64_Addr entry = module().exported.at(name);
    const auto code = module().loaded<std::array<unsigned char, 10>>(entry);
    const std::array<unsigned char, 3> lea = {0x4c, 0x8d, 0x1d}, jmp = {0x41, 0xff, 0x23};
    EXPECT_TRUE(std::equal(lea.begin(), lea.end(), code.begin()) && std::equal(jmp.begin(), jmp.end(), &code[7]))
        << name;
    EXPECT_EQ(entry + 7 + static_cast<Elf64_Addr>(module().loaded<std::int32_t>(entry + 3)), slot(name)) << name;
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
  EXPECT_EQ(module().needed.count("libovkcore-9.0.so"), 1u);
  const std::set<std::string> allowed = {"libovkcore-9.0.so", "libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"};
  for (const Module& m : {module(), Module(reinterpret_cast<const void*>(ovkMalloc))}) {
    for (const std::string& n : m.needed) EXPECT_EQ(allowed.count(n), 1u) << n;
  }
}

}  // namespace
