// SPDX-License-Identifier: MIT
// Sizes and initialisation of specifications.
#include "support/family.hpp"

namespace ovks::test {
namespace {

// What specifications of one kind have of their own, and what the sizes of each order add up to.
struct Kind {
  std::string_view name;           // its end
  int contextId, maxOrder, point;  // bytes of a complex number
  std::int64_t specs, rooms, works;

  bool isReal() const { return contextId % 3 == 0; }
  bool isSplit() const { return contextId % 3 == 2; }
};
constexpr Kind kKinds[] = {
    {"C_32fc", 4, 28, 8, 2701977904, 536871168, 12845440}, {"C_32f", 5, 28, 8, 2701977904, 536871168, 12845440},
    {"R_32f", 6, 29, 8, 2708447760, 1073742208, 12845440}, {"C_64fc", 7, 27, 16, 2433590960, 536868992, 12844352},
    {"C_64f", 8, 27, 16, 2433590960, 536868992, 12844352}, {"R_64f", 9, 28, 16, 2440240912, 1073740032, 12844352}};

const Kind& kindOf(const Prototype& p) {
  return *std::find_if(kKinds, std::end(kKinds), [&](const Kind& k) { return p.name.ends_with(k.name); });
}

using GetSize = Status (*)(int order, int flag, AlgHint, int*, int*, int*);

TEST(FftSpec, Sizes) {
  forFamilies<"ovksFFTGetSize_">([](GetSize getSize) {
    const Kind& kind = kindOf(prototypeOf(getSize));
    SCOPED_TRACE(kind.name);
    int a = 77, b = 77, c = 77;
    for (const int order : {-1, 31}) EXPECT_EQ(getSize(order, 3, 0, nullptr, nullptr, nullptr), StatusBadFFTOrder);
    EXPECT_EQ(getSize(30, 3, 0, nullptr, &b, &c), StatusNullPtr);
    EXPECT_EQ(getSize(30, 3, 0, &a, nullptr, &c), StatusNullPtr);
    EXPECT_EQ(getSize(30, 3, 0, &a, &b, nullptr), StatusNullPtr);
    EXPECT_EQ(getSize(kind.maxOrder + 1, 3, 0, &a, &b, &c), StatusBadFFTFlag);
    EXPECT_EQ(getSize(kind.maxOrder + 1, 8, 0, &a, &b, &c), StatusBadFFTOrder);
    EXPECT_TRUE(a == 77 && b == 77 && c == 77);
    std::int64_t specs = 0, rooms = 0, works = 0;
    for (int order = 0; order <= kind.maxOrder; ++order, specs += a, rooms += b, works += c)
      EXPECT_EQ(getSize(order, 1, -5, &a, &b, &c), StatusOk);
    EXPECT_TRUE(specs == kind.specs && rooms == kind.rooms && works == kind.works)
        << specs << ' ' << rooms << ' ' << works;
  });
}

TEST(FftSpec, SizesOfLargeOrders) {
  const std::tuple<GetSize, int, int> large[] = {{ovksFFTGetSize_C_32fc, 19, 2888640},
                                                 {ovksFFTGetSize_C_32fc, 27, 673588224},
                                                 {ovksFFTGetSize_C_32fc, 28, 1347167744},
                                                 {ovksFFTGetSize_R_32f, 20, 2909120}};
  for (const auto& [getSize, order, size] : large) {
    int spec = 0, room, work;
    EXPECT_EQ(getSize(order, FFTNoDiv, AlgHintNone, &spec, &room, &work), StatusOk);
    EXPECT_EQ(spec, size);
  }
}

// The header's fields, as every reader of the object may expect them.
template <class T>
struct Header {
  int32_t contextId, order, forward, inverse;
  T factor;
  int32_t hint, work, reserved;
  const int32_t* bitReversal;
  const T* twiddles;
};

template <class T>
void checkHeader(const Header<T>& h, const Kind& kind, int order, int flag) {
  const double n = std::exp2(order);
  EXPECT_TRUE(h.contextId == kind.contextId && h.order == order && h.hint == 2 && h.reserved == 0);
  EXPECT_EQ(h.forward, flag == FFTDivFwdByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.inverse, flag == FFTDivInvByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.factor, static_cast<T>(flag == FFTNoDiv ? 0 : flag == FFTDivBySqrtN ? 1 / std::sqrt(n) : 1 / n));
  const int complexOrder = order - kind.isReal();
  EXPECT_EQ(h.work, complexOrder > 6 ? kind.point << complexOrder : 0);
  if (h.work == 0) return;
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.bitReversal) % 64, 0u);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.twiddles) % 64, 0u);
  const int bits = complexOrder - 2;
  for (int i = 0; i < 1 << bits; ++i) {
    int reversed = 0;
    for (int b = 0; b < bits; ++b) reversed |= (i >> b & 1) << (bits - 1 - b);
    ASSERT_EQ(h.bitReversal[i], 2 * reversed);
  }
  EXPECT_EQ(h.bitReversal[1 << bits], 0);
}

template <class T, class Object>
void checkInit(Status (*init)(Object**, int, int, AlgHint, uint8_t*, uint8_t*)) {
  const Kind& kind = kindOf(prototypeOf(init));
  SCOPED_TRACE(kind.name);
  std::vector<uint8_t> area(100000, 0xee), room(10000);
  Object* spec = nullptr;
  uint8_t *p = area.data() + 3, *object = p + (-reinterpret_cast<uintptr_t>(p) & 63);
  EXPECT_EQ(init(nullptr, -1, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(init(&spec, -1, 3, 0, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, kind.maxOrder + 1, 3, 0, p, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, 5, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(object[0], 0xee);
  const auto header = [object] { return loadElement<Header<T>>(object); };
  EXPECT_EQ(init(&spec, 11, 3, 7, p, nullptr), StatusBadFFTFlag);
  EXPECT_TRUE(header().contextId == 0 && header().order == 11 && header().hint == 7);
  EXPECT_EQ(init(&spec, 11, 4, 7, p, nullptr), StatusNullPtr);
  EXPECT_EQ(header().contextId, kind.contextId - kind.isSplit());
  EXPECT_EQ(spec, nullptr);
  for (const int flag : {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv}) {
    for (const int order : {0, 3, 7, 9, 11}) {
      ASSERT_EQ(init(&spec, order, flag, 2, p, room.data() + 1), StatusOk);
      ASSERT_EQ(static_cast<void*>(spec), object);
      checkHeader(header(), kind, order, flag);
    }
  }
}

TEST(FftSpec, Init) {
  forFamilies<"ovksFFTInit_C_32", "ovksFFTInit_R_32">([](auto init) { checkInit<float>(init); });
  forFamilies<"ovksFFTInit_C_64", "ovksFFTInit_R_64">([](auto init) { checkInit<double>(init); });
}

}  // namespace
}  // namespace ovks::test
