// SPDX-License-Identifier: MIT
// Every sort of the family against the order that it promises, for each element type.
#include "ovks/cpp/memory.hpp"
#include "sort/median_killer.hpp"
#include "support/family.hpp"

namespace ovks::test {
namespace {

// One of the eight sorts of elements of type T.
template <class T>
struct Sorting {
  std::string name;
  bool descends, givesIndex, inPlace;
  std::function<Status(T*, int32_t*, int, uint8_t*)> call;
};

template <class T>
std::vector<Sorting<T>> sortings() {
  std::vector<Sorting<T>> found;
  forFamilies<"ovksSortAscend", "ovksSortDescend", "ovksSortIndex", "ovksSortRadixAscend", "ovksSortRadixDescend",
              "ovksSortRadixIndex">([&]<class S, class Second, class... More>(Status (*f)(S*, Second, More...)) {
    if constexpr (std::is_same_v<std::remove_const_t<S>, T>) {
      constexpr bool givesIndex = std::is_pointer_v<Second>;
      const std::string name = exportName(reinterpret_cast<const void*>(f));
      const auto call = [f](T* v, [[maybe_unused]] int32_t* index, int n, [[maybe_unused]] uint8_t* buffer) {
        if constexpr (!givesIndex && sizeof...(More) == 0) return f(v, n);
        else if constexpr (!givesIndex) return f(v, n, buffer);
        else if constexpr (sizeof...(More) == 1) return f(v, index, n);
        else return f(v, index, n, buffer);
      };
      found.push_back({name, name.find("Descend") != name.npos, givesIndex, !std::is_const_v<S>, call});
    }
  });
  return found;
}

// The order promised: NaNs after everything, zeros alike.
template <class T>
bool before(T a, T b) {
  if constexpr (std::is_floating_point_v<T>) {
    if (std::isnan(a) || std::isnan(b)) return !std::isnan(a) && std::isnan(b);
  }
  return a < b;
}

// A fingerprint of the elements, whatever their order.
template <class T>
uint64_t contents(std::span<const T> v) {
  uint64_t sum = 0;
  for (const T& x : v) {
    uint64_t bits = 0;
    std::memcpy(&bits, &x, sizeof x);
    bits = (bits ^ bits >> 31 ^ 0x9e3779b97f4a7c15) * 0xbf58476d1ce4e5b9;
    sum += (bits ^ bits >> 29) * 0x94d049bb133111eb;
  }
  return sum;
}

template <class T>
bool sorted(std::span<const T> v, bool descending) {
  for (std::size_t i = 1; i < v.size(); ++i) {
    if (descending ? before(v[i - 1], v[i]) : before(v[i], v[i - 1])) return false;
  }
  return true;
}

bool isPermutation(std::span<const int32_t> index) {
  std::vector<bool> seen(index.size());
  for (const int32_t i : index) {
    const auto at = static_cast<std::size_t>(i);
    if (at >= seen.size() || seen[at]) return false;
    seen[at] = true;
  }
  return true;
}

// Whether the positions of equal elements ascend.
template <class T>
bool keepsPositions(std::span<const T> v, std::span<const int32_t> index) {
  for (std::size_t i = 1; i < v.size(); ++i) {
    if (v[i] == v[i - 1] && index[i] < index[i - 1]) return false;
  }
  return true;
}

template <class T>
struct Input {
  const char* name;
  std::vector<T> v;
};

template <class T>
std::vector<Input<T>> inputs(int n, std::mt19937_64& random) {
  using Limits = std::numeric_limits<T>;
  const auto make = [n](auto f) {
    std::vector<T> v(static_cast<std::size_t>(n));
    for (int i = 0; i < n; ++i) v[static_cast<std::size_t>(i)] = static_cast<T>(f(i));
    return v;
  };
  const auto below = [&](uint64_t m) { return random() % m; };
  // Any bits at all, floats of every kind among them.
  const auto anything = [&](int) {
    const uint64_t bits = random();
    T x;
    std::memcpy(&x, &bits, sizeof x);
    return x;
  };
  std::vector<Input<T>> all = {
      {"any bits", make(anything)},
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
      {"saw", make([&](int i) { return i % 17; })},
      {"nearly sorted", make([&](int i) { return below(50) ? static_cast<uint64_t>(i) : below(256); })},
      {"powers", make([&](int) { return uint64_t{1} << below(sizeof(T) * 8 - 1); })},
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
    all.push_back({"odd floats", make([&](int) { return odd[below(std::size(odd))]; })});
    all.push_back({"infinities and NaNs", make([&](int) { return odd[4 + below(2) + (below(8) ? 0 : 4)]; })});
    all.push_back({"fractions", make([&](int) { return static_cast<T>(static_cast<double>(random()) / 1e18 - 9); })});
  }
  return all;
}

// All sorts of one input, in memory of exactly its size; the work buffer at any address.
template <class T>
void expectSorted(std::span<const T> input, bool atEnd) {
  const std::size_t n = input.size(), bytes = input.size_bytes();
  int roomBytes = -1;
  ASSERT_EQ(ovksSortRadixGetBufferSize(static_cast<int>(n), ovks::detail::DataTypeOf<T>::value, &roomBytes), StatusOk);
  const std::vector<uint8_t> room(static_cast<std::size_t>(roomBytes));
  const std::vector<int32_t> unset(n, -1);
  Guarded values(bytes), index(n * sizeof unset[0]), work(room.size());
  std::vector<T> first[2];
  static const std::vector<Sorting<T>> all = sortings<T>();
  ASSERT_EQ(all.size(), 8u);
  for (const Sorting<T>& sort : all) {
    SCOPED_TRACE(sort.name);
    T* const v = reinterpret_cast<T*>(values.put({atEnd, 0}, input.data(), bytes));
    const auto positions = reinterpret_cast<int32_t*>(index.put({atEnd, 0}, unset.data(), n * sizeof unset[0]));
    const auto buffer = reinterpret_cast<uint8_t*>(work.put({atEnd, n % 64}, room.data(), room.size()));
    ASSERT_EQ(sort.call(v, positions, static_cast<int>(n), buffer), StatusOk);
    ASSERT_TRUE(values.intact() && index.intact() && work.intact());
    std::vector<T> result(v, v + n);
    if (sort.givesIndex) {
      ASSERT_TRUE(isPermutation({positions, n}));
      for (std::size_t i = 0; i < n; ++i) result[i] = input[static_cast<std::size_t>(positions[i])];
      const bool promised = sizeof(T) == 1 || (sizeof(T) == 2 && n <= 1 << 24);
      ASSERT_TRUE(!promised || keepsPositions<T>(result, {positions, n}));
      ASSERT_EQ(std::memcmp(v, sort.inPlace ? result.data() : input.data(), bytes), 0);
    }
    ASSERT_TRUE(sorted<T>(result, sort.descends) && contents<T>(result) == contents(input));
    std::vector<T>& other = first[sort.descends];
    if (other.empty()) other = result;
    ASSERT_EQ(std::memcmp(result.data(), other.data(), bytes), 0) << "another order of zeros or NaNs";
  }
}

template <class T>
class Sort : public testing::Test {
 protected:
  std::mt19937_64 random_{static_cast<uint64_t>(testing::UnitTest::GetInstance()->random_seed())};
};

using Elements = testing::Types<uint8_t, uint16_t, int16_t, uint32_t, int32_t, float, double>;
TYPED_TEST_SUITE(Sort, Elements);

// Lengths that fill the networks' shapes in every way, and one row more; then around each change of method.
TYPED_TEST(Sort, Lengths) {
  std::vector<int> lengths(300);
  std::iota(lengths.begin(), lengths.end(), 1);
  lengths.insert(lengths.end(), {511, 777, 2047, 2048, 4095, 4097, 20000, 65536, 65537, 300000});
  for (const int n : lengths) {
    for (const Input<TypeParam>& input : inputs<TypeParam>(n, this->random_)) {
      SCOPED_TRACE(testing::Message() << input.name << ", " << n << " elements");
      expectSorted<TypeParam>(input.v, n % 2);
      if (this->HasFailure()) return;
    }
  }
}

// Pivots that keep missing the middle, often enough for the guard against quadratic time to take over.
TYPED_TEST(Sort, AMillionElements) {
  for (const Input<TypeParam>& input : inputs<TypeParam>(1500000, this->random_)) {
    const std::string_view name = input.name;
    if (name == "nested majorities" || name == "any bits") expectSorted<TypeParam>(input.v, true);
  }
}

// Positions of more than 24 bits do not fit beside a key's low byte.
TEST(SortLong, PositionsOfWords) {
  std::mt19937_64 random(1);
  std::vector<int16_t> input((1 << 24) + 1001);
  for (int16_t& x : input) x = static_cast<int16_t>(random());
  expectSorted<int16_t>(input, true);
}

TEST(SortBuffer, Size) {
  int size = -1;
  EXPECT_EQ(ovksSortRadixGetBufferSize(0, DataType32f, nullptr), StatusNullPtr);
  EXPECT_EQ(ovksSortRadixGetBufferSize(0, DataType32f, &size), StatusBadSize);
  EXPECT_EQ(size, -1);
  const auto expectSize = [&](int n, int type, Status status, int bytes) {
    EXPECT_EQ(ovksSortRadixGetBufferSize(n, static_cast<DataType>(type), &size), status) << type;
    EXPECT_EQ(size, bytes) << type;
  };
  const std::array<int, 3> rows[] = {{1, 1, 1024},   {5, 2, 2112},   {7, 2, 2112},  {9, 4, 20576},
                                     {11, 4, 20576}, {13, 4, 20576}, {19, 8, 41152}};
  for (const auto& [type, width, extra] : rows) {
    for (const int n : {1, 1000, 100000000}) expectSize(n, type, StatusOk, width * n + extra);
  }
  for (const int type : {0, 2, 14, 20}) expectSize(8, type, StatusBadDataType, 0);
  expectSize((INT32_MAX - 41152) / 8 + 1, DataType64f, StatusBadSize, 0);
}

}  // namespace
}  // namespace ovks::test
