// SPDX-License-Identifier: MIT
/// @file
/// Memory at 64-byte boundaries, which the library's loops like best.
#ifndef OVKS_CPP_MEMORY_HPP
#define OVKS_CPP_MEMORY_HPP

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "../types.h"

namespace ovks {

/// Boundary of what Allocator and Buffer hand out.
inline constexpr std::align_val_t kAlignment{64};

/// Aligned memory for the containers of the standard library.
template <class T>
struct Allocator {
  using value_type = T;  ///< what the standard asks for

  Allocator() = default;  ///< all are alike
  /// Of another type.
  template <class U>
  Allocator(const Allocator<U>&) noexcept {}

  /// Room for @p n elements.
  T* allocate(std::size_t n) {
    if (n > static_cast<std::size_t>(PTRDIFF_MAX) / sizeof(T)) throw std::bad_array_new_length();
    return static_cast<T*>(::operator new(n * sizeof(T), kAlignment));
  }
  /// Releases it.
  void deallocate(T* p, std::size_t) noexcept { ::operator delete(p, kAlignment); }

  /// Memory of one may be released by another.
  friend bool operator==(const Allocator&, const Allocator&) { return true; }
};

/// Elements in aligned memory. Any other contiguous range serves the library as well.
template <class T>
using Vector = std::vector<T, Allocator<T>>;

/// Work room, not initialised, that grows when asked to.
class Buffer {
 public:
  Buffer() = default;                             ///< none yet
  explicit Buffer(int bytes) { require(bytes); }  ///< so many bytes
  /// Leaves none behind.
  Buffer(Buffer&& other) noexcept : data_(std::move(other.data_)), size_(std::exchange(other.size_, 0)) {}
  /// Leaves none behind.
  Buffer& operator=(Buffer&& other) noexcept {
    data_ = std::move(other.data_);
    size_ = std::exchange(other.size_, 0);
    return *this;
  }

  /// At least so many bytes. When that takes new memory, what was in the old is lost.
  uint8_t* require(int bytes) {
    if (bytes > size_) {
      size_ = 0;
      data_.reset();
      data_.reset(static_cast<uint8_t*>(::operator new(static_cast<std::size_t>(bytes), kAlignment)));
      size_ = bytes;
    }
    return data();
  }

  uint8_t* data() const { return data_.get(); }  ///< null while there is none
  int size() const { return size_; }             ///< in bytes

 private:
  struct Release {
    void operator()(uint8_t* p) const { ::operator delete(p, kAlignment); }
  };
  std::unique_ptr<uint8_t[], Release> data_;
  int size_ = 0;
};

namespace detail {

// The code of an element type, for C functions that serve several.
template <class T>
struct DataTypeOf;
template <>
struct DataTypeOf<uint8_t> : std::integral_constant<DataType, DataType8u> {};
template <>
struct DataTypeOf<uint16_t> : std::integral_constant<DataType, DataType16u> {};
template <>
struct DataTypeOf<int16_t> : std::integral_constant<DataType, DataType16s> {};
template <>
struct DataTypeOf<uint32_t> : std::integral_constant<DataType, DataType32u> {};
template <>
struct DataTypeOf<int32_t> : std::integral_constant<DataType, DataType32s> {};
template <>
struct DataTypeOf<float> : std::integral_constant<DataType, DataType32f> {};
template <>
struct DataTypeOf<Complex32f> : std::integral_constant<DataType, DataType32fc> {};
template <>
struct DataTypeOf<double> : std::integral_constant<DataType, DataType64f> {};
template <>
struct DataTypeOf<Complex64f> : std::integral_constant<DataType, DataType64fc> {};

}  // namespace detail
}  // namespace ovks

#endif
