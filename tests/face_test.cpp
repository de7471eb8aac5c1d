// SPDX-License-Identifier: MIT
// The C++ face gives what the C calls give, and turns what is wrong with a call into exceptions.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <type_traits>

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

using ovks::as;

// 1, 2, 3, ... in an order of no kind, both parts alike.
template <class T>
std::vector<T> samples(int n) {
  std::vector<T> v;
  for (int i = 1; i <= n; ++i) {
    const int value = i * 37 % 101;
    if constexpr (std::is_arithmetic_v<T>) v.push_back(static_cast<T>(value));
    else v.push_back({static_cast<decltype(T::re)>(value), static_cast<decltype(T::re)>(i % 7)});
  }
  return v;
}

template <class T>
void expectEqual(const std::vector<T>& a, const std::vector<T>& b) {
  ASSERT_EQ(a.size(), b.size());
  EXPECT_EQ(std::memcmp(a.data(), b.data(), a.size() * sizeof(T)), 0);
}

template <class F>
void expectError(Status status, F call) {
  try {
    call();
    ADD_FAILURE() << "no error, but " << status << " was expected";
  } catch (const ovks::Error& e) {
    EXPECT_EQ(e.status(), status) << e.what();
  }
}

constexpr int kLength = 100;

// A scaled call of three vectors, and the same in place.
template <class T>
void expectScaledAdd(Status (*outOfPlace)(const T*, const T*, T*, int, int),
                     Status (*inPlace)(const T*, T*, int, int)) {
  const std::vector<T> a = samples<T>(kLength), b(a.rbegin(), a.rend());
  std::vector<T> expected(kLength), result(kLength), both = b;
  ASSERT_EQ(outOfPlace(a.data(), b.data(), expected.data(), kLength, 1), StatusOk);
  EXPECT_EQ(ovks::addScaled(a, b, result, 1), StatusOk);
  expectEqual(result, expected);
  ASSERT_EQ(inPlace(a.data(), expected.data(), kLength, 1), StatusOk);
  ovks::addScaled(a, result, 1);
  expectEqual(result, expected);
}

TEST(Face, TypesChooseTheFunction) {
  expectScaledAdd(ovksAdd_8u_Sfs, ovksAdd_8u_ISfs);
  expectScaledAdd(ovksAdd_16s_Sfs, ovksAdd_16s_ISfs);
  expectScaledAdd(ovksAdd_16u_Sfs, ovksAdd_16u_ISfs);
  expectScaledAdd(ovksAdd_32s_Sfs, ovksAdd_32s_ISfs);
  expectScaledAdd(ovksAdd_16sc_Sfs, ovksAdd_16sc_ISfs);
  expectScaledAdd(ovksAdd_32sc_Sfs, ovksAdd_32sc_ISfs);
}

TEST(Face, OperandsKeepTheirOrder) {
  const std::array<float, 2> a = {1, 2}, b = {10, 30};
  std::array<float, 2> c;
  ovks::sub(a, b, c);
  EXPECT_EQ(c, (std::array<float, 2>{9, 28}));
  ovks::subCRev(a, 5, c);
  EXPECT_EQ(c, (std::array<float, 2>{4, 3}));
  ovks::divC(2, c);
  EXPECT_EQ(c, (std::array<float, 2>{2, 1.5}));
  ovks::addProduct(a, b, c);
  EXPECT_EQ(c, (std::array<float, 2>{12, 61.5}));

  std::array<int16_t, 2> s;
  ovks::convertScaled(c, s, RoundHalfAway, -1);
  EXPECT_EQ(s, (std::array<int16_t, 2>{24, 123}));
  const std::array<uint8_t, 2> divisors = {2, 0}, dividends = {9, 9};
  std::array<uint8_t, 2> quotients;
  EXPECT_EQ(ovks::divRoundScaled(divisors, dividends, quotients, RoundZero, 0), StatusDivByZero);
  EXPECT_EQ(quotients, (std::array<uint8_t, 2>{4, 255}));
  std::vector<Complex32f> z(2);
  ovks::set({1, -1}, z);
  ovks::mul(a, z);
  EXPECT_EQ(z[1].im, -2);
}

