// SPDX-License-Identifier: MIT
// A module as its file describes it, and as the loader put it into memory. Addresses count from the module's begin.
#pragma once

#include <cstdint>
#include <cstring>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace ovks::test {

class Module {
 public:
  using Address = std::uint64_t;

  // The one that holds the function.
  explicit Module(const void* function);

  template <class T>
  T loaded(Address address) const {
    T x;
    std::memcpy(&x, base_ + address, sizeof x);
    return x;
  }
  Address address(const void* p) const { return static_cast<Address>(static_cast<const char*>(p) - base_); }

  // Whether the bytes lie where nothing can be written any more, or in code.
  bool isReadOnly(Address address, Address size) const { return lies(constants_, address, size); }
  bool isCode(Address address) const { return lies(code_, address, 1); }

  std::map<std::string, Address> exported, internal;
  std::set<std::string> needed;

 private:
  using Ranges = std::map<Address, Address>;  // begin and end

  static bool lies(const Ranges& ranges, Address address, Address size) {
    const auto next = ranges.upper_bound(address);
    return next != ranges.begin() && address + size <= std::prev(next)->second;
  }
  // Of the file; zeros after its end.
  template <class T>
  T at(std::uint64_t offset) const {
    T x{};
    if (offset + sizeof x <= file_.size()) std::memcpy(&x, &file_[offset], sizeof x);
    return x;
  }

  std::vector<char> file_;
  const char* base_ = nullptr;
  Ranges constants_, code_;
};

}  // namespace ovks::test
