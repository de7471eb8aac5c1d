// SPDX-License-Identifier: MIT
// All exports that return a Status, each behind one face: tests walk over them and call them with arguments that follow
// from their prototypes.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/harness.hpp"

namespace ovks::test {

struct Parameter {
  std::string type, name;  // as the header writes them, without const and asterisks
  bool isPointer, isConst;
  const ElementType* element;  // of a vector or a constant; null for objects and pointers to pointers

  bool startsWith(std::string_view prefix) const { return name.compare(0, prefix.size(), prefix) == 0; }
};

// One argument's bytes.
struct alignas(16) Argument {
  std::array<std::byte, 16> bytes{};

  template <class T>
  void set(T x) {
    static_assert(sizeof x <= sizeof bytes);
    std::memcpy(bytes.data(), &x, sizeof x);
  }
  template <class T>
  T as() const {
    return loadElement<T>(bytes.data());
  }
};

struct Prototype {
  std::string name;
  std::vector<Parameter> parameters;
  std::function<Status(const Argument*)> call;

  // The position of a parameter, or the number of them.
  std::size_t find(std::string_view parameter) const;
  bool has(std::string_view parameter) const { return find(parameter) < parameters.size(); }
  bool startsWith(std::string_view prefix) const { return name.compare(0, prefix.size(), prefix) == 0; }
};

const std::vector<Prototype>& prototypes();
const Prototype& prototype(std::string_view name);

}  // namespace ovks::test
