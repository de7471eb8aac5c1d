// SPDX-License-Identifier: MIT
// Sizes and initialisation of specifications.
#include "support/family.hpp"

namespace ovks::test {
namespace {

// What specifications of one kind have of their own.
struct Kind {
  bool isReal, isSplit;
  std::int64_t point;  // bytes of a complex number

  explicit Kind(const Prototype& p)
      : isReal(p.nameHas("_R_")), isSplit(!isReal && p.name.back() != 'c'), point(p.nameHas("64") ? 16 : 8) {}
  int maxOrder() const { return (point == 8 ? 28 : 27) + isReal; }
  int contextId() const { return (point == 8 ? 4 : 7) + (isReal ? 2 : isSplit); }
};

struct Sizes {
  std::int64_t spec, room, work;
};

std::int64_t whole(std::int64_t bytes) { return (bytes + 63) / 64 * 64; }

// Twiddles and work of a complex transform. What exceeds the caches splits off a factor of 16, and later of 256.
Sizes tables(int order, std::int64_t point) {
  const std::int64_t n = std::int64_t{1} << order;
  const int excess = order - (point == 8 ? 18 : 17);
  if (excess <= 0) return {whole(point * n + point), 0, whole(point * n)};
  const Sizes inner = tables(order - (excess <= 4 ? 4 : 8), point);
  const std::int64_t twiddles = point * n / 2 + 520 * point + n / 1024 * (point / 8);
  return {inner.spec + twiddles, 0, std::max({inner.work, point << (excess <= 4 ? 10 : 14), std::int64_t{65536}})};
}

Sizes sizes(const Kind& kind, int order) {
  if (order <= (kind.isReal ? 4 : 6)) return {208, 0, 0};
  const std::int64_t n = std::int64_t{1} << order, complexOrder = order - kind.isReal;
  Sizes s = {256, order > 10 ? whole(kind.point / 2 * (n / 4 + 1)) + 64 : 0, 0};
  if (complexOrder > 6) {
    const Sizes t = tables(static_cast<int>(complexOrder), kind.point);
    s.spec += t.spec + whole((n >> kind.isReal) + 4);
    s.work = t.work + 64;
  }
  if (kind.isReal) s.spec += 2 * kind.point * (order > (kind.point == 8 ? 18 : 17) ? n / 4096 + 1024 : n / 4);
  return s;
}

using GetSize = Status (*)(int order, int flag, AlgHint, int*, int*, int*);

TEST(FftSpec, Sizes) {
  forFamilies<"ovksFFTGetSize_">([](GetSize getSize) {
    const Kind kind(prototypeOf(getSize));
    SCOPED_TRACE(kind.contextId());
    int a = 77, b = 77, c = 77;
    for (const int order : {-1, 31}) EXPECT_EQ(getSize(order, 3, 0, nullptr, nullptr, nullptr), StatusBadFFTOrder);
    EXPECT_EQ(getSize(30, 3, 0, nullptr, &b, &c), StatusNullPtr);
    EXPECT_EQ(getSize(30, 3, 0, &a, nullptr, &c), StatusNullPtr);
    EXPECT_EQ(getSize(30, 3, 0, &a, &b, nullptr), StatusNullPtr);
    EXPECT_EQ(getSize(kind.maxOrder() + 1, 3, 0, &a, &b, &c), StatusBadFFTFlag);
    EXPECT_EQ(getSize(kind.maxOrder() + 1, 8, 0, &a, &b, &c), StatusBadFFTOrder);
    EXPECT_TRUE(a == 77 && b == 77 && c == 77);
    for (int order = 0; order <= kind.maxOrder(); ++order) {
      EXPECT_EQ(getSize(order, 1, -5, &a, &b, &c), StatusOk);
      const Sizes want = sizes(kind, order);
      EXPECT_TRUE(a == want.spec && b == want.room && c == want.work) << order << ": " << a << ' ' << b << ' ' << c;
    }
  });
}

TEST(FftSpec, SizesOfLargeOrders) {
  int sizes[3];
  const auto specSize = [&](GetSize getSize, int order) {
    return getSize(order, FFTNoDiv, AlgHintNone, &sizes[0], &sizes[1], &sizes[2]) == StatusOk ? sizes[0] : 0;
  };
  EXPECT_EQ(specSize(ovksFFTGetSize_C_32fc, 19), 2888640);
  EXPECT_EQ(specSize(ovksFFTGetSize_C_32fc, 27), 673588224);
  EXPECT_EQ(specSize(ovksFFTGetSize_C_32fc, 28), 1347167744);
  EXPECT_EQ(specSize(ovksFFTGetSize_R_32f, 20), 2909120);
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
  EXPECT_TRUE(h.contextId == kind.contextId() && h.order == order && h.hint == 2 && h.reserved == 0);
  EXPECT_EQ(h.forward, flag == FFTDivFwdByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.inverse, flag == FFTDivInvByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.factor, static_cast<T>(flag == FFTNoDiv ? 0 : flag == FFTDivBySqrtN ? 1 / std::sqrt(n) : 1 / n));
  EXPECT_EQ(h.work, std::max(std::int64_t{0}, sizes(kind, order).work - 64));
  if (h.work == 0) return;
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.bitReversal) % 64, 0u);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.twiddles) % 64, 0u);
  const int bits = order - kind.isReal - 2;
  for (int i = 0; i < 1 << bits; ++i) {
    int reversed = 0;
    for (int b = 0; b < bits; ++b) reversed |= (i >> b & 1) << (bits - 1 - b);
    ASSERT_EQ(h.bitReversal[i], 2 * reversed);
  }
  EXPECT_EQ(h.bitReversal[1 << bits], 0);
}

template <class T, class Object>
void checkInit(Status (*init)(Object**, int, int, AlgHint, uint8_t*, uint8_t*)) {
  const Kind kind(prototypeOf(init));
  SCOPED_TRACE(kind.contextId());
  std::vector<uint8_t> area(100000, 0xee), room(10000);
  Object* spec = nullptr;
  uint8_t *p = area.data() + 3, *object = p + (-reinterpret_cast<uintptr_t>(p) & 63);
  Header<T> h;
  const auto after = [&](Status status) {
    std::memcpy(&h, object, sizeof h);
    return status;
  };
  EXPECT_EQ(init(nullptr, -1, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(init(&spec, -1, 3, 0, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, kind.maxOrder() + 1, 3, 0, p, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, 5, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(object[0], 0xee);
  EXPECT_EQ(after(init(&spec, 11, 3, 7, p, nullptr)), StatusBadFFTFlag);
  EXPECT_TRUE(h.contextId == 0 && h.order == 11 && h.hint == 7);
  EXPECT_EQ(after(init(&spec, 11, 4, 7, p, nullptr)), StatusNullPtr);
  EXPECT_EQ(h.contextId, kind.contextId() - kind.isSplit);
  EXPECT_EQ(spec, nullptr);
  for (const int flag : {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv}) {
    for (const int order : {0, 3, 7, 9, 11}) {
      ASSERT_EQ(after(init(&spec, order, flag, 2, p, room.data() + 1)), StatusOk);
      ASSERT_EQ(static_cast<void*>(spec), object);
      checkHeader(h, kind, order, flag);
    }
  }
}

TEST(FftSpec, Init) {
  forFamilies<"ovksFFTInit_C_32", "ovksFFTInit_R_32">([](auto init) { checkInit<float>(init); });
  forFamilies<"ovksFFTInit_C_64", "ovksFFTInit_R_64">([](auto init) { checkInit<double>(init); });
}

}  // namespace
}  // namespace ovks::test
