// SPDX-License-Identifier: MIT
// How a transform in panels is laid out: its matrix, its panels, its passes, and where its twiddles are.
#pragma once

#include "transform/columns.hpp"
#include "transform/spec.hpp"

namespace ovks::fft {

// Of one array, or of each of two. Less of a row wastes what memory gives with one access.
inline constexpr int kPanelRowBytes = 256;

// The orders where panels pay, and the work buffer has room for them; none with AVX2, whose vectors are half a line.
template <class T>
inline constexpr int kMaxPanelOrder = sizeof(T) == 4 ? 22 : 21;
template <class T>
inline constexpr int kMinPanelOrder = kAvx512 ? kMaxPanelOrder<T> - 1 : kMaxPanelOrder<T> + 1;
template <class T>
inline constexpr bool kHasPanels = kMinPanelOrder<T> <= kMaxPanelOrder<T>;

template <class T>
struct PanelPlan {
  static constexpr int kMaxTiles = (1 << (kMaxPanelOrder<T> + 1) / 2) / kLanes<T>;

  int bits1, bits2;
  std::ptrdiff_t n1, n2, folds;       // folds = N2 / N1
  std::ptrdiff_t vectors1, vectors2;  // of a row of N1 points, and of N2
  std::ptrdiff_t wide;                // vectors of a panel's row
  Passes passes1, passes2;
  std::ptrdiff_t fine, columns1, columns2;  // where the twiddles are, in elements; the coarse come first

  constexpr explicit PanelPlan(int order, bool twoArrays = false)
      : bits1(order / 2),
        bits2(order - bits1),
        n1(std::ptrdiff_t{1} << bits1),
        n2(std::ptrdiff_t{1} << bits2),
        folds(n2 / n1),
        vectors1(n1 / kLanes<T>),
        vectors2(n2 / kLanes<T>),
        wide(rowBytes(twoArrays) / (2 * kVectorBytes)),
        passes1(panelPasses(bits1)),
        passes2(panelPasses(bits2)),
        fine(2 * vectors1 * n2),
        columns1(fine + 2 * kLanes<T> * n2),
        columns2(columns1 + 2 * n1) {}

  static constexpr std::ptrdiff_t rowBytes(bool twoArrays) { return twoArrays ? 2 * kPanelRowBytes : kPanelRowBytes; }

  // The first of radix 4 or 8, as rows stand memory pages apart, so that their lines share a set of the first cache;
  // the last of radix 8.
  static constexpr Passes panelPasses(int bits) {
    Passes p;
    for (; bits % 3 != 0; bits -= p.bits[p.count - 1]) p.add(2);
    for (; bits > 0; bits -= 3) p.add(3);
    return p;
  }
};

// Other transforms work in the caches, or in the destination itself.
template <class T>
constexpr bool takesPanels(int order) {
  return order >= kMinPanelOrder<T> && order <= kMaxPanelOrder<T>;
}

// Whether twiddles and panels of all orders find room, and the last passes are of radix 8.
template <class T>
constexpr bool panelsFit() {
  for (int order = kMinPanelOrder<T>; order <= kMaxPanelOrder<T>; ++order) {
    const PanelPlan<T> plan(order);
    const Sizes sizes = complexSizes<T>(order);
    if ((plan.columns2 + 2 * plan.n2) * int64_t{sizeof(T)} > sizes.twiddles) return false;
    for (const bool twoArrays : {false, true})
      if (plan.n2 * plan.rowBytes(twoArrays) > sizes.work) return false;
    if (plan.passes1.bits[plan.passes1.count - 1] != 3 || plan.passes2.bits[plan.passes2.count - 1] != 3) return false;
  }
  return true;
}
static_assert(panelsFit<float>() && panelsFit<double>());

}  // namespace ovks::fft
