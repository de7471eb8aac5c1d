// SPDX-License-Identifier: MIT
// Every sort of the family against the order that it promises, for each element type.
#include "sorts.hpp"

namespace {

template <class T>
class Sort : public testing::Test {
 protected:
  std::mt19937_64 random_{static_cast<uint64_t>(testing::UnitTest::GetInstance()->random_seed())};

  static int bufferSize(int n) {
    int size = -1;
    EXPECT_EQ(ovksSortRadixGetBufferSize(n, kSorts<T>.type, &size), StatusOk);
    return size;
  }

  // All eight sorts of one input, in memory of exactly its size; the work buffer at any address.
  static void expectSorted(std::span<const T> input, bool atEnd) {
    const std::size_t n = input.size();
    const int len = static_cast<int>(n);
    const ovks::test::Place place{atEnd, 0}, anywhere{atEnd, n % 64};
    const std::vector<int32_t> unset(n, -1);
    const std::vector<uint8_t> room(static_cast<std::size_t>(bufferSize(len)));
    ovks::test::Guarded values(input.size_bytes()), index(n * sizeof unset[0]), work(room.size());
    T* v = nullptr;
    int32_t* positions = nullptr;
    uint8_t* buffer = nullptr;
    const auto reset = [&] {
      v = reinterpret_cast<T*>(values.put(place, input.data(), input.size_bytes()));
      positions = reinterpret_cast<int32_t*>(index.put(place, unset.data(), n * sizeof unset[0]));
      buffer = reinterpret_cast<uint8_t*>(work.put(anywhere, room.data(), room.size()));
    };
    const auto intact = [&] { return values.intact() && index.intact() && work.intact(); };
    const uint64_t before = contents(input);

    for (const bool descending : {false, true}) {
      SCOPED_TRACE(descending ? "descending" : "ascending");
      const auto& sort = kSorts<T>.directions[descending];
      const auto inOrder = [&](std::span<const T> x) { return sorted(x, descending) && contents(x) == before; };
      reset();
      ASSERT_EQ(sort.values(v, len), StatusOk);
      ASSERT_TRUE(inOrder({v, n}) && intact());
      reset();
      ASSERT_EQ(sort.radix(v, len, buffer), StatusOk);
      ASSERT_TRUE(inOrder({v, n}) && intact());
      reset();
      ASSERT_EQ(sort.index(v, positions, len), StatusOk);
      ASSERT_TRUE(inOrder({v, n}) && intact());
      ASSERT_TRUE(permutes<T>(input, {positions, n}, {v, n}) && keepsPositions({v, n}, {positions, n}));
      reset();
      ASSERT_EQ(sort.radixIndex(v, positions, len, buffer), StatusOk);
      ASSERT_EQ(std::memcmp(v, input.data(), input.size_bytes()), 0);
      ASSERT_TRUE(intact());
      std::vector<T> inPlace(n);
      for (std::size_t i = 0; i < n; ++i) inPlace[i] = input[static_cast<std::size_t>(positions[i]) % n];
      ASSERT_TRUE(inOrder(inPlace));
      ASSERT_TRUE(permutes<T>(input, {positions, n}, inPlace) && keepsPositions(inPlace, {positions, n}));
    }
  }

  // Narrow elements: positions of equal ones ascend.
  static bool keepsPositions(std::span<const T> v, std::span<const int32_t> index) {
    if (sizeof(T) > 2) return true;
    for (std::size_t i = 1; i < v.size(); ++i) {
      if (v[i] == v[i - 1] && index[i] < index[i - 1]) return false;
    }
    return true;
  }

  void expectSorted(int n) {
    for (const Input<T>& input : inputs<T>(n, random_)) {
      SCOPED_TRACE(testing::Message() << input.name << ", " << n << " elements");
      expectSorted(std::span<const T>(input.v), n % 2);
      if (this->HasFatalFailure()) return;
    }
  }
};

TYPED_TEST_SUITE(Sort, Elements);

// Lengths that fill the networks' shapes in every way, and one row more.
TYPED_TEST(Sort, ShortLengths) {
  for (int n = 1; n <= 300 && !this->HasFatalFailure(); ++n) this->expectSorted(n);
}

// Lengths around each change of method.
TYPED_TEST(Sort, LongLengths) {
  for (const int n : {511, 777, 2047, 2048, 4095, 4097, 20000, 65536, 65537}) {
    this->expectSorted(n);
    if (this->HasFatalFailure()) return;
  }
}

// Pivots that keep missing the middle, often enough for the guard against quadratic time to take over.
TYPED_TEST(Sort, AMillionElements) {
  for (const Input<TypeParam>& input : inputs<TypeParam>(1500000, this->random_)) {
    if (std::string_view(input.name) != "nested majorities" && std::string_view(input.name) != "any bits") continue;
    this->expectSorted(input.v, true);
  }
}

TYPED_TEST(Sort, EverySortGivesTheSameValues) {
  for (const int n : {100, 5000, 300000}) {
    for (const Input<TypeParam>& input : inputs<TypeParam>(n, this->random_)) {
      SCOPED_TRACE(input.name);
      std::vector<uint8_t> buffer(static_cast<std::size_t>(this->bufferSize(n)));
      for (const auto& sort : kSorts<TypeParam>.directions) {
        std::vector<TypeParam> a = input.v, b = input.v;
        std::vector<int32_t> index(a.size());
        sort.values(a.data(), n);
        sort.index(b.data(), index.data(), n);
        EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]), 0);
        b = input.v;
        sort.radix(b.data(), n, buffer.data());
        EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof a[0]), 0);
      }
    }
  }
}