TEST(Face, ReductionsReturn) {
  const std::vector<float> x = {1, 2, 3, 6}, y = {1, 1, 1, -1};
  EXPECT_EQ(ovks::sum(x), 12);
  EXPECT_EQ(ovks::sum(x, AlgHintFast), 12);
  EXPECT_EQ(ovks::normDiffInf(x, y), 7);
  static_assert(std::is_same_v<decltype(ovks::dotProd(x, y)), float>);
  static_assert(std::is_same_v<decltype(ovks::dotProd(x, y, as<double>)), double>);
  EXPECT_EQ(ovks::dotProd(x, y, as<double>), 0);
  const auto [mean, stdDev] = ovks::meanStdDev(x);
  EXPECT_EQ(mean, 3);
  EXPECT_EQ(stdDev, ovks::stdDev(x));

  const std::vector<int16_t> s(4, 30000);
  EXPECT_EQ(ovks::sumScaled(s, 0), 32767);
  EXPECT_EQ(ovks::sumScaled(s, 0, as<int32_t>), 120000);
  EXPECT_EQ(ovks::dotProd(s, s), int64_t{3600000000});
  EXPECT_EQ(ovks::dotProd(s, s, as<float>), 3.6e9f);
  EXPECT_EQ(ovks::meanStdDevScaled(s, 1).mean, 15000);
  EXPECT_EQ(ovks::meanStdDevScaled(s, -2, as<int32_t>).mean, 120000);
}

TEST(Face, Sorting) {
  const std::vector<double> x = samples<double>(kLength);
  std::vector<double> up = x, down = x, byDigits = x;
  std::vector<int32_t> positions(kLength);
  ovks::sort(up);
  EXPECT_TRUE(std::is_sorted(up.begin(), up.end()));
  ovks::sortIndexDescend(down, positions);
  for (std::size_t i = 0; i < down.size(); ++i) EXPECT_EQ(down[i], x[static_cast<std::size_t>(positions[i])]);
  EXPECT_TRUE(std::is_sorted(down.rbegin(), down.rend()));
  ovks::Buffer buffer;
  ovks::sortRadix(byDigits, buffer);
  expectEqual(byDigits, up);
  ovks::sortRadixIndex(x, positions);
  for (std::size_t i = 0; i < up.size(); ++i) EXPECT_EQ(up[i], x[static_cast<std::size_t>(positions[i])]);
}

template <class T, class FFT>
void expectTransforms(int order, FFT makeExpected) {
  const std::vector<T> x = samples<T>(1 << order);
  const std::size_t n = x.size();
  ovks::RealFFT<T> fft(order);
  std::vector<T> spectrum(ovks::ccsLength(n)), expected(spectrum.size()), y(n), pack(n), perm(n);
  makeExpected(x, expected);
  fft.toCcs(x, spectrum);
  expectEqual(spectrum, expected);

  using Complex = typename ovks::ComplexFFT<T>::Complex;
  std::vector<Complex> whole(n), fromPack(n), fromPerm(n), z(n);
  fft.toPack(x, pack);
  fft.toPerm(x, perm);
  ovks::conjCcs(spectrum, whole);
  ovks::conjPack(pack, fromPack);
  ovks::conjPerm(perm, fromPerm);
  ovks::ComplexFFT<T> complex(order);
  ovks::SplitFFT<T> split(order);
  std::vector<T> re = x, im(n);
  for (std::size_t i = 0; i < n; ++i) z[i] = {x[i], 0};
  complex.forward(z);
  split.forward(re, im);
  const T tolerance = static_cast<T>(n) * 100 * std::numeric_limits<T>::epsilon();
  EXPECT_LE(ovks::normDiffInf(z, whole), tolerance);
  EXPECT_LE(ovks::normDiffInf(z, fromPack), tolerance);
  EXPECT_LE(ovks::normDiffInf(z, fromPerm), tolerance);
  for (std::size_t i = 0; i < n; ++i) EXPECT_NEAR(std::hypot(re[i] - z[i].re, im[i] - z[i].im), 0, tolerance);

  complex.inverse(z);
  for (std::size_t i = 0; i < n; ++i) EXPECT_NEAR(z[i].re, x[i], tolerance);
  split.inverse(re, im);
  EXPECT_LE(ovks::normDiffInf(re, x), tolerance);
  fft.fromCcs(spectrum, y);
  EXPECT_LE(ovks::normDiffInf(y, x), tolerance);
  fft.fromPack(pack);
  EXPECT_LE(ovks::normDiffInf(pack, x), tolerance);
  fft.fromPerm(perm, y);
  EXPECT_LE(ovks::normDiffInf(y, x), tolerance);
}

