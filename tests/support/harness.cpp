// SPDX-License-Identifier: MIT
#include "support/harness.hpp"

#include <xmmintrin.h>

#include <map>

namespace ovks::test {

namespace {

constexpr unsigned kDefaultControl = 0x1f80, kFlags = 0x3f;
constexpr int kSeparate = -1, kAllShared = -2;

class FloatControl {
 public:
  explicit FloatControl(unsigned control) : callers_(_mm_getcsr()) { _mm_setcsr(control); }
  ~FloatControl() { _mm_setcsr(callers_); }

 private:
  unsigned callers_;
};

using Bytes = std::vector<std::byte>;

struct Call {
  int len;
  RoundMode mode;
  int scaleFactor;
  unsigned control;  // MXCSR
};

class Checker {
 public:
  Checker(const Export& e, int longest) : e_(e), random_(e.name), last_(e.operands.size() - 1) {
    for (const ElementType* type : e.operands) memory_.emplace_back(type->size * static_cast<std::size_t>(longest));
    data_.resize(e.operands.size());
  }

  // One length with one pair of modes: every placement and every aliasing.
  void run(Call call) {
    call.control = floatControl();
    fill(call.len);
    const Bytes result = execute(call, {Place{true, 0}, Place{true, 0}, Place{true, 0}, Place{true, 0}}, kSeparate);
    if (failed()) return;
    judge(call, result);
    std::vector<int> sharings = {kSeparate, kSeparate};
    if (!e_.accumulates) {
      for (std::size_t i = 0; i < last_; ++i) {
        if (isSame(i)) sharings.push_back(static_cast<int>(i));
      }
    }
    if (alike_) sharings.push_back(kAllShared);
    for (std::size_t k = 0; k < sharings.size() && !failed(); ++k) {
      std::vector<Place> places(4);
      if (k > 0) std::generate(places.begin(), places.end(), [&] { return anywhere(); });
      compare(call, execute(call, places, sharings[k]), result, sharings[k]);
    }
  }

  bool failed() const { return failed_; }

 private:
  bool isSame(std::size_t i) const { return e_.isVector[i] && e_.operands[i] == e_.operands[last_]; }

  Place anywhere() {
    const auto size = static_cast<int>(e_.operands[last_]->size);
    const int steps = random_.below(2) ? size : 1;
    return {random_.below(2) == 0, static_cast<std::size_t>(random_.below(64 / steps) * steps)};
  }

  // Integer results must not depend on any of it; exact floating-point ones follow the caller's rounding.
  unsigned floatControl() {
    constexpr unsigned kModes = 0xe040, kRounding = 0x6000;
    const auto bits = static_cast<unsigned>(random_.bits());
    if (e_.operands[last_]->integer) return bits & kModes;
    return e_.exact && bits % 2 ? kDefaultControl | (bits & kRounding) : kDefaultControl;
  }

  void fill(int len) {
    for (std::size_t i = 0; i <= last_; ++i) {
      const int n = e_.isVector[i] ? len : 1;
      data_[i].resize(e_.operands[i]->size * static_cast<std::size_t>(n));
      e_.operands[i]->fill(random_, data_[i].data(), n);
    }
    alike_ = last_ > 0 && random_.below(4) == 0;
    for (std::size_t i = 0; alike_ && i < last_; ++i) {
      if (isSame(i)) data_[i] = data_[last_];
    }
  }

  std::vector<const void*> inputs() const {
    std::vector<const void*> in;
    for (const Bytes& d : data_) in.push_back(d.data());
    return in;
  }

  Bytes execute(const Call& call, const std::vector<Place>& places, int shared) {
    std::vector<void*> operands(last_ + 1);
    const auto sharing = [&](std::size_t i) {
      return isSame(i) && (shared == kAllShared || shared == static_cast<int>(i));
    };
    std::size_t home = last_;
    for (std::size_t i = 0; i <= last_; ++i) {
      operands[i] = memory_[i].put(places[i], data_[i].data(), data_[i].size());
      if (i < last_ && sharing(i)) home = i;
    }
    for (std::size_t i = 0; i <= last_; ++i) {
      if (i == last_ || sharing(i)) operands[i] = operands[home];
    }
    unsigned after;
    {
      const FloatControl control(call.control);
      status_ = e_.call(operands.data(), call.len, call.mode, call.scaleFactor);
      after = _mm_getcsr();
    }
    const unsigned kept = e_.operands[last_]->integer ? ~0u : ~kFlags;
    if ((after & kept) != (call.control & kept)) fail(call, shared, "MXCSR became ", std::hex, after);
    for (std::size_t i = 0; i <= last_; ++i) {
      if (!memory_[i].intact()) fail(call, shared, "wrote outside of operand ", i);
      const bool source = operands[i] != operands[last_];
      if (source && std::memcmp(operands[i], data_[i].data(), data_[i].size()) != 0)
        fail(call, shared, "changed operand ", i);
    }
    const auto* out = static_cast<const std::byte*>(operands[last_]);
    return Bytes(out, out + data_[last_].size());
  }

