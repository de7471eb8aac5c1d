// SPDX-License-Identifier: MIT
// Scaling of exact integers by a power of two: rounded once to nearest, ties to even.
#pragma once

#include <limits>

#include "core/simd.hpp"

namespace ovks {

// (h + odd/2) * 2^-k, odd being 0 or 1. Without overflow for every h, 1 <= k < bits.
template <class V>
OVKS_INLINE V roundHalves(V h, V odd, int k) {
  using U = Unsigned<V>;
  using T = Lane<U>;
  const T half = static_cast<T>(T{1} << (k - 1)), mask = static_cast<T>(half + (half - 1));
  const V q = h >> k;
  const U rest = bits<U>(h) & broadcast<U>(mask);
  const U sticky = bits<U>((q & broadcast<V>(1)) | odd);
  const U up = (rest + broadcast<U>(static_cast<T>(half - 1)) + sticky) >> k;
  return bits<V>(bits<U>(q) + up);
}

// v * 2^-s, 1 <= s < bits.
template <class V>
OVKS_INLINE V roundShift(V v, int s) {
  return roundHalves(v, V{}, s);
}

// v * 2^-s for signed lanes whose magnitude is at most a quarter of their range.
template <class V>
OVKS_INLINE V roundShiftSmall(V v, int s) {
  using T = Lane<V>;
  const V odd = (v >> s) & broadcast<V>(1);
  return (v + broadcast<V>(static_cast<T>((T{1} << (s - 1)) - 1)) + odd) >> s;
}

// v * 2^n, saturated, for n >= 1.
template <class V>
class ShiftUp {
 public:
  using T = Lane<V>;

  explicit ShiftUp(unsigned n) {
    constexpr unsigned kBits = 8 * sizeof(T);
    constexpr T kMin = std::numeric_limits<T>::min(), kMax = std::numeric_limits<T>::max();
    shift_ = static_cast<int>(n < kBits ? n : kBits - 1);
    highest_ = n < kBits ? static_cast<T>(kMax >> n) : T{0};
    lowest_ = n < kBits ? static_cast<T>(kMin >> n) : T{0};
  }

  OVKS_INLINE V operator()(V v) const {
    const V max = broadcast<V>(std::numeric_limits<T>::max()), min = broadcast<V>(std::numeric_limits<T>::min());
    const V inside = v > broadcast<V>(highest_) ? max : shifted(v);
    return v < broadcast<V>(lowest_) ? min : inside;
  }

 private:
  OVKS_INLINE V shifted(V v) const {
    if constexpr (sizeof(T) == 1) {  // no shifts of bytes
      using Wide = Vec<uint16_t, sizeof(V) / 2>;
      return bits<V>(bits<Wide>(v) << shift_) & broadcast<V>(static_cast<T>(0xff << shift_));
    } else {
      return bits<V>(bits<Unsigned<V>>(v) << shift_);
    }
  }

  int shift_;
  T highest_, lowest_;
};

}  // namespace ovks
