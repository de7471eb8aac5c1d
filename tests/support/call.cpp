// SPDX-License-Identifier: MIT
#include "support/call.hpp"

#include <map>

namespace ovks::test {

namespace {

DataType dataTypeOf(const std::string& type) {
  static const std::map<std::string, DataType> codes = {
      {"uint8_t", DataType8u},      {"uint16_t", DataType16u}, {"int16_t", DataType16s},
      {"uint32_t", DataType32u},    {"int32_t", DataType32s},  {"float", DataType32f},
      {"Complex32f", DataType32fc}, {"double", DataType64f},   {"Complex64f", DataType64fc}};
  return codes.at(type);
}

// The constants that follow from the shape.
const std::map<std::string, int Shape::*>& shaped() {
  static const std::map<std::string, int Shape::*> all = {
      {"len", &Shape::len},     {"numIters", &Shape::len}, {"src1Len", &Shape::len},     {"src2Len", &Shape::len2},
      {"order", &Shape::order}, {"flag", &Shape::flag},    {"algType", &Shape::algType}, {"tapsLen", &Shape::len2}};
  return all;
}

// "FFTSpec_C_32f" and "Init" make "ovksFFTInit_C_32f".
std::string relative(const std::string& type, const std::string& what) {
  const std::size_t end = type.find('_'), kind = std::min(type.rfind("Spec", end), type.rfind("State", end));
  return "ovks" + type.substr(0, kind) + what + type.substr(end);
}

struct Sizes {
  int object = 0, temporary = 0, work = 0;
};

// What the query of the export's family tells.
Sizes queried(const Prototype& p, const Shape& shape) {
  std::string query, elements = p.parameters[0].type;
  const auto opaque = [](const Parameter& q) { return q.isPointer && !q.element; };
  const auto object = std::find_if(p.parameters.begin(), p.parameters.end(), opaque);
  if (object != p.parameters.end()) query = relative(object->type, "GetSize");
  if (p.startsWith("ovksConvolve_")) query = "ovksConvolveGetBufferSize";
  if (p.startsWith("ovksSortRadix") && p.has("pBuffer")) query = "ovksSortRadixGetBufferSize";
  if (p.startsWith("ovksFIRSR")) {
    query = "ovksFIRSRGetSize";
    if (!p.isInit() && object != p.parameters.end())
      elements = prototype(relative(object->type, "Init")).parameters[0].type;
  }
  Sizes sizes;
  if (query.empty() || query == p.name) return sizes;
  const Prototype& q = prototype(query);
  std::vector<Argument> arguments(q.parameters.size());
  for (std::size_t k = 0; k < arguments.size(); ++k) {
    const Parameter& r = q.parameters[k];
    if (r.startsWith("pBuf")) arguments[k].set(&sizes.work);
    else if (r.isPointer) arguments[k].set(r.name == "pSpecBufferSize" ? &sizes.temporary : &sizes.object);
    else if (r.type == "DataType") arguments[k].set(dataTypeOf(elements));
    else if (r.name != "hint") arguments[k].set(shape.*shaped().at(r.name));
  }
  EXPECT_EQ(q.call(arguments.data()), StatusOk) << query << " for " << p.name;
  return sizes;
}

// Reals of a packed spectrum of n.
int ccsLength(int n) { return 2 * (n / 2 + 1); }

int elements(const Prototype& p, std::size_t k, const Shape& s) {
  const Parameter& q = p.parameters[k];
  if (q.isSize()) return 1;
  if (p.startsWith("ovksFFT")) {
    const int n = 1 << s.order;
    const bool in = q.startsWith("pSrc"), out = q.startsWith("pDst") || q.startsWith("pSrcDst");
    const bool ccs = (out && p.startsWith("ovksFFTFwd_RToCCS")) || (in && p.startsWith("ovksFFTInv_CCSToR"));
    return ccs ? ccsLength(n) : n;
  }
  if (q.name == "pTaps" || q.name == "pSrc2") return p.has("src2Len") || p.has("tapsLen") ? s.len2 : s.len;
  if (q.startsWith("pDly")) return s.len2 - 1;
  if (p.has("src2Len")) return q.startsWith("pDst") ? s.len + s.len2 - 1 : s.len;
  if (p.startsWith("ovksConjCcs") && q.name == "pSrc") return ccsLength(s.len);
  return k > p.find("len") && q.name != "pDstIdx" ? 1 : s.len;
}

std::size_t extent(const Prototype& p, std::size_t k, const Shape& s, const Sizes& sizes) {
  const Parameter& q = p.parameters[k];
  if (q.startsWith("pp")) return sizeof(void*);
  if (q.isVector()) return static_cast<std::size_t>(elements(p, k, s)) * q.element->size;
  return static_cast<std::size_t>(q.isWork() ? sizes.work : q.name == "pSpecBuffer" ? sizes.temporary : sizes.object);
}

}  // namespace

Call::Call(const Prototype& prototype, const Shape& shape, Random& random, std::shared_ptr<Call> object)
    : arguments(prototype.parameters.size()),
      prototype_(&prototype),
      shape_(shape),
      object_(std::move(object)),
      data_(arguments.size()),
      memory_(arguments.size()),
      home_(arguments.size()) {
  const Sizes sizes = queried(prototype, shape);
  for (std::size_t k = 0; k < arguments.size(); ++k) {
    const Parameter& q = prototype.parameters[k];
    if (!q.isPointer) {
      arguments[k] = scalar(q, random);
    } else if (!q.isObject() || prototype.isInit()) {
      fill(k, extent(prototype, k, shape, sizes), random);
    } else {
      if (!object_) {
        object_ = std::make_shared<Call>(test::prototype(relative(q.type, "Init")), shape, random);
        object_->place();
        EXPECT_EQ(object_->run(), StatusOk) << object_->prototype().name;
      }
      const Prototype& init = object_->prototype();
      const std::size_t there = init.find(init.has("pState") ? "pState" : "pSpec");
      (q.isConst ? objectBytes_ : data_[k]) = object_->bytes(there);
      // An FFT's Init tells where it has put the object.
      home_[k] =
          init.has("ppSpec") ? loadElement<std::byte*>(object_->home_[init.find("ppSpec")]) : object_->home_[there];
      arguments[k].set(home_[k]);
    }
  }
}

bool Call::owns(std::size_t k) const {
  const Parameter& q = prototype_->parameters[k];
  return q.isPointer && !(q.isObject() && q.isConst);
}

Argument Call::scalar(const Parameter& q, Random& random) const {
  Argument a;
  if (const auto found = shaped().find(q.name); found != shaped().end()) a.set(shape_.*found->second);
  else if (q.name == "rndMode") a.set(random.below(3));
  else if (q.name == "scaleFactor" && random.below(8)) a.set(random.between(-40, 70));
  else if (q.name == "tapsType") a.set(random.below(2) ? DataType32f : DataType64fc);
  else if (q.name == "dataType") a.set(random.below(2) ? DataType32f : DataType64f);
  else q.element->fill(random, a.bytes.data(), 1);
  // The Kaiser window's range shrinks with its length.
  if (q.name == "alpha" && random.below(2)) {
    const double alpha = random.between(-100, 100) / static_cast<double>(shape_.len);
    if (q.type == "float") a.set(static_cast<float>(alpha));
    else a.set(alpha);
  }
  return a;
}

// Random elements, or some of them over and over.
void Call::fill(std::size_t k, std::size_t bytes, Random& random) {
  const Parameter& q = prototype_->parameters[k];
  data_[k].resize(bytes);
  if (!q.element || q.isWork()) return;
  const std::size_t size = q.element->size, n = bytes / size;
  const std::size_t period = std::min<std::size_t>(n, random.below(4) ? 5003 : 1 + random.bits() % 5);
  q.element->fill(random, data_[k].data(), static_cast<int>(period));
  for (std::size_t i = period * size; i < bytes; ++i) data_[k][i] = data_[k][i - period * size];
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
  if (owns(k)) data_[k] = bytes(k);
  else objectBytes_ = object_->bytes(object_->prototype().find("pSpec"));
}

void Call::place(const std::vector<Place>& places, Overlap overlap) {
  overlap_ = overlap;
  for (std::size_t k = 0; k < data_.size(); ++k) {
    if (!owns(k)) continue;
    const Place place = k < places.size() ? places[k] : Place{true, 0};
    // What work memory and destinations hold before must not matter.
    const Parameter& q = prototype_->parameters[k];
    if (q.isWork() || (isResult(k) && !q.isSourceToo()))
      std::fill(data_[k].begin(), data_[k].end(), static_cast<std::byte>(junk_ += 0x35));
    if (!overlap.touches(k)) {
      home_[k] = memory_[k].put(place, data_[k].data(), size(k));
    } else if (k == overlap.host) {
      const std::ptrdiff_t before = std::max<std::ptrdiff_t>(0, -overlap.shift), start = before + overlap.shift;
      const Bytes& guest = data_[overlap.guest];
      Bytes joint(std::max(static_cast<std::size_t>(before) + size(k), static_cast<std::size_t>(start) + guest.size()));
      std::copy(guest.begin(), guest.end(), joint.begin() + start);
      std::copy(data_[k].begin(), data_[k].end(), joint.begin() + before);
      home_[k] = memory_[k].put(place, joint.data(), joint.size()) + before;
    }
  }
  if (overlap.exists()) home_[overlap.guest] = home_[overlap.host] + overlap.shift;
  for (std::size_t k = 0; k < data_.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    const bool isNone = data_[k].empty() && (q.isWork() || q.name == "pSpecBuffer");
    if (owns(k)) arguments[k].set(isNone ? nullptr : home_[k]);
  }
}

bool Call::isResult(std::size_t k) const {
  const Parameter& q = prototype_->parameters[k];
  return q.isVector() && !q.isConst;
}

std::vector<Bytes> Call::results() const {
  std::vector<Bytes> all(data_.size());
  for (std::size_t k = 0; k < all.size(); ++k) {
    if (isResult(k)) all[k] = bytes(k);
  }
  return all;
}

std::string Call::changed(bool nothingWritten) const {
  if (!objectBytes_.empty() && object_->bytes(object_->prototype().find("pSpec")) != objectBytes_) return "the object";
  if (object_ && !object_->changed(false).empty()) return object_->changed(false) + " of " + object_->prototype().name;
  for (std::size_t k = 0; k < data_.size(); ++k) {
    const Parameter& q = prototype_->parameters[k];
    if (!owns(k)) continue;
    if (k != overlap_.guest && !memory_[k].intact()) return "memory around " + q.name;
    if (overlap_.touches(k)) continue;
    if ((q.isConst || nothingWritten) && bytes(k) != data_[k]) return q.name;
  }
  return {};
}

}  // namespace ovks::test
