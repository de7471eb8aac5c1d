// SPDX-License-Identifier: MIT
// One export under random arguments, valid and spoiled, wherever its operands lie.
#pragma once

#include "support/call.hpp"

namespace ovks::test {

class Trial {
 public:
  Trial(const Prototype& p, Random& random) : p_(p), random_(random) {}

  // What went wrong, or nothing.
  std::string run();

  // Whether a call without spoiled arguments gave results.
  bool succeeded() const { return succeeded_; }

 private:
  using Results = std::vector<Call::Bytes>;

  Shape shape();
  int length();
  int anyNumber();
  Place anywhere(std::size_t elementSize);
  std::vector<Place> everywhere();

  Status execute(Call& call);
  void query();
  void elsewhere(Call& call, Status status, const Results& want);
  void overlapped(Call& call);
  void outOfPlace(const Call& call, Status status, const Results& want);
  void spoiled(Call& call);
  bool spoil(Call& call, std::size_t k);

  std::vector<Overlap> permitted(const Call& call) const;
  void compare(const Call::Bytes& got, const Call::Bytes& want, std::size_t k, const char* where);

  template <class... T>
  void fail(const T&... what) {
    std::ostringstream text;
    (text << ... << what);
    if (error_.empty()) error_ = text.str();
  }

  const Prototype& p_;
  Random& random_;
  unsigned control_ = 0;
  FilterAlg algType_ = FilterAlgAuto;
  bool succeeded_ = false;
  std::string error_;
};

}  // namespace ovks::test