TEST(Face, Transforms) {
  const auto byC = [](auto getSize, auto init, auto forward, const auto& x, auto& spectrum, auto* specification) {
    const int order = std::countr_zero(x.size());
    int bytes, initBytes, workBytes;
    ASSERT_EQ(getSize(order, FFTNoDiv, AlgHintNone, &bytes, &initBytes, &workBytes), StatusOk);
    std::vector<uint8_t> area(static_cast<std::size_t>(bytes)), work(static_cast<std::size_t>(workBytes + initBytes));
    ASSERT_EQ(init(&specification, order, FFTNoDiv, AlgHintNone, area.data(), work.data()), StatusOk);
    ASSERT_EQ(forward(x.data(), spectrum.data(), specification, work.data()), StatusOk);
  };
  for (const int order : {0, 1, 7, 12}) {
    expectTransforms<float>(order, [&](const auto& x, auto& spectrum) {
      byC(ovksFFTGetSize_R_32f, ovksFFTInit_R_32f, ovksFFTFwd_RToCCS_32f, x, spectrum, (FFTSpec_R_32f*){});
    });
    expectTransforms<double>(order, [&](const auto& x, auto& spectrum) {
      byC(ovksFFTGetSize_R_64f, ovksFFTInit_R_64f, ovksFFTFwd_RToCCS_64f, x, spectrum, (FFTSpec_R_64f*){});
    });
  }
}

// An impulse and its echo are the taps, whatever the blocks.
template <class Sample>
void expectTaps() {
  using Tap = typename ovks::FIR<Sample>::Tap;
  const std::vector<Tap> taps = samples<Tap>(5);
  const std::vector<Sample> expected = samples<Sample>(5);
  std::vector<Sample> x(12), whole(12);
  if constexpr (std::is_arithmetic_v<Sample>) x[0] = x[6] = 1;
  else x[0] = x[6] = {1, 0};
  ovks::FIR<Sample> filter(taps);
  filter.filter(x, whole);
  filter.reset();
  const std::span<Sample> all(x);
  for (const auto& [from, size] : {std::pair{0u, 1u}, {1u, 7u}, {8u, 4u}}) filter.filter(all.subspan(from, size));
  expectEqual(x, whole);
  expectEqual({x.begin(), x.begin() + 5}, expected);
  expectEqual({x.begin() + 6, x.begin() + 11}, expected);
  EXPECT_EQ(filter.delay().size(), 4u);
}

TEST(Face, Filters) {
  expectTaps<float>();
  expectTaps<double>();
  expectTaps<Complex32f>();
  expectTaps<Complex64f>();
  expectTaps<int16_t>();
  expectTaps<Complex16s>();

  const std::vector<double> x = {1, 2, 3}, y = {1, -1};
  std::vector<double> product(4);
  ovks::convolve(x, y, product);
  expectEqual(product, {1, 1, 1, -3});
  ovks::Buffer buffer;
  ovks::convolve(y, x, product, FilterAlgDirect, buffer);
  expectEqual(product, {1, 1, 1, -3});
}

template <class T, class State>
void expectSequence(Status (*getSize)(int*), Status (*init)(State*, T, T, uint32_t), Status (*fill)(T*, int, State*),
                    auto generator) {
  int bytes;
  ASSERT_EQ(getSize(&bytes), StatusOk);
  std::vector<uint8_t> area(static_cast<std::size_t>(bytes));
  const auto state = reinterpret_cast<State*>(area.data());
  ASSERT_EQ(init(state, 3, 5, 42), StatusOk);
  std::vector<T> expected(kLength), result(kLength);
  ASSERT_EQ(fill(expected.data(), kLength, state), StatusOk);
  const std::span<T> all(result);
  generator(all.first(30));
  generator(all.subspan(30));
  expectEqual(result, expected);
}

TEST(Face, RandomSequences) {
  using ovks::UniformRandom, ovks::GaussRandom;
  expectSequence(ovksRandUniformGetSize_8u, ovksRandUniformInit_8u, ovksRandUniform_8u,
                 UniformRandom<uint8_t>(3, 5, 42));
  expectSequence(ovksRandGaussGetSize_16s, ovksRandGaussInit_16s, ovksRandGauss_16s, GaussRandom<int16_t>(3, 5, 42));
  expectSequence(ovksRandUniformGetSize_32f, ovksRandUniformInit_32f, ovksRandUniform_32f,
                 UniformRandom<float>(3, 5, 42));
  expectSequence(ovksRandGaussGetSize_64f, ovksRandGaussInit_64f, ovksRandGauss_64f, GaussRandom<double>(3, 5, 42));
}

