// SPDX-License-Identifier: MIT
// The C++ face: what is wrong with a call becomes an exception, and objects own their memory.
#include <gtest/gtest.h>

#include "ovks.hpp"

namespace {

std::ptrdiff_t alignedBlocks = 0;  // in use

}  // namespace

void* operator new(std::size_t size, std::align_val_t alignment) {
  // The library's memory is aligned to 64 bytes, on every system.
  void* const p = static_cast<std::size_t>(alignment) <= 64 ? ovksMalloc_8u(static_cast<int>(size)) : nullptr;
  if (!p) throw std::bad_alloc();
  ++alignedBlocks;
  return p;
}
void operator delete(void* p, std::align_val_t) noexcept {
  if (p) --alignedBlocks;
  ovksFree(p);
}

namespace {

using std::vector;

template <class F>
void expectError(Status status, F call) {
  try {
    call();
    ADD_FAILURE() << "no error, but " << status << " was expected";
  } catch (const ovks::Error& e) {
    EXPECT_EQ(e.status(), status) << e.what();
  }
}

TEST(Face, LengthsAreChecked) {
  const vector<float> three(3, 1.0f), four(4, 1.0f);
  vector<float> dst(4, 7.0f), none;
  vector<int32_t> positions(3);
  vector<Complex32f> points(4);
  const auto unequal = [](auto call) { expectError(StatusBadSize, call); };
  unequal([&] { ovks::add(three, four, dst); });
  unequal([&] { ovks::mulC(three, 2, dst); });
  unequal([&] { (void)ovks::dotProd(three, four); });
  unequal([&] { ovks::sortRadixIndex(dst, positions); });
  unequal([&] { ovks::conjCcs(four, points); });
  unequal([&] { ovks::convolve(three, four, dst); });
  unequal([&] { ovks::FIR<float>(four).filter(three, dst); });
  unequal([&] { ovks::RealFFT<float>(2).toCcs(four, dst); });
  unequal([&] { ovks::zero(none); });
  unequal([&] { ovks::FIR<float>{none}; });
  unequal([&] { ovks::convolve(none, four, dst); });
  unequal([&] { ovks::addC(std::span(three.data(), std::size_t{1} << 31), 1, std::span(dst.data(), 1u << 31)); });
  EXPECT_EQ(dst, vector<float>(4, 7.0f));
}

TEST(Face, ErrorsCarryTheStatus) {
  vector<float> x(100, 1.0f);
  const std::ptrdiff_t before = alignedBlocks;
  expectError(StatusHugeWin, [&] { ovks::kaiser(x, 1000); });
  expectError(StatusBadFFTOrder, [] { ovks::RealFFT<float>{-1}; });
  expectError(StatusBadFFTFlag, [] { ovks::ComplexFFT<double>(4, 3); });
  expectError(StatusBadAlgType, [&] { ovks::FIR<float>(x, 3); });
  expectError(StatusNullPtr, [] { ovks::zero(std::span(static_cast<float*>(nullptr), 1)); });
  EXPECT_EQ(alignedBlocks, before) << "what an object took is released when its construction fails";
  try {
    ovks::divC(0, x);
    FAIL();
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "ovksDivC_32f_I: the constant divisor is zero (status -10)");
  }
}

template <class T>
void expectMoves(auto use, const auto&... arguments) {
  static_assert(!std::is_copy_constructible_v<T> && !std::is_copy_assignable_v<T>);
  static_assert(std::is_nothrow_move_constructible_v<T> && std::is_nothrow_move_assignable_v<T>);
  const std::ptrdiff_t before = alignedBlocks;
  {
    T a(arguments...), b(arguments...);
    EXPECT_GT(alignedBlocks, before);
    T c(std::move(a));
    use(c);
    b = std::move(c);
    use(b);
    expectError(StatusNullPtr, [&] { use(c); });
    c = std::move(b);
    use(c);
  }
  EXPECT_EQ(alignedBlocks, before);
}

TEST(Face, ObjectsMoveAndReleaseWhatTheyOwn) {
  ovks::Vector<float> x(64);
  vector<Complex64f> z(64);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(x.data()) % 64, 0u);
  expectMoves<ovks::RealFFT<float>>([&](auto& fft) { fft.toPerm(x); }, 6);
  expectMoves<ovks::ComplexFFT<double>>([&](auto& fft) { fft.forward(z); }, 6);
  expectMoves<ovks::SplitFFT<float>>([&](auto& fft) { fft.inverse(x, x); }, 6);
  expectMoves<ovks::FIR<float>>([&](auto& filter) { filter.filter(x); }, vector<float>(5));
  expectMoves<ovks::UniformRandom<float>>([&](auto& random) { random(x); }, 0.0f, 1.0f, 1u);
}

}  // namespace
