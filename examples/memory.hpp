// SPDX-License-Identifier: MIT
// Samples in the library's aligned memory, released with their holder.
#pragma once

#include <ovks.h>

#include <cstdint>
#include <new>
#include <type_traits>
#include <utility>

namespace demo {

// A fixed number of samples, zeros at first. T is float or int16_t.
template <class T>
class Vector {
 public:
  static_assert(std::is_same_v<T, float> || std::is_same_v<T, int16_t>);

  explicit Vector(int size) : data_(allocate(size)), size_(size) {
    if (!data_) throw std::bad_alloc();
    if constexpr (std::is_same_v<T, float>) ovksZero_32f(data_, size_);
    else ovksZero_16s(data_, size_);
  }
  Vector(const Vector& other) : Vector(other.size_) { *this = other; }
  Vector(Vector&& other) noexcept : data_(std::exchange(other.data_, nullptr)), size_(std::exchange(other.size_, 0)) {}
  ~Vector() { ovksFree(data_); }

  // Both sides hold equally many samples.
  Vector& operator=(const Vector& other) {
    if (this == &other) return *this;
    if constexpr (std::is_same_v<T, float>) ovksCopy_32f(other.data_, data_, size_);
    else ovksCopy_16s(other.data_, data_, size_);
    return *this;
  }

  T* data() { return data_; }
  const T* data() const { return data_; }
  int size() const { return size_; }
  T* begin() { return data_; }
  T* end() { return data_ + size_; }
  const T* begin() const { return data_; }
  const T* end() const { return data_ + size_; }
  T& operator[](int i) { return data_[i]; }

 private:
  static T* allocate(int size) {
    if constexpr (std::is_same_v<T, float>) return ovksMalloc_32f(size);
    else return ovksMalloc_16s(size);
  }

  T* data_;
  int size_;
};

}  // namespace demo
