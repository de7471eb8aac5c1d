// SPDX-License-Identifier: MIT
#include "support/trial.hpp"

#include <xmmintrin.h>

namespace ovks::test {

namespace {

// Of the x87: rounds up, to double precision.
constexpr std::uint16_t kUnusual = 0x0a7f;

std::uint16_t x87Control() {
  std::uint16_t control;
  asm volatile("fnstcw %0" : "=m"(control));
  return control;
}
void setX87Control(std::uint16_t control) { asm volatile("fldcw %0" : : "m"(control)); }

}  // namespace

FloatControl::FloatControl(unsigned control) : callers_(_mm_getcsr()) { _mm_setcsr(control); }
FloatControl::~FloatControl() { _mm_setcsr(callers_); }

Status Trial::execute(Call& other) {
  const std::uint16_t x87 = x87Control();
  Status status;
  unsigned before, after;
  std::uint16_t x87Before, x87After;
  {
    const FloatControl control(control_);
    setX87Control(kUnusual);
    before = _mm_getcsr();  // an emulator may know fewer modes
    x87Before = x87Control();
    status = other.run();
    after = _mm_getcsr();
    x87After = x87Control();
    setX87Control(x87);
  }
  if ((before ^ after) & (keepsFlags ? ~0u : ~kExceptions)) fail("leaves MXCSR ", std::hex, after);
  if (x87After != x87Before) fail("leaves x87 control ", std::hex, x87After);
  if (status > 0 && status != StatusDivByZero) fail("unknown status ", status);
  // Init leaves a header behind which no transform accepts.
  const std::string changed = other.changed(status < 0 && !other.prototype().startsWith("ovksFFTInit"));
  if (!changed.empty()) fail("with status ", status, " has written to ", changed);
  return status;
}

Status Trial::first() {
  call.place();
  status_ = execute(call);
  results_ = call.results();
  return status_;
}

void Trial::again(Overlap overlap, bool mayDiffer) {
  const char* const where = overlap.exists() ? "in place" : "elsewhere in memory";
  call.place(everywhere(), overlap);
  if (const Status s = execute(call); s != status_) fail("status ", s, ' ', where, ", else ", status_);
  if (status_ < 0 || mayDiffer) return;
  for (std::size_t k = 0; k < results_.size(); ++k) {
    if (call.isResult(k)) compare(k, call.bytes(k), where);
  }
}

void Trial::outOfPlace() {
  const Prototype& p = call.prototype();
  const Prototype* const twin = p.outOfPlace();
  if (!twin || status_ < 0) return;
  const auto sources = p.vectors(true, false), results = p.vectors(false, true);
  const auto twinSources = twin->vectors(true, false), twinResults = twin->vectors(false, true);
  if (sources.size() != twinSources.size() || results.size() != twinResults.size()) return;
  Call other(*twin, call.shape(), random_, call.object());
  for (std::size_t k = 0; k < sources.size(); ++k) other.adopt(twinSources[k], call.data(sources[k]));
  other.adoptConstants(call);
  other.place();
  if (const Status s = execute(other); s != status_) fail(twin->name, " returns ", s, ", in place ", status_);
  for (std::size_t k = 0; k < results.size(); ++k) compare(results[k], other.bytes(twinResults[k]), "out of place");
}

void Trial::repeat() {
  again();
  for (const Overlap& overlap : permitted()) again(overlap);
  outOfPlace();
}

std::vector<Overlap> Trial::permitted() const {
  const Prototype& p = call.prototype();
  std::vector<Overlap> found;
  for (const std::size_t source : p.vectors(true, false)) {
    const Parameter& q = p.parameters[source];
    // A product of packed spectra over its first source is that of the sources exchanged, which rounds otherwise.
    const bool exchanges = p.startsWith("ovksMulP") && q.name == "pSrc1";
    if (!q.isConst || exchanges || p.startsWith("ovksConvolve")) continue;
    std::string name = q.name;
    if (const std::size_t at = name.find("Src"); at != std::string::npos) name.replace(at, 3, "Dst");
    while (std::isdigit(static_cast<unsigned char>(name.back()))) name.pop_back();
    const std::size_t k = p.find(name);
    if (k == p.parameters.size() || p.parameters[k].element != q.element || call.size(k) != call.size(source)) continue;
    found.push_back({k, source, 0});
  }
  return found;
}

std::vector<Place> Trial::everywhere() {
  std::vector<Place> places;
  for (const Parameter& q : call.prototype().parameters) {
    const int step = q.element && random_.below(2) ? static_cast<int>(q.element->size) : 1;
    places.push_back({random_.below(2) == 0, static_cast<std::size_t>(random_.below(64 / step) * step)});
  }
  return places;
}

void Trial::compare(std::size_t k, const Bytes& got, const char* where) {
  const Parameter& q = call.prototype().parameters[k];
  const Bytes& want = results_[k];
  for (std::size_t i = 0; i + q.element->size <= std::min(got.size(), want.size()); i += q.element->size) {
    if (q.element->same(&got[i], &want[i])) continue;
    return fail(q.name, '[', i / q.element->size, "] is ", q.element->text(&got[i]), ' ', where, ", else ",
                q.element->text(&want[i]));
  }
}

std::string Trial::description() const {
  std::ostringstream text;
  text << call.prototype().name;
  for (std::size_t k = 0; k < call.arguments.size(); ++k) {
    const Parameter& q = call.prototype().parameters[k];
    if (!q.isPointer) text << ' ' << q.name << ' ' << q.element->text(&call.arguments[k]);
  }
  if (control_ != kDefaultControl) text << " MXCSR " << std::hex << control_;
  text << ": ";
  return text.str();
}

}  // namespace ovks::test
