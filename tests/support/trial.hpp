// SPDX-License-Identifier: MIT
// Calls of one export with the same operands, which must give the same wherever these lie, touch nothing else, and
// leave the caller's floating-point control as it was.
#pragma once

#include "support/call.hpp"

namespace ovks::test {

inline constexpr unsigned kDefaultControl = 0x1f80;                                 // MXCSR
inline constexpr unsigned kExceptions = 0x3f, kRounding = 0x6000, kModes = 0xe040;  // and denormals

class FloatControl {
 public:
  explicit FloatControl(unsigned control);
  ~FloatControl();

 private:
  unsigned callers_;
};

class Trial {
 public:
  Trial(const Prototype& p, const Shape& shape, Random& random, unsigned control = kDefaultControl)
      : call(p, shape, random), control_(control), random_(random) {}

  // The call whose results the others must repeat. Its operands end at guard pages.
  Status first();
  // The same elsewhere in memory. Of results that may differ only the status counts.
  void again(Overlap overlap = {}, bool mayDiffer = false);
  // The same by the export that works out of place, if there is one.
  void outOfPlace();
  // All of that, and wherever a destination may be a source.
  void repeat();
  // Any call: what it may touch, leave behind and return.
  Status execute(Call& other);
  // Destinations that may be sources.
  std::vector<Overlap> permitted() const;

  // Some place for each of the operands.
  std::vector<Place> everywhere();

  Status status() const { return status_; }
  const std::vector<Bytes>& results() const { return results_; }

  // What went wrong first, or nothing.
  const std::string& error() const { return error_; }
  template <class... T>
  void fail(const T&... what) {
    if (!error_.empty()) return;
    std::ostringstream text;
    text << description();
    (text << ... << what);
    error_ = text.str();
  }

  Call call;
  bool keepsFlags = false;  // whether the exceptions' flags must stay, too

 private:
  void compare(std::size_t k, const Bytes& got, const char* where);
  std::string description() const;

  unsigned control_;
  Random& random_;
  Status status_ = StatusOk;
  std::vector<Bytes> results_;
  std::string error_;
};

}  // namespace ovks::test
