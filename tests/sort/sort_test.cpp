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

  // All eight sorts of one input, in memory of exactly its size.
  static void expectSorted(std::span<const T> input, bool atEnd) {
    const std::size_t n = input.size();
    const int len = static_cast<int>(n);
    const Guarded<T> data(n, atEnd), source(n, atEnd);
    const Guarded<int32_t> index(n, atEnd);
    const Guarded<uint8_t> buffer(static_cast<std::size_t>(bufferSize(len)), atEnd);
    const std::span<T> v = data.span();
    const uint64_t before = contents(input);
    const auto reset = [&] { std::copy(input.begin(), input.end(), v.begin()); };
    std::copy(input.begin(), input.end(), source.span().begin());

    for (const bool descending : {false, true}) {
      SCOPED_TRACE(descending ? "descending" : "ascending");
      const auto& sort = kSorts<T>.directions[descending];
      reset();
      ASSERT_EQ(sort.values(v.data(), len), StatusOk);
      ASSERT_TRUE(sorted<T>(v, descending));
      ASSERT_EQ(contents<T>(v), before);
      reset();
      ASSERT_EQ(sort.index(v.data(), index.data(), len), StatusOk);
      ASSERT_TRUE(sorted<T>(v, descending));
      ASSERT_TRUE(permutes<T>(input, index.span(), v));
      ASSERT_TRUE(keepsPositions(v, index.span()));
      reset();
      ASSERT_EQ(sort.radix(v.data(), len, buffer.data()), StatusOk);
      ASSERT_TRUE(sorted<T>(v, descending));
      ASSERT_EQ(contents<T>(v), before);
      std::fill(index.span().begin(), index.span().end(), -1);
      ASSERT_EQ(sort.radixIndex(source.data(), index.data(), len, buffer.data()), StatusOk);
      ASSERT_EQ(std::memcmp(source.data(), input.data(), input.size_bytes()), 0);
      for (std::size_t i = 0; i < n; ++i) v[i] = input[static_cast<std::size_t>(index.span()[i]) % n];
      ASSERT_TRUE(sorted<T>(v, descending));
      ASSERT_TRUE(permutes<T>(input, index.span(), v));
      ASSERT_TRUE(keepsPositions(v, index.span()));
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
