// SPDX-License-Identifier: MIT
#include "fuzz/trial.hpp"

#include <xmmintrin.h>

#include <algorithm>
#include <climits>

namespace ovks::test {

namespace {

constexpr Status kKnown[] = {
    StatusDivByZero,        StatusOk,           StatusBadArg,      StatusBadSize,    StatusNullPtr,
    StatusDivByZeroErr,     StatusBadDataType,  StatusBadFFTOrder, StatusBadFFTFlag, StatusContextMismatch,
    StatusBadThresholdPair, StatusBadThreshold, StatusBadPhase,    StatusBadShift,   StatusHugeWin,
    StatusBadRoundMode,     StatusBadAlgType};

bool isQuery(const Prototype& p) { return p.name.find("Size") != std::string::npos; }
bool isLength(const Parameter& q) {
  constexpr const char* kNames[] = {"len", "numIters", "tapsLen", "src1Len", "src2Len"};
  return std::find(std::begin(kNames), std::end(kNames), q.name) != std::end(kNames);
}
bool isObject(const Parameter& q) { return q.isPointer && !q.element && !q.startsWith("pp"); }
bool isFilter(const Prototype& p) { return p.startsWith("ovksFIRSR_"); }

// An operand of elements, not an object, nor work memory.
bool isVector(const Parameter& q) {
  return q.isPointer && q.element && !q.startsWith("pBuf") && !q.startsWith("pSpec");
}
std::vector<std::size_t> vectors(const Prototype& p, bool sources, bool destinations) {
  std::vector<std::size_t> found;
  for (std::size_t k = 0; k < p.parameters.size(); ++k) {
    const Parameter& q = p.parameters[k];
    const bool both = q.name.find("SrcDst") != std::string::npos;
    if (isVector(q) && ((sources && (q.isConst || both)) || (destinations && !q.isConst))) found.push_back(k);
  }
  return found;
}

// The export that does out of place what this one does in place, if there is one.
const Prototype* outOfPlaceOf(const Prototype& p) {
  const std::size_t at = p.name.rfind("_I");
  if (at == std::string::npos) return nullptr;
  const std::string rest = p.name.substr(at + 2), name = p.name.substr(0, at) + (rest.empty() ? "" : "_" + rest);
  for (const Prototype& other : prototypes()) {
    if (other.name == name) return &other;
  }
  return nullptr;
}

}  // namespace

std::string Trial::run() {
  constexpr unsigned kModes = 0xe040, kMasks = 0x1f80;  // rounding, denormals; all exceptions masked
  control_ = kMasks | (random_.below(2) ? static_cast<unsigned>(random_.bits()) & kModes : 0);
  if (isQuery(p_)) {
    query();
    return error_;
  }
  const Shape s = shape();
  algType_ = s.algType;
  Call call(p_, s, random_);
  call.place();
  const Status status = execute(call);
  succeeded_ = status >= 0;
  const Results want = call.results();
  elsewhere(call, status, want);
  outOfPlace(call, status, want);
  if (random_.below(4) == 0) overlapped(call);
  spoiled(call);
  return error_;
}

int Trial::length() {
  const int kind = random_.below(1000);
  return random_.between(1, kind < 750 ? 140 : kind < 975 ? 4200 : kind < 998 ? 70000 : 400000);
}

Shape Trial::shape() {
  constexpr FFTFlag kFlags[] = {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv};
  Shape s;
  s.len = length();
  s.len2 = std::min(length(), std::max(1, 2000000 / s.len));
  const int kind = random_.below(1000);
  s.order = random_.between(0, kind < 950 ? 11 : kind < 995 ? 16 : 20);
  s.flag = kFlags[random_.below(4)];
  s.algType = random_.below(3);
  return s;
}

int Trial::anyNumber() {
  constexpr int kEdges[] = {0, 1, -1, INT_MAX, INT_MAX - 1, INT_MIN, 1 << 30};
  if (random_.below(4) == 0) return kEdges[random_.below(7)];
  return static_cast<int>(random_.bits()) >> random_.below(32);
}

Place Trial::anywhere(std::size_t elementSize) {
  const int step = random_.below(2) ? static_cast<int>(elementSize) : 1;
  return {random_.below(2) == 0, static_cast<std::size_t>(random_.below(64 / step) * step)};
}

std::vector<Place> Trial::everywhere() {
  std::vector<Place> places;
  for (const Parameter& q : p_.parameters) places.push_back(anywhere(q.element ? q.element->size : 1));
  return places;
}

Status Trial::execute(Call& call) {
  constexpr unsigned kFlags = 0x3f;
  const unsigned before = _mm_getcsr();
  _mm_setcsr(control_);
  const unsigned kept = _mm_getcsr();  // an emulator may know fewer modes
  const Status status = call.run();
  const unsigned after = _mm_getcsr();
  _mm_setcsr(before);
  const std::string& name = call.prototype().name;
  if ((after ^ kept) & ~kFlags) fail(name, " leaves MXCSR ", std::hex, after);
  if (std::find(std::begin(kKnown), std::end(kKnown), status) == std::end(kKnown)) fail("unknown status ", status);
  // Init leaves a header behind which no transform accepts.
  const std::string changed = call.changed(status < 0 && !p_.startsWith("ovksFFTInit"));
  if (!changed.empty()) fail(name, " with status ", status, " has written to ", changed);
  return status;
}

// Size queries take any numbers. They may write a size of 0 on an error.
void Trial::query() {
  Call call(p_, Shape(), random_);
  call.place();
  const bool wild = random_.below(4) > 0;
  for (std::size_t k = 0; k < p_.parameters.size() && wild; ++k) {
    if (!p_.parameters[k].isPointer && random_.below(2)) call.arguments[k].set(anyNumber());
  }
  const Status status = call.run();
  const std::string changed = call.changed(false);
  if (!changed.empty()) fail("has written to ", changed);
  succeeded_ = status == StatusOk;
  for (std::size_t k = 0; k < p_.parameters.size() && status == StatusOk; ++k) {
    if (call.isResult(k) && loadElement<int>(call.bytes(k).data()) < 0) fail("negative ", p_.parameters[k].name);
  }
}

// Which destinations may be which sources.
std::vector<Overlap> Trial::permitted(const Call& call) const {
  std::vector<Overlap> found;
  if (p_.startsWith("ovksConvolve")) return found;
  for (const std::size_t source : vectors(p_, true, false)) {
    const Parameter& q = p_.parameters[source];
    // A product of packed spectra over its first source is that of the sources exchanged, which rounds otherwise.
    const bool exchanges = p_.startsWith("ovksMulP") && q.name == "pSrc1";
    if (!q.isConst || exchanges) continue;
    std::string name = q.name;
    if (const std::size_t at = name.find("Src"); at != std::string::npos) name.replace(at, 3, "Dst");
    while (std::isdigit(static_cast<unsigned char>(name.back()))) name.pop_back();
    const std::size_t k = p_.find(name);
    if (k == p_.parameters.size() || p_.parameters[k].element != q.element || call.size(k) != call.size(source))
      continue;
    found.push_back({k, source, 0});
  }
  return found;
}

void Trial::compare(const Call::Bytes& got, const Call::Bytes& want, std::size_t k, const char* where) {
  const ElementType& type = *p_.parameters[k].element;
  for (std::size_t i = 0; i + type.size <= std::min(got.size(), want.size()); i += type.size) {
    if (type.same(&got[i], &want[i])) continue;
    fail(p_.parameters[k].name, '[', i / type.size, "] is ", type.text(&got[i]), ' ', where, ", else ",
         type.text(&want[i]));
    return;
  }
}

// Neither the place of operands nor a destination that is a source makes a difference.
void Trial::elsewhere(Call& call, Status status, const Results& want) {
  const std::vector<Overlap> sharings = permitted(call);
  const bool shares = !sharings.empty() && random_.below(2);
  const Overlap sharing =
      shares ? sharings[static_cast<std::size_t>(random_.below(static_cast<int>(sharings.size())))] : Overlap();
  call.place(everywhere(), sharing);
  if (const Status s = execute(call); s != status) fail("status ", s, " elsewhere in memory, else ", status);
  // Filtering by transforms cuts blocks of its own in place.
  if (status < 0 || (shares && isFilter(p_) && algType_ != FilterAlgDirect)) return;
  const Results got = call.results();
  for (std::size_t k = 0; k < got.size(); ++k)
    if (call.isResult(k)) compare(got[k], want[k], k, shares ? "in place" : "elsewhere in memory");
}

// Any result will do, but not a touch of other memory. Sorting trusts positions that it has written.
void Trial::overlapped(Call& call) {
  if (p_.startsWith("ovksSort")) return;
  const auto all = vectors(p_, true, true), written = vectors(p_, false, true);
  if (all.size() < 2 || written.empty()) return;
  const auto one = [&](const auto& v) {
    return v[static_cast<std::size_t>(random_.below(static_cast<int>(v.size())))];
  };
  const std::size_t guest = one(written), host = one(all);
  if (guest == host || call.size(guest) == 0 || call.size(host) == 0) return;
  const int before = static_cast<int>(call.size(guest)) - 1, after = static_cast<int>(call.size(host)) - 1;
  const bool near = random_.below(2);
  const int shift = random_.between(-(near ? std::min(before, 80) : before), near ? std::min(after, 80) : after);
  call.place(everywhere(), {guest, host, shift});
  execute(call);
}

// Does the out-of-place export make the same of the same operands?
void Trial::outOfPlace(const Call& call, Status status, const Results& want) {
  const Prototype* const twin = outOfPlaceOf(p_);
  if (!twin || status < 0) return;
  const auto sources = vectors(p_, true, false), destinations = vectors(p_, false, true);
  const auto twinSources = vectors(*twin, true, false), twinDestinations = vectors(*twin, false, true);
  if (sources.size() != twinSources.size() || destinations.size() != twinDestinations.size()) return;
  Call other(*twin, call.shape(), random_, call.object());
  for (std::size_t k = 0; k < sources.size(); ++k) other.adopt(twinSources[k], call, sources[k]);
  other.place();
  other.adoptConstants(call);
  if (const Status s = execute(other); s != status) fail(twin->name, " returns ", s, ", in place ", status);
  for (std::size_t k = 0; k < destinations.size(); ++k)
    compare(other.bytes(twinDestinations[k]), want[destinations[k]], destinations[k], "out of place");
}

// One argument that the export must refuse.
void Trial::spoiled(Call& call) {
  call.place(everywhere());
  const std::size_t k = static_cast<std::size_t>(random_.below(static_cast<int>(p_.parameters.size())));
  const bool isSpoiled = spoil(call, k);
  if (!isSpoiled) return;
  const Status status = execute(call);
  if (status >= 0) fail("status ", status, " in spite of ", p_.parameters[k].name);
}

bool Trial::spoil(Call& call, std::size_t k) {
  const Parameter& q = p_.parameters[k];
  if (q.isPointer) {
    const bool tagged = !isFilter(p_) && isObject(q) && p_.name.find("Init_") == std::string::npos;
    const bool optional = q.startsWith("pDly") || (!isVector(q) && q.element && call.size(k) == 0);
    if (tagged && random_.below(2)) call.damageTag(k, static_cast<std::int32_t>(random_.bits()));
    else if (!optional) call.arguments[k].set(nullptr);
    return !optional;
  }
  if (isLength(q)) call.arguments[k].set(std::min(0, anyNumber()));
  if (q.name == "order") call.arguments[k].set(random_.below(2) ? random_.between(30, 40) : -random_.between(1, 9));
  if (q.name == "flag") call.arguments[k].set(16 * random_.below(99) + 3);
  if (q.name == "algType") call.arguments[k].set(random_.between(3, 255));
  const bool refused = q.name == "order" || q.name == "flag" || q.name == "algType";
  return refused || isLength(q);
}

}  // namespace ovks::test