TEST(Face, LengthsAreChecked) {
  const std::vector<float> three(3, 1.0f), four(4, 1.0f);
  std::vector<float> dst(4, 7.0f), none;
  std::vector<int32_t> positions(3);
  std::vector<Complex32f> points(4);
  const auto unequal = [](auto call) { expectError(StatusBadSize, call); };
  unequal([&] { ovks::add(three, four, dst); });
  unequal([&] { ovks::add(four, three, dst); });
  unequal([&] { ovks::mulC(three, 2, dst); });
  unequal([&] { ovks::hann(three, dst); });
  unequal([&] { (void)ovks::dotProd(three, four); });
  unequal([&] { ovks::sortIndex(dst, positions); });
  unequal([&] { ovks::sortRadixIndex(dst, positions); });
  unequal([&] { ovks::conjCcs(four, points); });
  unequal([&] { ovks::convolve(three, four, dst); });
  unequal([&] { ovks::FIR<float>(four).filter(three, dst); });
  unequal([&] { ovks::RealFFT<float>(2).toCcs(four, dst); });
  unequal([&] { ovks::RealFFT<float>(2).toPerm(three, dst); });
  unequal([&] { ovks::zero(none); });
  unequal([&] { (void)ovks::sum(none); });
  unequal([&] { ovks::FIR<float>{none}; });
  unequal([&] { ovks::convolve(none, four, dst); });
  unequal([&] { ovks::addC(std::span(three.data(), std::size_t{1} << 31), 1, std::span(dst.data(), 1u << 31)); });
  EXPECT_EQ(dst, std::vector<float>(4, 7.0f));
}

TEST(Face, ErrorsCarryTheStatus) {
  std::vector<float> x(100, 1.0f);
  expectError(StatusDivByZeroErr, [&] { ovks::divC(0, x); });
  expectError(StatusHugeWin, [&] { ovks::kaiser(x, 1000); });
  expectError(StatusBadSize, [&] { (void)ovks::stdDev(std::span(x).first(1)); });
  expectError(StatusBadFFTOrder, [] { ovks::RealFFT<float>{-1}; });
  expectError(StatusBadFFTFlag, [] { ovks::ComplexFFT<double>(4, 3); });
  expectError(StatusBadAlgType, [&] { ovks::FIR<float>(x, 3); });
  expectError(StatusBadAlgType, [&] { ovks::convolve(x, std::span(x).first(1), x, 3); });
  expectError(StatusNullPtr, [] { ovks::zero(std::span(static_cast<float*>(nullptr), 1)); });
  try {
    ovks::divC(0, x);
  } catch (const std::runtime_error& e) {
    EXPECT_STREQ(e.what(), "ovksDivC_32f_I: the constant divisor is zero (status -10)");
  }
}

template <class T, class... A>
void expectMoves(auto use, const A&... arguments) {
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
  std::vector<Complex64f> z(64);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(x.data()) % 64, 0u);
  expectMoves<ovks::RealFFT<float>>([&](auto& fft) { fft.toPerm(x); }, 6);
  expectMoves<ovks::ComplexFFT<double>>([&](auto& fft) { fft.forward(z); }, 6);
  expectMoves<ovks::SplitFFT<float>>([&](auto& fft) { fft.inverse(x, x); }, 6);
  expectMoves<ovks::FIR<float>>([&](auto& filter) { filter.filter(x); }, samples<float>(5));
  expectMoves<ovks::UniformRandom<float>>([&](auto& random) { random(x); }, 0.0f, 1.0f, 1u);
}

// What an object took is released when its construction fails, too.
TEST(Face, FailuresReleaseWhatWasTaken) {
  const std::ptrdiff_t before = alignedBlocks;
  expectError(StatusBadAlgType, [] { ovks::FIR<float>(samples<float>(9), 17); });
  EXPECT_EQ(alignedBlocks, before);
}

// A new export needs its place here as well.
TEST(Face, HasEveryExport) {
  std::string face;
  for (const auto& file : std::filesystem::directory_iterator(FACE_FOLDER)) {
    std::ifstream text(file.path());
    face.append(std::istreambuf_iterator<char>(text), {});
  }
  const auto has = [&](std::string_view name) {
    const auto word = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; };
    for (std::size_t at = face.find(name); at != std::string::npos; at = face.find(name, at + 1))
      if (!word(face[at + name.size()])) return true;
    return name.starts_with("ovksMalloc") || name == "ovksFree" || name == "ovksGetLibVersion";
  };
#define X(name) EXPECT_TRUE(has(#name)) << #name;
#include "exports.inc"
#undef X
}

}  // namespace
