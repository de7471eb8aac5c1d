// SPDX-License-Identifier: MIT
// Memory between inaccessible pages: a touch outside a buffer faults, or shows in the bytes around it.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "support/pages.hpp"

namespace ovks::test {

// Where a buffer lies: its end so many bytes below the upper guard, or its start so many above the lower one.
struct Place {
  bool atEnd = false;
  std::size_t offset = 0;
};

class Guarded {
 public:
  static constexpr std::size_t kMargin = 128;  // bytes watched on either side, and the largest offset

  Guarded() = default;
  Guarded(const Guarded&) = delete;
  ~Guarded() { release(); }

  // A copy of n bytes at the place, which any alignment of the elements may have. Grows as needed.
  std::byte* put(Place place, const void* bytes, std::size_t n) {
    if (n + kMargin > size_) {
      release();
      size_ = (n + kMargin + kPage - 1) / kPage * kPage;
      begin_ = reservePages(size_ + 2 * kPage) + kPage;
      openPages(begin_, size_);
    }
    first_ = place.atEnd ? begin_ + size_ - n - place.offset : begin_ + place.offset;
    last_ = first_ + n;
    std::memset(low(), kCanary, static_cast<std::size_t>(first_ - low()));
    std::memset(last_, kCanary, static_cast<std::size_t>(high() - last_));
    if (n > 0) std::memcpy(first_, bytes, n);
    return first_;
  }

  // Whether the bytes around the copy are as they were.
  bool intact() const {
    const auto untouched = [](std::byte b) { return b == std::byte{kCanary}; };
    return std::all_of(low(), first_, untouched) && std::all_of(last_, high(), untouched);
  }

 private:
  static constexpr unsigned char kCanary = 0xc3;

  void release() {
    if (begin_) releasePages(begin_ - kPage, size_ + 2 * kPage);
  }
  std::byte* low() const { return first_ - std::min<std::ptrdiff_t>(kMargin, first_ - begin_); }
  std::byte* high() const { return last_ + std::min<std::ptrdiff_t>(kMargin, begin_ + size_ - last_); }

  std::size_t size_ = 0;
  std::byte *begin_ = nullptr, *first_ = nullptr, *last_ = nullptr;
};

}  // namespace ovks::test
