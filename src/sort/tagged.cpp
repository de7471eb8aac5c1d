// SPDX-License-Identifier: MIT
// Sorting values together with their positions.
#include "sort/tagged.hpp"

#include <algorithm>

#include "sort/counting.hpp"
#include "sort/quick.hpp"

namespace ovks::sort {

namespace {

void countUp(int32_t* tag, std::ptrdiff_t n) {
  using V = Vec<int32_t>;
  V v = laneNumbers<V>();
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) {
    store(tag + i, v);
    v += broadcast<V>(lanes<V>);
  }
  if (i < n) storePart(tag + i, v, n - i);
}

template <class K, class C>
struct Finish {
  K* key;
  int32_t* tag;
  Order<K> order;

  void block(std::ptrdiff_t first, std::ptrdiff_t n) const {
    sortTaggedShort(key + first, tag + first, n, Order<K>{}, order, false);
  }
  void equal(std::ptrdiff_t first, std::ptrdiff_t n, C x) const {
    fill(key + first, n, elementOf(order, static_cast<K>(x)));
  }
};

template <class C, class K>
void sortMapped(K* key, int32_t* tag, std::ptrdiff_t n, Bounds<C> bounds, const Order<K>& order) {
  countUp(tag, n);
  quickSort(TaggedKeys<K, C>{key, tag}, n, bounds, kTaggedBlock<K>, Finish<K, C>{key, tag, order});
}

template <class C, class K>
void sortWide(K* key, int32_t* tag, std::ptrdiff_t n, const Order<K>& order) {
  if (n <= kTaggedBlock<K>) return sortTaggedShort(key, tag, n, order, order, true);
  const auto [low, high] = mapKeys(key, key, n, order);
  sortMapped(key, tag, n, Bounds<C>{low, high}, order);
}

// Keys of 16 bits and positions of 16 bits share a word, and sort as words.
inline constexpr std::ptrdiff_t kMostPacked = 1 << 16;

template <class K>
void sortPacked(const K* key, int32_t* word, std::ptrdiff_t n, const Order<K>& order) {
  using V = Vec<int32_t>;
  constexpr std::ptrdiff_t L = lanes<V>;
  using Narrow = Vec<K, L>;
  const auto pack = [&](Narrow x, std::ptrdiff_t i) {
    return resize<V>(order.key(x)) << 16 | (laneNumbers<V>() + broadcast<V>(static_cast<int32_t>(i)));
  };
  std::ptrdiff_t i = 0;
  for (; i + L <= n; i += L) store(word + i, pack(load<Narrow>(key + i), i));
  if (i < n) storePart(word + i, pack(loadPart<Narrow>(key + i, n - i), i), n - i);
  sortValues(word, n, Order<int32_t>{});
}

// The words' positions, and their keys as elements.
template <class K>
void unpack(K* key, int32_t* word, std::ptrdiff_t n, const Order<K>& order) {
  using V = Vec<int32_t>;
  constexpr std::ptrdiff_t L = lanes<V>;
  using Narrow = Vec<K, L>;
  const V position = broadcast<V>(kMostPacked - 1);
  const auto element = [&](V v) { return order.element(resize<Narrow>(v >> 16)); };
  std::ptrdiff_t i = 0;
  for (; i + L <= n; i += L) {
    const V v = load<V>(word + i);
    store(key + i, element(v));
    store(word + i, v & position);
  }
  if (i < n) {
    const V v = loadPart<V>(word + i, n - i);
    storePart(key + i, element(v), n - i);
    storePart(word + i, v & position, n - i);
  }
}

void keepPositions(int32_t* word, std::ptrdiff_t n, int32_t mask) {
  using V = Vec<int32_t>;
  std::ptrdiff_t i = 0;
  for (; i + lanes<V> <= n; i += lanes<V>) store(word + i, load<V>(word + i) & broadcast<V>(mask));
  for (; i < n; ++i) word[i] &= mask;
}

// Where counting bytes beats sorting words.
inline constexpr std::ptrdiff_t kCountBytesAbove = 1 << 11;

}  // namespace

void sortTaggedKeys(int64_t* p, int32_t* tag, std::ptrdiff_t n, Bounds<int64_t> bounds, const Order<int64_t>& order) {
  sortMapped(p, tag, n, bounds, order);
}
void sortTaggedKeys(int32_t* p, int32_t* tag, std::ptrdiff_t n, Bounds<int32_t> bounds, const Order<int32_t>& order) {
  sortMapped(p, tag, n, bounds, order);
}

void sortTagged(int64_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int64_t>& order) {
  sortWide<int64_t>(p, tag, n, order);
}
void sortTagged(int32_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int32_t>& order) {
  sortWide<int32_t>(p, tag, n, order);
}

void sortTagged(int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order) {
  if (n <= kMostPacked) {
    sortPacked(p, tag, n, order);
    unpack(p, tag, n, order);
  } else if (n <= kMostPositions) {
    positions(p, tag, n, order);
    sortValues(p, n, order);
  } else {
    sortWide<int32_t>(p, tag, n, order);
  }
}

void sortTagged(int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order) {
  positions(p, tag, n, order);
  sortValues(p, n, order);
}

void positions(const int8_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int8_t>& order) {
  if (n < kCountBytesAbove) {
    sortPacked(p, tag, n, order);
    return keepPositions(tag, n, kMostPacked - 1);
  }
  Histogram place;
  const auto rank = [&](int8_t x) { return static_cast<unsigned char>(x ^ order.flip ^ -128); };
  place.count(p, n, rank);
  place.toPlaces();
  for (std::ptrdiff_t i = 0; i < n; ++i) tag[place[rank(p[i])]++] = static_cast<int32_t>(i);
}

// Above a word's room the keys' high bytes are spread first; the low bytes share a word with positions of 24 bits.
void positions(const int16_t* p, int32_t* tag, std::ptrdiff_t n, const Order<int16_t>& order) {
  if (n <= kMostPacked) {
    sortPacked(p, tag, n, order);
    return keepPositions(tag, n, kMostPacked - 1);
  }
  Histogram place;
  const auto rank = [&](int16_t x) { return static_cast<uint16_t>(x ^ order.flip ^ -32768); };
  place.count(p, n, [&](int16_t x) { return rank(x) >> 8; });
  place.toPlaces();
  for (std::ptrdiff_t i = 0; i < n; ++i) {
    const unsigned r = rank(p[i]) ^ 0x80;
    tag[place[r >> 8]++] = static_cast<int32_t>(r << 24 | static_cast<unsigned>(i));
  }
  std::ptrdiff_t from = 0;
  for (int k = 0; k < 256; ++k) {
    const std::ptrdiff_t to = place[k];
    // The words of equal keys are in order already.
    if (!std::is_sorted(tag + from, tag + to)) sortValues(tag + from, to - from, Order<int32_t>{});
    from = to;
  }
  keepPositions(tag, n, kMostPositions - 1);
}

}  // namespace ovks::sort
