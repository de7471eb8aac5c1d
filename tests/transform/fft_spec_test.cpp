// SPDX-License-Identifier: MIT
// Sizes, initialisation and the checks of every call.
#include <cstring>

#include "transform/fft_support.hpp"

namespace {

using namespace ovks::test;

struct Row {
  int order, spec, room, work;
};

template <class GetSize>
void checkSizes(GetSize getSize, std::initializer_list<Row> rows) {
  for (const Row& r : rows) {
    int spec = -1, room = -1, work = -1;
    EXPECT_EQ(getSize(r.order, FFTNoDiv, AlgHintAccurate, &spec, &room, &work), StatusOk);
    EXPECT_EQ(spec, r.spec) << r.order;
    EXPECT_EQ(room, r.room) << r.order;
    EXPECT_EQ(work, r.work) << r.order;
  }
}

TEST(FftSpec, Sizes) {
  const std::initializer_list<Row> c32 = {
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
  checkSizes(ovksFFTGetSize_C_32fc, c32);
  checkSizes(ovksFFTGetSize_C_32f, c32);
  const std::initializer_list<Row> r32 = {{4, 208, 0, 0},
                                          {5, 256 + 2 * 64, 0, 0},
                                          {7, 256 + 2 * 256, 0, 0},
                                          {8, 1088 + 192 + 256 + 2 * 512, 0, 1024 + 64},
                                          {11, 8256 + 1088 + 256 + 2 * 4096, 2112 + 64, 8192 + 64},
                                          {19, 2097216 + 262208 + 256 + 2 * 9216, 524352 + 64, 2097152 + 64},
                                          {20, 2909120, 1048640 + 64, 262144 + 64}};
  checkSizes(ovksFFTGetSize_R_32f, r32);
  const std::initializer_list<Row> c64 = {{6, 208, 0, 0},
                                          {7, 2112 + 192 + 256, 0, 2048 + 64},
                                          {11, 32832 + 2112 + 256, 4160 + 64, 32768 + 64},
                                          {17, 2097216 + 131136 + 256, 262208 + 64, 2097152 + 64},
                                          {18, 2097152 + 8320 + 512 + 262208 + 256 + 262208, 524352 + 64, 262144 + 64}};
  checkSizes(ovksFFTGetSize_C_64fc, c64);
  checkSizes(ovksFFTGetSize_C_64f, c64);
  checkSizes(ovksFFTGetSize_R_64f, {{4, 208, 0, 0},
                                    {5, 256 + 2 * 128, 0, 0},
                                    {8, 2112 + 192 + 256 + 2 * 1024, 0, 2048 + 64},
                                    {18, 2097216 + 131136 + 256 + 2 * 17408, 524352 + 64, 2097152 + 64}});
}

template <class GetSize>
void checkSizeErrors(GetSize getSize, int maxOrder) {
  int a = 77, b = 77, c = 77;
  EXPECT_EQ(getSize(-1, 3, 0, nullptr, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(getSize(31, 3, 0, nullptr, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(getSize(30, 3, 0, nullptr, &b, &c), StatusNullPtr);
  EXPECT_EQ(getSize(30, 3, 0, &a, nullptr, &c), StatusNullPtr);
  EXPECT_EQ(getSize(30, 3, 0, &a, &b, nullptr), StatusNullPtr);
  EXPECT_EQ(getSize(maxOrder + 1, 3, 0, &a, &b, &c), StatusBadFFTFlag);
  EXPECT_EQ(getSize(maxOrder + 1, 8, 0, &a, &b, &c), maxOrder < 30 ? StatusBadFFTOrder : StatusOk);
  EXPECT_TRUE(a == 77 && b == 77 && c == 77);
  for (int order = 0; order <= maxOrder; ++order) {
    EXPECT_EQ(getSize(order, 1, -5, &a, &b, &c), StatusOk);
    EXPECT_TRUE(a > 0 && b >= 0 && c >= 0) << "order " << order << " overflows";
  }
}

TEST(FftSpec, SizeErrors) {
  checkSizeErrors(ovksFFTGetSize_C_32fc, 28);
  checkSizeErrors(ovksFFTGetSize_C_32f, 28);
  checkSizeErrors(ovksFFTGetSize_R_32f, 29);
  checkSizeErrors(ovksFFTGetSize_C_64fc, 27);
  checkSizeErrors(ovksFFTGetSize_C_64f, 27);
  checkSizeErrors(ovksFFTGetSize_R_64f, 28);
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

template <class T, class Object>
void checkInit(Status (*init)(Object**, int, int, AlgHint, uint8_t*, uint8_t*), int contextId, int maxOrder, bool real,
               bool split) {
  SCOPED_TRACE(contextId);
  std::vector<uint8_t> area(100000, 0xee), room(10000);
  Object* spec = nullptr;
  uint8_t *p = area.data() + 3, *object = p + (-reinterpret_cast<uintptr_t>(p) & 63);
  const auto header = [&] {
    Header<T> h;
    std::memcpy(&h, object, sizeof h);
    return h;
  };
  EXPECT_EQ(init(nullptr, -1, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(init(&spec, -1, 3, 0, nullptr, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, maxOrder + 1, 3, 0, p, nullptr), StatusBadFFTOrder);
  EXPECT_EQ(init(&spec, 5, 3, 0, nullptr, nullptr), StatusNullPtr);
  EXPECT_EQ(object[0], 0xee);
  EXPECT_EQ(init(&spec, 11, 3, 7, p, nullptr), StatusBadFFTFlag);
  EXPECT_TRUE(header().contextId == 0 && header().order == 11 && header().hint == 7);
  EXPECT_EQ(init(&spec, 11, 4, 7, p, nullptr), StatusNullPtr);
  EXPECT_EQ(header().contextId, split ? contextId - 1 : contextId);
  EXPECT_EQ(spec, nullptr);
  for (const int flag : kFlags) {
    for (const int order : {0, 3, 7, 9, 11}) {
      ASSERT_EQ(init(&spec, order, flag, 2, p, room.data() + 1), StatusOk);
      ASSERT_EQ(static_cast<void*>(spec), object);
      const Header<T> h = header();
      const int complexOrder = order - real;
      EXPECT_TRUE(h.contextId == contextId && h.order == order && h.hint == 2 && h.reserved == 0);
      EXPECT_EQ(h.forward, flag == 1 || flag == 4);
      EXPECT_EQ(h.inverse, flag == 2 || flag == 4);
      const double n = std::exp2(order);
      EXPECT_EQ(h.factor, static_cast<T>(flag == 8 ? 0 : flag == 4 ? 1 / std::sqrt(n) : 1 / n));
      if (complexOrder < 7) {
        EXPECT_EQ(h.work, 0);
        continue;
      }
      EXPECT_EQ(h.work, 2 * int{sizeof(T)} << complexOrder);
      EXPECT_EQ(reinterpret_cast<uintptr_t>(h.bitReversal) % 64, 0u);
      EXPECT_EQ(reinterpret_cast<uintptr_t>(h.twiddles) % 64, 0u);
      const int entries = 1 << (complexOrder - 2);
      for (int i = 0; i < entries; ++i)
        ASSERT_EQ(h.bitReversal[i], static_cast<int>(2 * reversed(i, complexOrder - 2)));
      EXPECT_EQ(h.bitReversal[entries], 0);
    }
  }
}

TEST(FftSpec, Init) {
  checkInit<float>(ovksFFTInit_C_32fc, 4, 28, false, false);
  checkInit<float>(ovksFFTInit_C_32f, 5, 28, false, true);
  checkInit<float>(ovksFFTInit_R_32f, 6, 29, true, false);
  checkInit<double>(ovksFFTInit_C_64fc, 7, 27, false, false);
  checkInit<double>(ovksFFTInit_C_64f, 8, 27, false, true);
  checkInit<double>(ovksFFTInit_R_64f, 9, 28, true, false);
}

// f(spec, buffer, data...) in the order of the checks; nothing is written by any of them.
template <class Good, class Bad, class F>
void checkCalls(const Good& good, Bad* other, int pointers, F f) {
  std::vector<double> x(1000, 3.5);
  void* data[4] = {x.data(), x.data(), x.data(), x.data()};
  EXPECT_EQ(f(nullptr, nullptr, data), StatusNullPtr);
  for (int i = 0; i < pointers; ++i) {
    void* missing[4] = {data[0], data[1], data[2], data[3]};
    missing[i] = nullptr;
    EXPECT_EQ(f(reinterpret_cast<void*>(other), nullptr, missing), StatusContextMismatch);
    EXPECT_EQ(f(good.object, good.buffer, missing), StatusNullPtr);
  }
  EXPECT_EQ(f(good.object, nullptr, data), StatusNullPtr);
  EXPECT_EQ(x, std::vector<double>(1000, 3.5));
}

template <class T>
void checkExecution() {
  using A = Api<T>;
  using C = typename A::Complex;
  const Plan<typename A::C> c(A::sizeC, A::initC, 8, FFTNoDiv);
  const Plan<typename A::S> s(A::sizeS, A::initS, 8, FFTNoDiv);
  const Plan<typename A::R> r(A::sizeR, A::initR, 9, FFTNoDiv);
  for (const auto f : {A::forward, A::inverse}) {
    checkCalls(c, r.object, 2, [f](void* spec, uint8_t* buffer, void** p) {
      return f(static_cast<const C*>(p[0]), static_cast<C*>(p[1]), static_cast<typename A::C*>(spec), buffer);
    });
  }
  for (const auto f : {A::splitForward, A::splitInverse}) {
    checkCalls(s, c.object, 4, [f](void* spec, uint8_t* buffer, void** p) {
      T* q[4];
      for (int i = 0; i < 4; ++i) q[i] = static_cast<T*>(p[i]);
      return f(q[0], q[1], q[2], q[3], static_cast<typename A::S*>(spec), buffer);
    });
  }
  for (const auto* table : {A::toPacked, A::toReal}) {
    for (int layout = 0; layout < 3; ++layout) {
      checkCalls(r, s.object, 2, [f = table[layout]](void* spec, uint8_t* buffer, void** p) {
        return f(static_cast<T*>(p[0]), static_cast<T*>(p[1]), static_cast<typename A::R*>(spec), buffer);
      });
    }
  }
  // What Init did not accept is no specification.
  alignas(64) uint8_t area[256];
  typename A::C* bad = nullptr;
  EXPECT_EQ(A::initC(&bad, 3, 3, 0, area, nullptr), StatusBadFFTFlag);
  C x[8] = {};
  EXPECT_EQ(A::forwardI(x, reinterpret_cast<typename A::C*>(area), nullptr), StatusContextMismatch);
}

TEST(FftSpec, ExecutionChecks) {
  checkExecution<float>();
  checkExecution<double>();
}

}  // namespace
