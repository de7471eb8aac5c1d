// SPDX-License-Identifier: MIT
// All exports that return a Status, each behind one face: tests walk over them and call them with arguments that follow
// from their prototypes.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "support/element.hpp"

namespace ovks::test {

struct Parameter {
  std::string type, name;  // as the header writes them, without const and asterisks
  bool isPointer, isConst;
  const ElementType* element;  // of a vector or a constant; null for objects and pointers to pointers

  bool startsWith(std::string_view prefix) const { return name.compare(0, prefix.size(), prefix) == 0; }
  bool isSize() const { return name.size() > 4 && name.compare(name.size() - 4, 4, "Size") == 0; }
  bool isLength() const;
  bool isObject() const { return isPointer && !element && !startsWith("pp"); }
  bool isWork() const { return startsWith("pBuf") && !isSize(); }
  bool isSourceToo() const { return name.find("SrcDst") != std::string::npos; }
  // Elements that are no work memory, nor an object's.
  bool isVector() const { return isPointer && element && !isWork() && (!startsWith("pSpec") || isSize()); }
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
  const void* function;
  std::function<Status(const Argument*)> call;

  // The position of a parameter, or the number of them.
  std::size_t find(std::string_view parameter) const;
  bool has(std::string_view parameter) const { return find(parameter) < parameters.size(); }
  bool startsWith(std::string_view prefix) const { return name.compare(0, prefix.size(), prefix) == 0; }
  bool nameHas(std::string_view part) const { return name.find(part) != std::string::npos; }
  bool isInit() const { return nameHas("Init_"); }
  // The positions of vectors that the call reads, or writes, or both kinds.
  std::vector<std::size_t> vectors(bool sources, bool destinations) const;
  // The export that does out of place what this one does in place, or null.
  const Prototype* outOfPlace() const;
};

const std::vector<Prototype>& prototypes();
const Prototype& prototype(std::string_view name);
const Prototype& prototypeOf(const void* function);
template <class... P>
const Prototype& prototypeOf(Status (*function)(P...)) {
  return prototypeOf(reinterpret_cast<const void*>(function));
}

}  // namespace ovks::test
