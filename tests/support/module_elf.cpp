// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <elf.h>

#include <fstream>
#include <iterator>

#include "support/module.hpp"

namespace ovks::test {

Module::Module(const void* function) {
  Dl_info info;
  if (!dladdr(function, &info)) return;
  base_ = static_cast<const char*>(info.dli_fbase);
  std::ifstream file(info.dli_fname, std::ios::binary);
  file_.assign(std::istreambuf_iterator<char>(file), {});

  const auto header = at<Elf64_Ehdr>(0);
  for (int i = 0; i < header.e_phnum; ++i) {
    const auto p = at<Elf64_Phdr>(header.e_phoff + i * sizeof(Elf64_Phdr));
    if (p.p_type == PT_GNU_RELRO) constants_[p.p_vaddr] = p.p_vaddr + p.p_memsz;
    if (p.p_type == PT_LOAD && p.p_flags & PF_X) code_[p.p_vaddr] = p.p_vaddr + p.p_memsz;
  }
  const auto section = [&](std::size_t i) { return at<Elf64_Shdr>(header.e_shoff + i * sizeof(Elf64_Shdr)); };
  for (std::size_t i = 0; i < header.e_shnum; ++i) {
    const Elf64_Shdr s = section(i);
    const char* texts = &file_[section(s.sh_link).sh_offset];
    const auto end = s.sh_offset + s.sh_size;
    if (s.sh_type == SHT_DYNSYM || s.sh_type == SHT_SYMTAB) {
      for (auto offset = s.sh_offset; offset < end; offset += sizeof(Elf64_Sym)) {
        const auto symbol = at<Elf64_Sym>(offset);
        if (symbol.st_shndx == SHN_UNDEF || symbol.st_name == 0) continue;
        (s.sh_type == SHT_DYNSYM ? exported : internal)[texts + symbol.st_name] = symbol.st_value;
      }
    } else if (s.sh_type == SHT_DYNAMIC) {
      for (auto offset = s.sh_offset; offset < end; offset += sizeof(Elf64_Dyn)) {
        const auto entry = at<Elf64_Dyn>(offset);
        if (entry.d_tag == DT_NEEDED) needed.insert(texts + entry.d_un.d_val);
      }
    }
  }
}

}  // namespace ovks::test
