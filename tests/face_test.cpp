// SPDX-License-Identifier: MIT
// The C++ face: each form of call reaches its C function.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include "ovks.hpp"

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
  EXPECT_EQ(z[1].im, -2);
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
  using Complex = typename ovks::ComplexFFT<T>::Complex;
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
  vector<Complex> points(4), back(4), many(1 << 16, Complex{1, 0});
  ovks::conjCcs(spectrum, points);
  ovks::ComplexFFT<T>(2).inverse(points, back);
  for (std::size_t i = 0; i < 4; ++i)
    EXPECT_TRUE(points[i].re == re[i] && points[i].im == im[i] && back[i].re == x[i] && back[i].im == 0) << i;
  ovks::ComplexFFT<T>(16).forward(many);  // with room to work in
  EXPECT_EQ(many[0].re, 1 << 16);
}

TEST(Face, Transforms) {
  expectTransforms<float>();
  expectTransforms<double>();
}

template <class T>
T number(int x) {
  if constexpr (std::is_arithmetic_v<T>) return static_cast<T>(x);
  else return {static_cast<decltype(T::re)>(x), 0};
}

// An impulse gives the taps, whatever the blocks.
template <class S>
void expectTaps() {
  using Tap = typename ovks::FIR<S>::Tap;
  ovks::FIR<S> filter(std::array{number<Tap>(1), number<Tap>(2)});
  std::array x = {number<S>(1), S{}, S{}};
  const std::array expected = {number<S>(1), number<S>(2), S{}};
  const std::span<S> all(x);
  filter.filter(all.first(2));
  filter.filter(vector(all.begin() + 2, all.end()), all.subspan(2));
  EXPECT_EQ(std::memcmp(&x, &expected, sizeof x), 0);
  filter.filter(all.first(1));
  filter.reset();
  EXPECT_EQ(std::memcmp(filter.delay().data(), &x[2], sizeof(S)), 0);
}

TEST(Face, Filters) {
  expectTaps<float>();
  expectTaps<double>();
  expectTaps<Complex32f>();
  expectTaps<Complex64f>();
  expectTaps<int16_t>();
  expectTaps<Complex16s>();
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

}  // namespace
