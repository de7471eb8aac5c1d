// SPDX-License-Identifier: MIT
// The C++ face: each form of call reaches its C function, what is wrong with a call becomes an exception, and objects
// own their memory.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

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

// What containers of them are compared and printed by.
static bool operator==(Complex32f a, Complex32f b) { return a.re == b.re && a.im == b.im; }
static bool operator==(Complex64f a, Complex64f b) { return a.re == b.re && a.im == b.im; }
static bool operator==(Complex16s a, Complex16s b) { return a.re == b.re && a.im == b.im; }

namespace {

using ovks::as, std::vector;

TEST(Face, Elementwise) {
  const vector<float> a = {1, 2};
  vector<float> c(2);
  ovks::subCRev(a, 5, c);
  EXPECT_EQ(c, (vector<float>{4, 3}));
  ovks::divC(2, c);
  ovks::addProduct(a, vector<float>{10, 30}, c);
  EXPECT_EQ(c, (vector<float>{12, 61.5}));
  ovks::sub(a, c);
  EXPECT_EQ(c, (vector<float>{11, 59.5}));

  std::array<int16_t, 2> s;
  ovks::convertScaled(c, s, RoundHalfAway, -1);
  ovks::addScaled(s, s, 1);
  EXPECT_EQ(s, (std::array<int16_t, 2>{22, 119}));
  vector<uint8_t> quotients(2);
  EXPECT_EQ(ovks::divRoundScaled(vector<uint8_t>{2, 0}, vector<uint8_t>{9, 9}, quotients, RoundZero, 0),
            StatusDivByZero);
  EXPECT_EQ(quotients, (vector<uint8_t>{4, 255}));
  vector<Complex32f> z(2);
  ovks::set({1, -1}, z);
  ovks::mul(a, z);
  EXPECT_EQ(z, (vector<Complex32f>{{1, -1}, {2, -2}}));
}

TEST(Face, Reductions) {
  const vector<float> x = {1, 2, 3, 6};
  EXPECT_EQ(ovks::sum(x), 12);
  EXPECT_EQ(ovks::sum(x, AlgHintFast), 12);
  EXPECT_EQ(ovks::normDiffInf(x, vector<float>{1, 1, 1, -1}), 7);
  static_assert(std::is_same_v<decltype(ovks::dotProd(x, x)), float>);
  static_assert(std::is_same_v<decltype(ovks::dotProd(x, x, as<double>)), double>);
  const auto [mean, stdDev] = ovks::meanStdDev(x);
  EXPECT_EQ(mean, 3);
  EXPECT_EQ(stdDev, ovks::stdDev(x));

  const vector<int16_t> s(4, 30000);
  EXPECT_EQ(ovks::sumScaled(s, 0), 32767);
  EXPECT_EQ(ovks::dotProd(s, s), int64_t{3600000000});
  EXPECT_EQ(ovks::dotProd(s, s, as<float>), 3.6e9f);
  EXPECT_EQ(ovks::meanStdDevScaled(s, -2, as<int32_t>).mean, 120000);
}

TEST(Face, Sorting) {
  const vector<double> x = {30, 10, 20};
  vector<double> up = x, down = x;
  vector<int32_t> positions(3);
  ovks::sort(up);
  EXPECT_EQ(up, (vector<double>{10, 20, 30}));
  ovks::sortIndexDescend(down, positions);
  EXPECT_EQ(down, (vector<double>{30, 20, 10}));
  EXPECT_EQ(positions, (vector{0, 2, 1}));
  ovks::Buffer buffer;
  ovks::sortRadix(down, buffer);
  EXPECT_EQ(down, up);
  ovks::sortRadixIndex(x, positions);
  EXPECT_EQ(positions, (vector{1, 2, 0}));
}

template <class T>
void expectTransforms() {
  using Points = vector<typename ovks::ComplexFFT<T>::Complex>;
  const vector<T> x = {1, 2, 3, 4}, ccs = {10, 0, -2, 2, -2, 0}, re = {10, -2, -2, -2}, im = {0, 2, 0, -2};
  vector<T> spectrum(6), y(4), z(4);
  ovks::RealFFT<T> real(2);
  real.toCcs(x, spectrum);
  real.fromCcs(spectrum, y);
  EXPECT_TRUE(spectrum == ccs && y == x);
  real.toPack(y);
  EXPECT_EQ(y, (vector<T>{10, -2, 2, -2}));
  real.fromPack(y, z);
  real.toPerm(z, y);
  EXPECT_EQ(y, (vector<T>{10, -2, -2, 2}));
  real.fromPerm(y);
  EXPECT_TRUE(z == x && y == x);

  ovks::SplitFFT<T> split(2);
  split.forward(x, vector<T>(4), y, z);
  EXPECT_TRUE(y == re && z == im);
  split.inverse(y, z);
  EXPECT_TRUE(y == x && z == vector<T>(4));
  Points points(4), back(4), many(1 << 16, {1, 0});
  ovks::conjCcs(spectrum, points);
  EXPECT_EQ(points, (Points{{10, 0}, {-2, 2}, {-2, 0}, {-2, -2}}));
  ovks::ComplexFFT<T>(2).inverse(points, back);
  EXPECT_EQ(back, (Points{{1, 0}, {2, 0}, {3, 0}, {4, 0}}));
  ovks::ComplexFFT<T>(16).forward(many);  // with room to work in
  EXPECT_EQ(many[0].re, 1 << 16);
}

TEST(Face, Transforms) {
  expectTransforms<float>();
  expectTransforms<double>();
}

// An impulse gives the taps, whatever the blocks.
template <class S>
void expectTaps(S one, S two) {
  using Tap = typename ovks::FIR<S>::Tap;
  const auto tap = [](S x) {
    if constexpr (requires { x.re; }) return Tap{static_cast<decltype(Tap::re)>(x.re), 0};
    else return static_cast<Tap>(x);
  };
  ovks::FIR<S> filter(std::array{tap(one), tap(two)});
  vector<S> x = {one, S{}, S{}};
  const std::span<S> all(x);
  filter.filter(all.first(2));
  filter.filter(vector(x.begin() + 2, x.end()), all.subspan(2));
  EXPECT_EQ(x, (vector{one, two, S{}}));
  filter.filter(all.first(1));
  filter.reset();
  EXPECT_EQ(filter.delay()[0], S{});
}

TEST(Face, Filters) {
  expectTaps<float>(1, 2);
  expectTaps<double>(1, 2);
  expectTaps<Complex32f>({1, 0}, {2, 0});
  expectTaps<Complex64f>({1, 0}, {2, 0});
  expectTaps<int16_t>(1, 2);
  expectTaps<Complex16s>({1, 0}, {2, 0});
  const vector<double> x = {1, 2, 3}, y = {1, -1}, product = {1, 1, 1, -3};
  vector<double> z(4);
  ovks::convolve(x, y, z);
  EXPECT_EQ(z, product);
  ovks::Buffer buffer;
  ovks::convolve(y, x, z, FilterAlgDirect, buffer);
  EXPECT_EQ(z, product);
}

// Pieces give what the whole gives, and only uniform numbers keep to an interval.
template <class T>
void expectSequence(auto whole, auto cut, bool uniform) {
  vector<T> expected(1000), result(1000);
  whole(expected);
  const std::span<T> all(result);
  cut(all.first(30));
  cut(all.subspan(30));
  EXPECT_EQ(result, expected);
  EXPECT_EQ(std::all_of(result.begin(), result.end(), [](T x) { return x >= 30 && x <= 50; }), uniform);
}

TEST(Face, RandomSequences) {
  const auto expect = []<class T>(T low, T high) {
    expectSequence<T>(ovks::UniformRandom<T>(low, high, 42), ovks::UniformRandom<T>(low, high, 42), true);
    expectSequence<T>(ovks::GaussRandom<T>(low, high, 42), ovks::GaussRandom<T>(low, high, 42), false);
  };
  expect(uint8_t{30}, uint8_t{50});
  expect(int16_t{30}, int16_t{50});
  expect(30.0f, 50.0f);
  expect(30.0, 50.0);
}

// A new export needs its place here as well.
TEST(Face, HasEveryExport) {
  std::set<std::string, std::less<>> words = {"ovksFree", "ovksGetLibVersion"};
  const std::regex word("ovks\\w+");
  for (const auto& file : std::filesystem::directory_iterator(FACE_FOLDER)) {
    std::ifstream text(file.path());
    const std::string all(std::istreambuf_iterator<char>(text), {});
    words.insert(std::sregex_token_iterator(all.begin(), all.end(), word), std::sregex_token_iterator());
  }
  const auto has = [&](std::string_view name) { return words.contains(name) || name.starts_with("ovksMalloc"); };
#define X(name) EXPECT_TRUE(has(#name)) << #name;
#include "exports.inc"
#undef X
}

void expectError(Status status, auto call) {
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
    b = T(std::move(a));
    use(b);
    expectError(StatusNullPtr, [&] { use(a); });
    a = std::move(b);
    use(a);
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
