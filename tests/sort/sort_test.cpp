// SPDX-License-Identifier: MIT
// Every sort of the family against the order that it promises, for each element type.
#include "sort/median_killer.hpp"
#include "support/call.hpp"

namespace ovks::test {
namespace {

// The order promised: NaNs after everything, zeros alike.
template <class T>
bool before(T a, T b) {
  return a < b || (std::isnan(b) && !std::isnan(a));
}

// The elements at these positions, each of which occurs once.
template <class T>
std::vector<T> taken(const std::vector<T>& v, const std::vector<int32_t>& positions) {
  std::vector<bool> seen(v.size());
  std::vector<T> elements;
  for (const int32_t i : positions) {
    elements.push_back(v.at(static_cast<std::size_t>(i)));
    seen[static_cast<std::size_t>(i)] = true;
  }
  EXPECT_EQ(std::count(seen.begin(), seen.end(), false), 0);
  return elements;
}

template <class T>
using Inputs = std::vector<std::pair<std::string_view, std::vector<T>>>;

template <class T>
Inputs<T> inputs(int n) {
  using Limits = std::numeric_limits<T>;
  Random random("sort " + std::to_string(n));
  const auto make = [n](auto f) {
    std::vector<T> v(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = static_cast<T>(f(i));
    return v;
  };
  const auto below = [&](int m) { return random.below(m); };
  Inputs<T> all = {
      {"any values", make([&](int) { return random.value<T>(); })},
      {"any bits", make([&](int) { return static_cast<T>(random.bits()); })},
      {"equal", make([](int) { return 7; })},
      {"two values", make([&](int) { return below(2) ? Limits::max() : Limits::lowest(); })},
      {"few values", make([&](int) { return below(5) * 20; })},
      {"ten bits", make([&](int) { return below(1024) * 4; })},
      {"mostly one value", make([&](int) { return below(100) ? 50 : below(100); })},
      {"ascending", make([&](int i) { return i; })},
      {"descending", make([&](int i) { return n - i; })},
      {"the last alone is large",
       make([&](int i) { return i == n - 1 ? Limits::max() - Limits::max() / 2 : static_cast<T>(i % 2); })},
      {"organ pipe", make([&](int i) { return std::min(i, n - i); })},
      {"nearly sorted", make([&](int i) { return below(50) ? i : below(256); })},
      {"powers", make([&](int) { return uint64_t{1} << below(8 * int{sizeof(T)} - 1); })},
      // What is left after each most frequent value is less than an eighth: every pivot misses the middle.
      {"nested majorities", make([&](int) {
         int level = 0;
         while (level < 30 && below(100) >= 88) ++level;
         return (uint64_t{1} << level) * 3 % 251;
       })},
      {"median-of-three killer", medianKiller<T>(n)},
  };
  if constexpr (std::is_floating_point_v<T>) {
    constexpr T inf = Limits::infinity(), nan = Limits::quiet_NaN(), tiny = Limits::denorm_min();
    const T odd[] = {0, -T{0}, 1, -1, inf, -inf, tiny, -tiny, nan, -nan, Limits::max(), Limits::lowest()};
    all.push_back({"odd floats", make([&](int) { return odd[below(12)]; })});
    all.push_back({"infinities and NaNs", make([&](int) { return odd[4 + below(2) + (below(8) ? 0 : 4)]; })});
  }
  return all;
}

// What the first of the sorts gives is in order; the others must give the same, down to the order of zeros and NaNs,
// and those of positions tell that it has all elements of the input.
template <class T>
void expectSorted(Call& call, const std::vector<T>& input, Bytes& expected) {
  const Prototype& p = call.prototype();
  const Place data{input.size() % 2 == 0, 0}, work{data.atEnd, input.size() % 64};
  call.data(0) = bytesOf(input);
  call.place({data, data, work, work});
  ASSERT_EQ(call.run(), StatusOk);
  ASSERT_EQ(call.changed(false), "");
  std::vector<T> result = sequence<T>(call.bytes(0));
  if (p.has("pDstIdx")) {
    const auto positions = sequence<int32_t>(call.bytes(1));
    result = taken(input, positions);
    ASSERT_TRUE(p.has("pSrc") || bytesOf(result) == call.bytes(0));
    const bool promises = sizeof(T) == 1 || (sizeof(T) == 2 && input.size() <= 1 << 24);
    for (std::size_t i = 1; i < result.size() && promises; ++i)
      ASSERT_TRUE(result[i] != result[i - 1] || positions[i] > positions[i - 1]) << "equal elements at " << i;
  }
  if (expected.empty()) {
    ASSERT_TRUE(p.nameHas("Descend") ? std::is_sorted(result.rbegin(), result.rend(), before<T>)
                                     : std::is_sorted(result.begin(), result.end(), before<T>));
    expected = bytesOf(result);
  }
  ASSERT_TRUE(bytesOf(result) == expected);
}

// All sorts of n elements of type T.
template <class T>
void check(int n, const Inputs<T>& inputs) {
  Random random("sorts");
  Shape shape;
  shape.len = n;
  std::vector<Bytes> ascending(inputs.size()), descending(inputs.size());
  int sorts = 0;
  for (const Prototype& p : prototypes()) {
    const Parameter& q = p.parameters[0];
    if (!p.startsWith("ovksSort") || !q.isPointer || q.element != &elementType<T>) continue;
    Call call(p, shape, random);
    for (std::size_t i = 0; i < inputs.size() && !testing::Test::HasFailure(); ++i) {
      SCOPED_TRACE(testing::Message() << p.name << ' ' << n << " elements, " << inputs[i].first);
      expectSorted(call, inputs[i].second, (p.nameHas("Descend") ? descending : ascending)[i]);
    }
    ++sorts;
  }
  EXPECT_EQ(sorts, 8);
}

template <class T>
class Sort : public testing::Test {};
using Elements = testing::Types<uint8_t, uint16_t, int16_t, uint32_t, int32_t, float, double>;
TYPED_TEST_SUITE(Sort, Elements);

// Lengths that fill the networks' shapes in every way, and one row more; then around each change of method.
TYPED_TEST(Sort, Lengths) {
  std::vector<int> lengths(300);
  std::iota(lengths.begin(), lengths.end(), 1);
  lengths.insert(lengths.end(), {511, 777, 2047, 2048, 4095, 4097, 20000, 65536, 65537, 300000});
  for (const int n : lengths) check<TypeParam>(n, inputs<TypeParam>(n));
}

// Pivots that keep missing the middle, often enough for the guard against quadratic time to take over.
TYPED_TEST(Sort, AMillionElements) {
  Inputs<TypeParam> some = inputs<TypeParam>(1500000);
  std::erase_if(some,
                [](const auto& input) { return input.first != "nested majorities" && input.first != "any bits"; });
  check<TypeParam>(1500000, some);
}

// Positions of more than 24 bits do not fit beside a key's low byte.
TEST(SortLong, PositionsOfWords) {
  constexpr int kMany = (1 << 24) + 1001;
  Random random("words");
  check<int16_t>(kMany, {{"any values", random.vector<int16_t>(kMany)}});
}

TEST(SortBuffer, Size) {
  int size = -1;
  const auto expectSize = [&](int n, DataType type, Status status, int bytes) {
    EXPECT_EQ(ovksSortRadixGetBufferSize(n, type, &size), status) << type;
    EXPECT_EQ(size, bytes) << type;
  };
  for (const int n : {1, 1000, 100000000}) {
    expectSize(n, DataType8u, StatusOk, n + 1024);
    for (const DataType type : {DataType16u, DataType16s}) expectSize(n, type, StatusOk, 2 * n + 2112);
    for (const DataType type : {DataType32u, DataType32s, DataType32f}) expectSize(n, type, StatusOk, 4 * n + 20576);
    expectSize(n, DataType64f, StatusOk, 8 * n + 41152);
  }
  for (const DataType type : {0, 2, 14, 20}) expectSize(8, type, StatusBadDataType, 0);
  expectSize((INT32_MAX - 41152) / 8 + 1, DataType64f, StatusBadSize, 0);
}

}  // namespace
}  // namespace ovks::test
