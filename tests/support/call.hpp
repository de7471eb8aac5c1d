// SPDX-License-Identifier: MIT
// A call of any export with arguments that fit it: what its memory holds and how much that is follows from the names
// and types in its prototype.
#pragma once

#include <memory>

#include "support/prototypes.hpp"

namespace ovks::test {

// The numbers that the extents of a call's memory depend on.
struct Shape {
  int len = 64;   // also numIters and src1Len
  int len2 = 60;  // src2Len and tapsLen
  int order = 8;
  FFTFlag flag = FFTDivFwdByN;
  FilterAlg algType = FilterAlgAuto;
};

// One operand over another one's memory, so many bytes further on.
struct Overlap {
  static constexpr std::size_t kNone = ~std::size_t{0};
  std::size_t guest = kNone, host = kNone;
  std::ptrdiff_t shift = 0;

  bool exists() const { return guest != kNone; }
  bool touches(std::size_t k) const { return k == guest || k == host; }
};

using Bytes = std::vector<std::byte>;

template <class T>
Bytes bytesOf(const std::vector<T>& x) {
  Bytes bytes(x.size() * sizeof(T));
  if (!x.empty()) std::memcpy(bytes.data(), x.data(), bytes.size());
  return bytes;
}
template <class T>
std::vector<T> sequence(const Bytes& bytes) {
  std::vector<T> x(bytes.size() / sizeof(T));
  if (!x.empty()) std::memcpy(x.data(), bytes.data(), bytes.size());
  return x;
}

class Call {
 public:
  // Random sources and constants. An object that the export takes is initialised for it, or is the one of another call.
  Call(const Prototype& prototype, const Shape& shape, Random& random, std::shared_ptr<Call> object = nullptr);

  const Prototype& prototype() const { return *prototype_; }
  const std::shared_ptr<Call>& object() const { return object_; }
  const Shape& shape() const { return shape_; }

  // What operand k holds before the call. Its size must stay.
  Bytes& data(std::size_t k) { return data_[k]; }
  std::size_t size(std::size_t k) const { return data_[k].size(); }
  // Another operand's bytes, as far as they reach.
  void adopt(std::size_t k, const Bytes& bytes) {
    std::copy_n(bytes.begin(), std::min(bytes.size(), size(k)), data_[k].begin());
  }
  // Another call's constants of the same names.
  void adoptConstants(const Call& other);
  int constant(std::string_view name, int otherwise) const {
    return prototype_->has(name) ? arguments[prototype_->find(name)].as<int>() : otherwise;
  }
  template <class T>
  void setConstant(std::string_view name, T x) {
    if (prototype_->has(name)) arguments[prototype_->find(name)].set(x);
  }
  // Makes the object behind argument k one that no Init has made. To be the last that is done to it.
  void damageTag(std::size_t k, std::int32_t tag);

  // Lays the operands out. Without places they end at guard pages.
  void place(const std::vector<Place>& places = {}, Overlap overlap = {});
  Status run() const { return prototype_->call(arguments.data()); }

  // A result of an operation, not work memory, nor an object.
  bool isResult(std::size_t k) const;
  Bytes bytes(std::size_t k) const { return Bytes(home_[k], home_[k] + size(k)); }
  std::vector<Bytes> results() const;

  // Whether memory around the operands, sources and the object are as they were; with nothing written also the others.
  // Says which operand is not.
  std::string changed(bool nothingWritten) const;

  std::vector<Argument> arguments;  // may be spoiled after place()

 private:
  Argument scalar(const Parameter& q, Random& random) const;
  void fill(std::size_t k, std::size_t bytes, Random& random);
  // Whether the memory of operand k is this call's.
  bool owns(std::size_t k) const;

  const Prototype* prototype_;
  Shape shape_;
  std::shared_ptr<Call> object_;
  Bytes objectBytes_;
  std::vector<Bytes> data_;
  std::vector<Guarded> memory_;
  std::vector<std::byte*> home_;
  Overlap overlap_;
  unsigned char junk_ = 0xb9;  // so that it begins with bytes that make large numbers
};

}  // namespace ovks::test