TYPED_TEST(Sort, ChecksItsArguments) {
  TypeParam v[2] = {2, 1};
  int32_t index[2] = {-1, -1};
  uint8_t buffer[1];
  for (const auto& sort : kSorts<TypeParam>.directions) {
    EXPECT_EQ(sort.values(nullptr, 0), StatusNullPtr);
    EXPECT_EQ(sort.values(v, 0), StatusBadSize);
    EXPECT_EQ(sort.index(nullptr, index, 0), StatusNullPtr);
    EXPECT_EQ(sort.index(v, nullptr, 0), StatusNullPtr);
    EXPECT_EQ(sort.index(v, index, -1), StatusBadSize);
    EXPECT_EQ(sort.radix(nullptr, 0, buffer), StatusNullPtr);
    EXPECT_EQ(sort.radix(v, 0, nullptr), StatusNullPtr);
    EXPECT_EQ(sort.radix(v, 0, buffer), StatusBadSize);
    EXPECT_EQ(sort.radixIndex(nullptr, index, 0, buffer), StatusNullPtr);
    EXPECT_EQ(sort.radixIndex(v, nullptr, 0, buffer), StatusNullPtr);
    EXPECT_EQ(sort.radixIndex(v, index, 0, nullptr), StatusNullPtr);
    EXPECT_EQ(sort.radixIndex(v, index, 0, buffer), StatusBadSize);
  }
  EXPECT_EQ(v[0], 2);
  EXPECT_EQ(v[1], 1);
  EXPECT_EQ(index[0], -1);
}

// Positions of more than 24 bits do not fit beside a key's low byte.
TEST(SortLong, PositionsOfWords) {
  const int n = (1 << 24) + 1001;
  std::mt19937_64 random(1);
  std::vector<int16_t> input(n);
  for (int16_t& x : input) x = static_cast<int16_t>(random());
  std::vector<int32_t> index(input.size());
  int size = 0;
  ovksSortRadixGetBufferSize(n, DataType16s, &size);
  std::vector<uint8_t> buffer(static_cast<std::size_t>(size));
  std::vector<int16_t> v = input;
  ASSERT_EQ(ovksSortIndexDescend_16s_I(v.data(), index.data(), n), StatusOk);
  EXPECT_TRUE(sorted<int16_t>(v, true));
  EXPECT_TRUE(permutes<int16_t>(input, index, v));
  ASSERT_EQ(ovksSortRadixIndexDescend_16s(input.data(), index.data(), n, buffer.data()), StatusOk);
  EXPECT_TRUE(permutes<int16_t>(input, index, v));
}

TEST(SortBuffer, Size) {
  struct {
    int type, width, extra;
  } const rows[] = {{1, 1, 1024},   {5, 2, 2112},   {7, 2, 2112},  {9, 4, 20576},
                    {11, 4, 20576}, {13, 4, 20576}, {19, 8, 41152}};
  for (const auto& row : rows) {
    for (const int n : {1, 1000, 100000000}) {
      int size = -1;
      EXPECT_EQ(ovksSortRadixGetBufferSize(n, static_cast<DataType>(row.type), &size), StatusOk);
      EXPECT_EQ(size, row.width * n + row.extra);
    }
  }
  int size = -1;
  EXPECT_EQ(ovksSortRadixGetBufferSize(0, DataType32f, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksSortRadixGetBufferSize(0, DataType32f, &size), StatusBadSize);
  EXPECT_EQ(size, -1);
  for (const int type : {0, 2, 14, 20}) {
    size = -1;
    EXPECT_EQ(ovksSortRadixGetBufferSize(8, static_cast<DataType>(type), &size), StatusBadDataType);
    EXPECT_EQ(size, 0);
  }
  EXPECT_EQ(ovksSortRadixGetBufferSize(INT32_MAX, DataType64f, &size), StatusBadSize);
  EXPECT_EQ(size, 0);
}

}  // namespace
