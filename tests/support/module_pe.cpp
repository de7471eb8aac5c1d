// SPDX-License-Identifier: MIT
#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "support/module.hpp"

namespace ovks::test {

namespace {

// A program's pointer to a function of a DLL points to a jump of its own: jmp [rip + offset].
const void* behindImport(const void* function) {
  const auto* code = static_cast<const unsigned char*>(function);
  if (code[0] != 0xff || code[1] != 0x25) return function;
  std::int32_t offset;
  std::memcpy(&offset, code + 2, sizeof offset);
  const void* target;
  std::memcpy(&target, code + 6 + offset, sizeof target);
  return target;
}

}  // namespace

Module::Module(const void* function) {
  HMODULE handle;
  char path[MAX_PATH];
  const auto* inside = static_cast<const char*>(behindImport(function));
  if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS, inside, &handle)) return;
  if (!GetModuleFileNameA(handle, path, sizeof path)) return;
  base_ = reinterpret_cast<const char*>(handle);
  std::ifstream file(path, std::ios::binary);
  file_.assign(std::istreambuf_iterator<char>(file), {});

  const auto start = static_cast<Address>(at<IMAGE_DOS_HEADER>(0).e_lfanew);
  const auto header = at<IMAGE_NT_HEADERS64>(start);
  const IMAGE_DATA_DIRECTORY* directories = header.OptionalHeader.DataDirectory;
  std::vector<Address> begins;
  for (WORD i = 0; i < header.FileHeader.NumberOfSections; ++i) {
    const auto s = at<IMAGE_SECTION_HEADER>(start + sizeof header + i * sizeof(IMAGE_SECTION_HEADER));
    begins.push_back(s.VirtualAddress);
    const DWORD kind = s.Characteristics & (IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE);
    if (kind == 0) constants_[s.VirtualAddress] = s.VirtualAddress + s.Misc.VirtualSize;
    if (kind == IMAGE_SCN_MEM_EXECUTE) code_[s.VirtualAddress] = s.VirtualAddress + s.Misc.VirtualSize;
  }

  const auto list = loaded<IMAGE_EXPORT_DIRECTORY>(directories[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress);
  for (DWORD i = 0; i < list.NumberOfNames; ++i) {
    const auto ordinal = loaded<WORD>(list.AddressOfNameOrdinals + i * sizeof(WORD));
    exported[base_ + loaded<DWORD>(list.AddressOfNames + i * sizeof(DWORD))] =
        loaded<DWORD>(list.AddressOfFunctions + ordinal * sizeof(DWORD));
  }
  for (Address import = directories[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;;
       import += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
    const auto entry = loaded<IMAGE_IMPORT_DESCRIPTOR>(import);
    if (entry.Name == 0) break;
    needed.insert(base_ + entry.Name);
  }

  // Names of more than 8 bytes lie after the symbols.
  const Address symbols = header.FileHeader.PointerToSymbolTable;
  const Address texts = symbols + Address{header.FileHeader.NumberOfSymbols} * IMAGE_SIZEOF_SYMBOL;
  for (Address offset = symbols; offset < texts; offset += IMAGE_SIZEOF_SYMBOL) {
    const auto symbol = at<IMAGE_SYMBOL>(offset);
    if (symbol.SectionNumber > 0 && symbol.N.Name.Short == 0) {
      const Address section = begins[static_cast<std::size_t>(symbol.SectionNumber - 1)];
      internal[&file_[texts + symbol.N.Name.Long]] = section + symbol.Value;
    }
    offset += symbol.NumberOfAuxSymbols * IMAGE_SIZEOF_SYMBOL;
  }
}

}  // namespace ovks::test
