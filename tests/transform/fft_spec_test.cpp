// SPDX-License-Identifier: MIT
// Sizes and initialisation of specifications.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "ovks.h"

namespace {

using GetSize = Status (*)(int order, int flag, AlgHint, int*, int*, int*);

struct Row {
  int order, spec, room, work;
};
const std::initializer_list<Row> kC32 = {
    {0, 208, 0, 0},
    {6, 208, 0, 0},
    {7, 1088 + 192 + 256, 0, 1024 + 64},
    {10, 8256 + 1088 + 256, 0, 8192 + 64},
    {11, 16448 + 2112 + 256, 2112 + 64, 16384 + 64},
    {18, 2097216 + 262208 + 256, 262208 + 64, 2097152 + 64},
    {19, 2888640, 524352 + 64, 262144 + 64},
    {22, 16777216 + 4160 + 4096 + 2097216 + 256 + 4194368, 4194368 + 64, 2097152 + 64},
    {23, 33554432 + 4160 + 8192 + 262208 + 256 + 8388672, 8388672 + 64, 262144 + 64},
    {27, 673588224, 134217792 + 64, 262144 + 64},
    {28, 1347167744, 268435520 + 64, 524288 + 64}};
const std::initializer_list<Row> kR32 = {{4, 208, 0, 0},
                                         {5, 256 + 2 * 64, 0, 0},
                                         {7, 256 + 2 * 256, 0, 0},
                                         {8, 1088 + 192 + 256 + 2 * 512, 0, 1024 + 64},
                                         {11, 8256 + 1088 + 256 + 2 * 4096, 2112 + 64, 8192 + 64},
                                         {19, 2097216 + 262208 + 256 + 2 * 9216, 524352 + 64, 2097152 + 64},
                                         {20, 2909120, 1048640 + 64, 262144 + 64}};
const std::initializer_list<Row> kC64 = {{6, 208, 0, 0},
                                         {7, 2112 + 192 + 256, 0, 2048 + 64},
                                         {11, 32832 + 2112 + 256, 4160 + 64, 32768 + 64},
                                         {17, 2097216 + 131136 + 256, 262208 + 64, 2097152 + 64},
                                         {18, 2097152 + 8320 + 512 + 262208 + 256 + 262208, 524352 + 64, 262144 + 64}};
const std::initializer_list<Row> kR64 = {{4, 208, 0, 0},
                                         {5, 256 + 2 * 128, 0, 0},
                                         {8, 2112 + 192 + 256 + 2 * 1024, 0, 2048 + 64},
                                         {18, 2097216 + 131136 + 256 + 2 * 17408, 524352 + 64, 2097152 + 64}};

void checkSizes(GetSize getSize, std::initializer_list<Row> rows, int maxOrder) {
  for (const Row& r : rows) {
    int spec = -1, room = -1, work = -1;
    EXPECT_EQ(getSize(r.order, FFTNoDiv, AlgHintAccurate, &spec, &room, &work), StatusOk);
    EXPECT_TRUE(spec == r.spec && room == r.room && work == r.work) << r.order << ": " << spec << room << work;
  }
  int a = 77, b = 77, c = 77;
  for (const int order : {-1, 31}) EXPECT_EQ(getSize(order, 3, 0, nullptr, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(getSize(30, 3, 0, nullptr, &b, &c), StatusNullPtr);
  EXPECT_EQ(getSize(30, 3, 0, &a, nullptr, &c), StatusNullPtr);
  EXPECT_EQ(getSize(30, 3, 0, &a, &b, nullptr), StatusNullPtr);
  EXPECT_EQ(getSize(maxOrder + 1, 3, 0, &a, &b, &c), StatusBadFFTFlag);
  EXPECT_EQ(getSize(maxOrder + 1, 8, 0, &a, &b, &c), StatusBadFFTOrder);
  EXPECT_TRUE(a == 77 && b == 77 && c == 77);
  for (int order = 0; order <= maxOrder; ++order) {
    EXPECT_EQ(getSize(order, 1, -5, &a, &b, &c), StatusOk);
    EXPECT_TRUE(a > 0 && b >= 0 && c >= 0) << "order " << order << " overflows";
  }
}

TEST(FftSpec, Sizes) {
  checkSizes(ovksFFTGetSize_C_32fc, kC32, 28);
  checkSizes(ovksFFTGetSize_C_32f, kC32, 28);
  checkSizes(ovksFFTGetSize_R_32f, kR32, 29);
  checkSizes(ovksFFTGetSize_C_64fc, kC64, 27);
  checkSizes(ovksFFTGetSize_C_64f, kC64, 27);
  checkSizes(ovksFFTGetSize_R_64f, kR64, 28);
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
void checkHeader(const Header<T>& h, int contextId, int order, int flag, bool isReal) {
  const double n = std::exp2(order);
  EXPECT_TRUE(h.contextId == contextId && h.order == order && h.hint == 2 && h.reserved == 0);
  EXPECT_EQ(h.forward, flag == FFTDivFwdByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.inverse, flag == FFTDivInvByN || flag == FFTDivBySqrtN);
  EXPECT_EQ(h.factor, static_cast<T>(flag == FFTNoDiv ? 0 : flag == FFTDivBySqrtN ? 1 / std::sqrt(n) : 1 / n));
  const int complexOrder = order - isReal, bits = complexOrder - 2;
  EXPECT_EQ(h.work, complexOrder < 7 ? 0 : 2 * int{sizeof(T)} << complexOrder);
  if (complexOrder < 7) return;
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.bitReversal) % 64, 0u);
  EXPECT_EQ(reinterpret_cast<uintptr_t>(h.twiddles) % 64, 0u);
  for (int i = 0; i < 1 << bits; ++i) {
    int reversed = 0;
    for (int b = 0; b < bits; ++b) reversed |= (i >> b & 1) << (bits - 1 - b);
    ASSERT_EQ(h.bitReversal[i], 2 * reversed);
  }
  EXPECT_EQ(h.bitReversal[1 << bits], 0);
}

template <class T, class Object>
void checkInit(Status (*init)(Object**, int, int, AlgHint, uint8_t*, uint8_t*), int contextId, int maxOrder,
               bool isReal = false, bool isSplit = false) {
  SCOPED_TRACE(contextId);
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
  EXPECT_EQ(init(&spec, maxOrder + 1, 3, 0, p, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, 5, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(object[0], 0xee);
  EXPECT_EQ(after(init(&spec, 11, 3, 7, p, nullptr)), StatusBadFFTFlag);
  EXPECT_TRUE(h.contextId == 0 && h.order == 11 && h.hint == 7);
  EXPECT_EQ(after(init(&spec, 11, 4, 7, p, nullptr)), StatusNullPtr);
  EXPECT_EQ(h.contextId, contextId - isSplit);
  EXPECT_EQ(spec, nullptr);
  for (const int flag : {FFTDivFwdByN, FFTDivInvByN, FFTDivBySqrtN, FFTNoDiv}) {
    for (const int order : {0, 3, 7, 9, 11}) {
      ASSERT_EQ(after(init(&spec, order, flag, 2, p, room.data() + 1)), StatusOk);
      ASSERT_EQ(static_cast<void*>(spec), object);
      checkHeader(h, contextId, order, flag, isReal);
    }
  }
}

TEST(FftSpec, Init) {
  checkInit<float>(ovksFFTInit_C_32fc, 4, 28);
  checkInit<float>(ovksFFTInit_C_32f, 5, 28, false, true);
  checkInit<float>(ovksFFTInit_R_32f, 6, 29, true);
  checkInit<double>(ovksFFTInit_C_64fc, 7, 27);
  checkInit<double>(ovksFFTInit_C_64f, 8, 27, false, true);
  checkInit<double>(ovksFFTInit_R_64f, 9, 28, true);
}

}  // namespace