  void judge(const Call& call, const Bytes& result) {
    const std::vector<const void*> in = inputs();
    Verdict v;
    {
      const FloatControl control(e_.operands[last_]->integer ? kDefaultControl : call.control);
      v = e_.judge(in.data(), result.data(), call.len, call.mode, call.scaleFactor);
    }
    expected_ = v.status;
    if (v.wrong >= 0) failAt(call, kSeparate, v.wrong, result, " instead of ", v.expected);
    if (status_ != v.status) fail(call, kSeparate, "returned ", status_, " instead of ", v.status);
    if (v.status < 0 && result != data_[last_]) fail(call, kSeparate, "wrote in spite of an error");
  }

  void compare(const Call& call, const Bytes& result, const Bytes& first, int shared) {
    const ElementType& type = *e_.operands[last_];
    if (status_ != expected_) fail(call, shared, "returned ", status_, " instead of ", expected_);
    if (expected_ < 0) return;
    for (std::size_t i = 0; i < result.size(); i += type.size) {
      if (type.same(&result[i], &first[i])) continue;
      failAt(call, shared, static_cast<int>(i / type.size), result, ", elsewhere in memory ", type.text(&first[i]));
      return;
    }
  }

  // One message an export is enough.
  template <class... T>
  void fail(const Call& call, int shared, const T&... what) {
    if (std::exchange(failed_, true)) return;
    std::ostringstream head;
    head << e_.name << " len " << call.len;
    if (e_.modes == 2) head << " mode " << call.mode;
    if (e_.modes >= 1) head << " scaleFactor " << call.scaleFactor;
    if (call.control != kDefaultControl) head << " MXCSR " << std::hex << call.control << std::dec;
    if (shared == kAllShared) head << " all operands in one buffer";
    else if (shared >= 0) head << " destination = operand " << shared;
    head << ": ";
    (head << ... << what);
    ADD_FAILURE() << head.str();
  }

  template <class... T>
  void failAt(const Call& call, int shared, int n, const Bytes& result, const T&... what) {
    std::ostringstream at;
    at << "element " << n << " of";
    for (std::size_t i = 0; i <= last_ - !e_.accumulates; ++i) {
      const std::size_t element = e_.isVector[i] ? static_cast<std::size_t>(n) : 0;
      at << ' ' << e_.operands[i]->text(&data_[i][element * e_.operands[i]->size]);
    }
    const ElementType& type = *e_.operands[last_];
    at << " is " << type.text(&result[static_cast<std::size_t>(n) * type.size]);
    fail(call, shared, at.str(), what...);
  }

  const Export& e_;
  Random random_;
  std::size_t last_;
  std::vector<Guarded> memory_;
  std::vector<Bytes> data_;
  bool alike_ = false, failed_ = false;
  Status status_ = StatusOk, expected_ = StatusOk;
};

}  // namespace

std::string exportName(const void* function) {
#define X(name) {reinterpret_cast<const void*>(::name), #name},
  static const std::map<const void*, const char*> names = {
#include "exports.inc"
  };
#undef X
  return names.at(function);
}

std::vector<int> usualLengths() {
  std::vector<int> lengths(140);
  std::iota(lengths.begin(), lengths.end(), 1);
  for (const int n : {255, 256, 257, 1000, 2047, 4099}) lengths.push_back(n);
  return lengths;
}

void check(const Export& e, std::span<const int> lengths) {
  constexpr int kFactors[] = {1,   -1,  2,   4,   7,   8,   9,   12,  14,  15,  16,  17,  18,   30,      31,     32,
                              33,  48,  62,  63,  64,  65,  66,  127, -2,  -5,  -7,  -8,  -9,   -14,     -15,    -16,
                              -17, -19, -20, -30, -31, -32, -33, -62, -63, -64, -65, 128, -128, INT_MIN, INT_MAX};
  std::size_t next = 0;
  Checker checker(e, *std::max_element(lengths.begin(), lengths.end()));
  for (const int len : lengths) {
    for (int round = 0; round < (e.modes ? 4 : 2); ++round) {
      const int factor = round == 0 || !e.modes ? 0 : kFactors[next++ % std::size(kFactors)];
      checker.run({len, e.modes == 2 ? (len + round) % 3 : RoundNear, factor, kDefaultControl});
      if (checker.failed()) return;
    }
  }
}

void checkOn(const Export& e, std::vector<const void*> sources, int len, RoundMode mode, int scaleFactor) {
  Bytes out(e.operands.back()->size * static_cast<std::size_t>(len));
  sources.push_back(out.data());
  std::vector<void*> operands;
  for (const void* p : sources) operands.push_back(const_cast<void*>(p));
  const Status status = e.call(operands.data(), len, mode, scaleFactor);
  const Verdict v = e.judge(sources.data(), out.data(), len, mode, scaleFactor);
  EXPECT_EQ(status, v.status) << e.name;
  EXPECT_EQ(v.wrong, -1) << e.name << " mode " << mode << " scaleFactor " << scaleFactor << ": expected " << v.expected;
}

std::pair<std::vector<std::uint8_t>, std::vector<std::uint8_t>> allBytePairs() {
  std::vector<std::uint8_t> fast, slow;
  for (const unsigned i : allShorts<std::uint16_t>()) {
    fast.push_back(static_cast<std::uint8_t>(i));
    slow.push_back(static_cast<std::uint8_t>(i >> 8));
  }
  return {fast, slow};
}

}  // namespace ovks::test
