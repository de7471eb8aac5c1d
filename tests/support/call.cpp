// SPDX-License-Identifier: MIT
#include "support/call.hpp"

#include <map>

namespace ovks::test {

namespace {

constexpr std::size_t kPointer = sizeof(void*);

bool endsWith(const std::string& s, std::string_view end) {
  return s.size() >= end.size() && s.compare(s.size() - end.size(), end.size(), end) == 0;
}
bool isWork(const Parameter& q) { return q.startsWith("pBuf") && !endsWith(q.name, "Size"); }
bool isObject(const Parameter& q) { return q.isPointer && !q.element && !q.startsWith("pp"); }
bool isInit(const Prototype& p) { return p.name.find("Init_") != std::string::npos; }

DataType dataTypeOf(const std::string& type) {
  static const std::map<std::string, DataType> codes = {
      {"uint8_t", DataType8u},      {"uint16_t", DataType16u}, {"int16_t", DataType16s},
      {"uint32_t", DataType32u},    {"int32_t", DataType32s},  {"float", DataType32f},
      {"Complex32f", DataType32fc}, {"double", DataType64f},   {"Complex64f", DataType64fc}};
  return codes.at(type);
}

// "FFTSpec_C_32f" and "Init" make "ovksFFTInit_C_32f".
std::string relative(const std::string& type, const std::string& what) {
  const std::size_t end = type.find('_'), kind = std::min(type.rfind("Spec", end), type.rfind("State", end));
  return "ovks" + type.substr(0, kind) + what + type.substr(end);
}
std::string objectType(const Prototype& p) {
  for (const Parameter& q : p.parameters) {
    if (q.isPointer && !q.element) return q.type;
  }
  return {};
}

struct Bytes3 {
  int object = 0, temporary = 0, work = 0;
};

// What the queries of the export's family tell.
Bytes3 queried(const Prototype& p, const Shape& s) {
  Bytes3 n;
  const std::string type = objectType(p);
  Status status = StatusOk;
  if (type.rfind("FFT", 0) == 0) {
    Argument a[6];
    a[0].set(s.order);
    a[1].set(s.flag);
    a[3].set(&n.object);
    a[4].set(&n.temporary);
    a[5].set(&n.work);
    status = prototype(relative(type, "GetSize")).call(a);
  } else if (type.rfind("FIR", 0) == 0) {
    const DataType taps = dataTypeOf(prototype(relative(type, "Init")).parameters[0].type);
    status = ovksFIRSRGetSize(s.len2, taps, &n.object, &n.work);
  } else if (type.rfind("Rand", 0) == 0) {
    Argument a;
    a.set(&n.object);
    status = prototype(relative(type, "GetSize")).call(&a);
  } else if (p.startsWith("ovksConvolve_")) {
    status = ovksConvolveGetBufferSize(s.len, s.len2, dataTypeOf(p.parameters[0].type), s.algType, &n.work);
  } else if (p.startsWith("ovksSortRadix") && p.has("pBuffer")) {
    status = ovksSortRadixGetBufferSize(s.len, dataTypeOf(p.parameters[0].type), &n.work);
  }
  EXPECT_EQ(status, StatusOk) << "size query for " << p.name;
  return n;
}

// Reals of a packed spectrum of n.
int ccsLength(int n) { return 2 * (n / 2 + 1); }

int elements(const Prototype& p, std::size_t k, const Shape& s) {
  const Parameter& q = p.parameters[k];
  if (endsWith(q.name, "Size")) return 1;
  if (p.startsWith("ovksFFT")) {
    const int n = 1 << s.order;
    const bool in = q.startsWith("pSrc"), out = q.startsWith("pDst") || q.startsWith("pSrcDst");
    const bool ccs = (out && p.startsWith("ovksFFTFwd_RToCCS")) || (in && p.startsWith("ovksFFTInv_CCSToR"));
    return !ccs ? n : s.order == 0 ? 2 : n + 2;
  }
  if (q.name == "pTaps" || q.name == "pSrc2") return p.has("src2Len") || p.has("tapsLen") ? s.len2 : s.len;
  if (q.startsWith("pDly")) return s.len2 - 1;
  if (p.has("src2Len")) return q.startsWith("pDst") ? s.len + s.len2 - 1 : s.len;
  if (p.startsWith("ovksConjCcs") && q.name == "pSrc") return ccsLength(s.len);
  return k > p.find("len") && q.name != "pDstIdx" ? 1 : s.len;
}

std::size_t extent(const Prototype& p, std::size_t k, const Shape& s, const Bytes3& n) {
  const Parameter& q = p.parameters[k];
  if (q.startsWith("pp")) return kPointer;
  if (isWork(q)) return static_cast<std::size_t>(n.work);
  if (q.name == "pSpecBuffer") return static_cast<std::size_t>(n.temporary);
  if (isObject(q) || q.name == "pSpec") return static_cast<std::size_t>(n.object);
  return static_cast<std::size_t>(elements(p, k, s)) * q.element->size;
}

}  // namespace

Call::Call(const Prototype& prototype, const Shape& shape, Random& random, std::shared_ptr<Call> object)
    : prototype_(&prototype), shape_(shape), object_(std::move(object)) {
  const std::size_t count = prototype.parameters.size();
  arguments.resize(count);
  data_.resize(count);
  home_.resize(count);
  const Bytes3 sizes = queried(prototype, shape);
  for (std::size_t k = 0; k < count; ++k) {
    const Parameter& q = prototype.parameters[k];
    if (!q.isPointer) {
      arguments[k] = scalar(q, shape, random);
    } else if (isObject(q) && !isInit(prototype)) {
      if (!object_) {
        object_ = std::make_shared<Call>(test::prototype(relative(q.type, "Init")), shape, random);
        object_->place();
        EXPECT_EQ(object_->run(), StatusOk) << object_->prototype().name;
      }
      const Prototype& init = object_->prototype();
      const std::size_t there = init.find(init.has("pState") ? "pState" : "pSpec");
      if (q.isConst) {
        objectBytes_ = object_->bytes(there);
        const std::size_t told = init.find("ppSpec");
        arguments[k].set(init.has("ppSpec") ? loadElement<void*>(object_->address(told)) : object_->address(there));
      } else {
        data_[k] = object_->bytes(there);
      }
    } else {
      fill(k, extent(prototype, k, shape, sizes), random);
    }
    memory_.push_back(q.isPointer ? Guarded(data_[k].size()) : Guarded());
  }
}

Argument Call::scalar(const Parameter& q, const Shape& shape, Random& random) const {
  const std::map<std::string, int> shaped = {
      {"len", shape.len},     {"numIters", shape.len}, {"src1Len", shape.len},     {"src2Len", shape.len2},
      {"order", shape.order}, {"flag", shape.flag},    {"algType", shape.algType}, {"tapsLen", shape.len2}};
  Argument a;
  if (const auto found = shaped.find(q.name); found != shaped.end()) a.set(found->second);
  else if (q.name == "rndMode") a.set(random.below(3));
  else if (q.name == "scaleFactor" && random.below(8)) a.set(random.between(-40, 70));
  else if (q.name == "tapsType") a.set(random.below(2) ? DataType32f : DataType64fc);
  else if (q.name == "dataType") a.set(random.below(2) ? DataType32f : DataType64f);
  else q.element->fill(random, a.bytes.data(), 1);
  // The Kaiser window's range shrinks with its length.
  if (q.name == "alpha" && random.below(2)) {
    const double alpha = random.between(-100, 100) / static_cast<double>(shape.len);
    if (q.type == "float") a.set(static_cast<float>(alpha));
    else a.set(alpha);
  }
  return a;
}

// Random elements, or some of them over and over.
void Call::fill(std::size_t k, std::size_t bytes, Random& random) {
  const Parameter& q = prototype_->parameters[k];
  data_[k].resize(bytes);
  if (!q.element) return;
  const std::size_t size = q.element->size, n = bytes / size;
  const std::size_t period = std::min<std::size_t>(n, random.below(4) ? 5003 : 1 + random.bits() % 5);
  q.element->fill(random, data_[k].data(), static_cast<int>(period));
  for (std::size_t i = period * size; i < bytes; ++i) data_[k][i] = data_[k][i - period * size];
}

void Call::adopt(std::size_t k, const Call& other, std::size_t theirs) {
  const Bytes& from = other.data_[theirs];
  std::copy_n(from.begin(), std::min(from.size(), data_[k].size()), data_[k].begin());
}

void Call::adoptConstants(const Call& other) {
  for (std::size_t k = 0; k < arguments.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    if (!q.isPointer) arguments[k] = other.arguments[other.prototype().find(q.name)];
  }
}

void Call::damageTag(std::size_t k, std::int32_t tag) {
  std::byte* const object = arguments[k].as<std::byte*>();
  if (loadElement<std::int32_t>(object) == tag) tag = ~tag;
  std::memcpy(object, &tag, sizeof tag);
  if (prototype_->parameters[k].isConst) objectBytes_ = object_->bytes(object_->prototype().find("pSpec"));
  else data_[k] = bytes(k);
}

void Call::place(const std::vector<Place>& places, Overlap overlap) {
  overlap_ = overlap;
  const auto placeOf = [&](std::size_t k) { return k < places.size() ? places[k] : Place{true, 0}; };
  for (std::size_t k = 0; k < data_.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    if (!q.isPointer || (isObject(q) && q.isConst)) continue;
    // What work memory and destinations hold before must not matter.
    if (isWork(q) || (isResult(k) && q.name.find("Src") == std::string::npos))
      std::fill(data_[k].begin(), data_[k].end(), static_cast<std::byte>(junk_ += 0x35));
    if (!overlap.touches(k)) {
      home_[k] = memory_[k].put(placeOf(k), data_[k].data(), data_[k].size());
    } else if (k == overlap.host) {
      const std::ptrdiff_t before = std::max<std::ptrdiff_t>(0, -overlap.shift), start = before + overlap.shift;
      const Bytes& guest = data_[overlap.guest];
      const auto end =
          std::max(static_cast<std::size_t>(before) + data_[k].size(), static_cast<std::size_t>(start) + guest.size());
      Bytes joint(end);
      std::copy(guest.begin(), guest.end(), joint.begin() + start);
      std::copy(data_[k].begin(), data_[k].end(), joint.begin() + before);
      memory_[k] = Guarded(joint.size());
      home_[k] = memory_[k].put(placeOf(k), joint.data(), joint.size()) + before;
    }
  }
  if (overlap.exists()) home_[overlap.guest] = home_[overlap.host] + overlap.shift;
  for (std::size_t k = 0; k < data_.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    if (!q.isPointer || (isObject(q) && q.isConst)) continue;
    const bool none = data_[k].empty() && (isWork(q) || q.name == "pSpecBuffer");
    arguments[k].set(none ? nullptr : home_[k]);
  }
}

std::byte* Call::address(std::size_t k) const { return home_[k]; }

bool Call::isResult(std::size_t k) const {
  const Parameter& q = prototype_->parameters[k];
  return q.isPointer && !q.isConst && q.element && !isWork(q) && (!q.startsWith("pSpec") || endsWith(q.name, "Size"));
}

Call::Bytes Call::bytes(std::size_t k) const { return Bytes(address(k), address(k) + data_[k].size()); }

std::vector<Call::Bytes> Call::results() const {
  std::vector<Bytes> all(data_.size());
  for (std::size_t k = 0; k < all.size(); ++k) {
    if (isResult(k)) all[k] = bytes(k);
  }
  return all;
}

std::string Call::changed(bool nothingWritten) const {
  for (std::size_t k = 0; k < data_.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    if (!q.isPointer) continue;
    if (isObject(q) && q.isConst) {
      const Prototype& init = object_->prototype();
      if (object_->bytes(init.find("pSpec")) != objectBytes_) return "the object";
      continue;
    }
    if (k != overlap_.guest && !memory_[k].intact()) return "memory around " + q.name;
    if (overlap_.touches(k)) continue;
    if ((q.isConst || nothingWritten) && bytes(k) != data_[k]) return q.name;
  }
  return {};
}

}  // namespace ovks::test
