// SPDX-License-Identifier: MIT
#include "support/prototypes.hpp"

#include <algorithm>
#include <regex>

namespace ovks::test {

namespace {

template <class T>
const ElementType* elementOf() {
  if constexpr (std::is_pointer_v<T> || !requires { sizeof(T); }) return nullptr;
  else return &elementType<T>;
}

template <class... P>
void add(std::vector<Prototype>& all, const char* name, const std::string& text, Status (*function)(P...)) {
  static const std::regex shape("(?:const )?([A-Za-z0-9_]+)[ *]+([A-Za-z0-9_]+)");
  std::sregex_iterator next(text.begin(), text.end(), shape);
  const auto parameter = [&]<class T>(std::type_identity<T>) {
    using Pointed = std::remove_pointer_t<T>;
    const std::smatch found = *next++;
    return Parameter{found[1], found[2], std::is_pointer_v<T>, std::is_const_v<Pointed>,
                     elementOf<std::remove_cv_t<Pointed>>()};
  };
  const auto call = [function](const Argument* a) {
    return [=]<std::size_t... k>(std::index_sequence<k...>) { return function(a[k].template as<P>()...); }
    (std::index_sequence_for<P...>());
  };
  const std::vector<Parameter> parameters{parameter(std::type_identity<P>())...};
  if (next != std::sregex_iterator()) std::abort();
  all.push_back({name, parameters, reinterpret_cast<const void*>(function), call});
}

// What returns something else is no working call.
void add(std::vector<Prototype>&, const char*, const std::string&, ...) {}

}  // namespace

bool Parameter::isLength() const {
  return name == "len" || name == "numIters" || name == "tapsLen" || name == "src1Len" || name == "src2Len";
}

std::size_t Prototype::find(std::string_view parameter) const {
  const auto is = [=](const Parameter& p) { return p.name == parameter; };
  return static_cast<std::size_t>(std::find_if(parameters.begin(), parameters.end(), is) - parameters.begin());
}

std::vector<std::size_t> Prototype::vectors(bool sources, bool destinations) const {
  std::vector<std::size_t> found;
  for (std::size_t k = 0; k < parameters.size(); ++k) {
    const Parameter& q = parameters[k];
    const bool isWanted = (sources && (q.isConst || q.isSourceToo())) || (destinations && !q.isConst);
    if (q.isVector() && isWanted) found.push_back(k);
  }
  return found;
}

const Prototype* Prototype::outOfPlace() const {
  const std::size_t at = name.rfind("_I");
  if (at == std::string::npos) return nullptr;
  const std::string scaled = name.substr(at + 2), other = name.substr(0, at) + (scaled.empty() ? "" : "_" + scaled);
  for (const Prototype& p : prototypes()) {
    if (p.name == other) return &p;
  }
  return nullptr;
}

const std::vector<Prototype>& prototypes() {
  static const std::vector<Prototype> all = [] {
    std::vector<Prototype> list;
#define X(name, parameters) add(list, #name, parameters, name);
#include "prototypes.inc"
#undef X
    return list;
  }();
  return all;
}

const Prototype& prototype(std::string_view name) {
  for (const Prototype& p : prototypes()) {
    if (p.name == name) return p;
  }
  std::abort();
}

const Prototype& prototypeOf(const void* function) {
  for (const Prototype& p : prototypes()) {
    if (p.function == function) return p;
  }
  std::abort();
}

}  // namespace ovks::test
