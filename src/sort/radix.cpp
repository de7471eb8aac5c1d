// SPDX-License-Identifier: MIT
// Distribution by digits, least significant first, where that takes fewer passes than comparing would.
#include "sort/radix.hpp"

#include "sort/keys.hpp"

namespace ovks::sort {

namespace {

// Where keys differ, cut into digits from the bottom up; bits that all keys share cost no pass.
struct Digits {
  static constexpr int kBits = 11, kMost = 6;
  int shift[kMost] = {};
  int count = 0;

  explicit Digits(uint64_t varying) {
    while (varying != 0) {
      const int low = __builtin_ctzll(varying);
      shift[count++] = low;
      varying = low + kBits < 64 ? varying >> (low + kBits) << (low + kBits) : 0;
    }
  }
};

// What the buffer's size has beyond a second vector of elements.
template <class K>
inline constexpr int kRoom = sizeof(K) == 8   ? 41152
                             : sizeof(K) == 4 ? 20576
                             : sizeof(K) == 2 ? 2112
                                              : 1024;

// One digit's places, at an aligned address, and a second vector of elements behind them.
template <class K>
class Workspace {
  static constexpr std::size_t kPlaces = sizeof(K) < 4 ? 0 : sizeof(uint32_t) << Digits::kBits;
  static_assert(63 + kPlaces <= kRoom<K>);
  char* const base_;

 public:
  explicit Workspace(void* buffer)
      : base_(reinterpret_cast<char*>((reinterpret_cast<std::uintptr_t>(buffer) + 63) & ~std::uintptr_t{63})) {}

  uint32_t* places() const { return reinterpret_cast<uint32_t*>(base_); }
  K* keys() const { return reinterpret_cast<K*>(base_ + kPlaces); }
};

// The number at the digit, larger for larger keys.
template <class K>
OVKS_INLINE unsigned digitOf(K key, int shift) {
  using U = std::make_unsigned_t<K>;
  constexpr U sign = U{1} << (sizeof(K) * 8 - 1);
  return static_cast<unsigned>((static_cast<U>(key) ^ sign) >> shift) & ((1u << Digits::kBits) - 1);
}

// Where each of the digit's values begins in sorted order.
template <class K>
void findPlaces(const K* key, std::ptrdiff_t n, int shift, uint32_t* place) {
  __builtin_memset(place, 0, sizeof(uint32_t) << Digits::kBits);
  for (std::ptrdiff_t i = 0; i < n; ++i) ++place[digitOf(key[i], shift)];
  uint32_t sum = 0;
  for (int k = 0; k < 1 << Digits::kBits; ++k) {
    const uint32_t here = place[k];
    place[k] = sum;
    sum += here;
  }
}

// The bits in which keys differ.
template <class K>
uint64_t varyingBits(const K* key, std::ptrdiff_t n) {
  using V = Vec<K>;
  const V first = broadcast<V>(key[0]);
  V differ{};
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) differ |= load<V>(key + i) ^ first;
  if (i < n) differ |= load<V>(key + n - lanes<V>) ^ first;
  K all{};
  for (int k = 0; k < lanes<V>; ++k) all |= differ[k];
  return static_cast<std::make_unsigned_t<K>>(all);
}

// Keys in p become sorted elements.
template <class K>
void sortByDigits(K* p, std::ptrdiff_t n, const Digits& digits, const Order<K>& order, Workspace<K> work) {
  K* from = p;
  K* to = work.keys();
  for (int d = 0; d < digits.count; ++d) {
    uint32_t* const place = work.places();
    findPlaces(from, n, digits.shift[d], place);
    for (std::ptrdiff_t i = 0; i < n; ++i) to[place[digitOf(from[i], digits.shift[d])]++] = from[i];
    std::swap(from, to);
  }
  unmapKeys(p, from, n, order);
}

// From this length on a pass over all elements, with its table, is worth less than comparing them.
constexpr std::ptrdiff_t kFewest = 4096;
template <class K>
inline constexpr int kPasses = sizeof(K) == 8 ? 2 : 1;

template <class K>
void sortWide(K* p, std::ptrdiff_t n, const Order<K>& order, void* buffer) {
  if (n < kFewest) return sortValues(p, n, order);
  const Bounds<K> bounds = mapKeys(p, p, n, order);
  const Digits digits(varyingBits(p, n));
  if (digits.count > kPasses<K>) return sortKeys(p, n, bounds, order);
  sortByDigits(p, n, digits, order, Workspace<K>(buffer));
}

template <class K>
void positionsWide(const K* p, int32_t* tag, std::ptrdiff_t n, const Order<K>& order, void* buffer) {
  const Workspace<K> work(buffer);
  K* const key = work.keys();
  if (n < kFewest) {
    __builtin_memcpy(key, p, static_cast<std::size_t>(n) * sizeof(K));
    return sortTagged(key, tag, n, order);
  }
  const Bounds<K> bounds = mapKeys(key, p, n, order);
  const Digits digits(varyingBits(key, n));
  if (digits.count > 1) return sortTaggedKeys(key, tag, n, bounds, order);
  uint32_t* const place = work.places();
  findPlaces(key, n, digits.shift[0], place);
  for (std::ptrdiff_t i = 0; i < n; ++i) tag[place[digitOf(key[i], digits.shift[0])]++] = static_cast<int32_t>(i);
}

}  // namespace

int64_t radixBufferSize(int n, DataType type) {
  const auto size = [n]<class K>(K) { return int64_t{sizeof(K)} * n + kRoom<K>; };
  switch (type) {
    case DataType8u: return size(int8_t{});
    case DataType16u:
    case DataType16s: return size(int16_t{});
    case DataType32u:
    case DataType32s:
    case DataType32f: return size(int32_t{});
    case DataType64f: return size(int64_t{});
    default: return 0;
  }
}

// Narrow elements are counted without a buffer.
void radixSort(int8_t* p, std::ptrdiff_t n, const Order<int8_t>& order, void*) { sortValues(p, n, order); }
void radixSort(int16_t* p, std::ptrdiff_t n, const Order<int16_t>& order, void*) { sortValues(p, n, order); }

void radixSort(int32_t* p, std::ptrdiff_t n, const Order<int32_t>& order, void* buffer) {
  sortWide(p, n, order, buffer);
}
void radixSort(int64_t* p, std::ptrdiff_t n, const Order<int64_t>& order, void* buffer) {
  sortWide(p, n, order, buffer);
}

void radixPositions(const int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order, void*) {
  positions(p, tag, n, order);
}

void radixPositions(const int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order, void* buffer) {
  if (n <= kMostPositions) return positions(p, tag, n, order);
  int16_t* const key = Workspace<int16_t>(buffer).keys();
  __builtin_memcpy(key, p, static_cast<std::size_t>(n) * sizeof *key);
  sortTagged(key, tag, n, order);
}

void radixPositions(const int32_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int32_t>& order, void* buffer) {
  positionsWide(p, tag, n, order, buffer);
}
void radixPositions(const int64_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& order, void* buffer) {
  positionsWide(p, tag, n, order, buffer);
}

}  // namespace ovks::sort
