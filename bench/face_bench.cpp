// SPDX-License-Identifier: MIT
// Calls through the C++ face beside the same calls in C: what checking of lengths and statuses costs.
#include <cstdlib>
#include <memory>
#include <ovks.hpp>

#include "support/report.hpp"

namespace {

// Three vectors whose lengths the compiler does not know.
struct Vectors {
  explicit Vectors(std::size_t n) : a(n, 1.5f), b(n, 0.5f), d(n) {}
  int length() const { return static_cast<int>(d.size()); }

  ovks::Vector<float> a, b, d;
};

template <class Face, class C>
void row(const char* name, int n, Face face, C c) {
  const auto vectors = std::make_shared<Vectors>(static_cast<std::size_t>(n));
  bench::add(name, n, "ovks", [vectors, face] { face(*vectors); });
  bench::add(name, n, "C", [vectors, c] { c(*vectors); });
}

// What a careful caller in C writes.
void addChecked(Vectors& v) {
  if (v.a.size() != v.d.size() || v.b.size() != v.d.size()) std::abort();
  if (ovksAdd_32f(v.a.data(), v.b.data(), v.d.data(), v.length()) < 0) std::abort();
}

void callRows(int n) {
  const auto add = [](Vectors& v) { ovks::add(v.a, v.b, v.d); };
  row("Add_32f", n, add, [](Vectors& v) { ovksAdd_32f(v.a.data(), v.b.data(), v.d.data(), v.length()); });
  row("Add_32f checked in C", n, add, addChecked);
  row(
      "MulC_32f_I", n, [](Vectors& v) { ovks::mulC(1.0f, v.d); },
      [](Vectors& v) { ovksMulC_32f_I(1.0f, v.d.data(), v.length()); });
  row(
      "Norm_Inf_32f", n, [](Vectors& v) { v.d[0] = ovks::normInf(v.a); },
      [](Vectors& v) { ovksNorm_Inf_32f(v.a.data(), v.length(), v.d.data()); });
}

// Objects of the same kind: one of ours, one made by hand.
void filterRow(int n, int taps) {
  const ovks::Vector<float> ones(static_cast<std::size_t>(taps), 1.0f);
  int bytes, bufferBytes;
  ovksFIRSRGetSize(taps, DataType32f, &bytes, &bufferBytes);
  const auto area = std::make_shared<ovks::Buffer>(bytes), buffer = std::make_shared<ovks::Buffer>(bufferBytes);
  const auto delay = std::make_shared<ovks::Vector<float>>(ones.size());
  const auto specification = reinterpret_cast<FIRSRSpec_32f*>(area->data());
  ovksFIRSRInit_32f(ones.data(), taps, FilterAlgAuto, specification);
  const auto filter = std::make_shared<ovks::FIR<float>>(ones);
  row(
      "FIRSR_32f:16", n, [filter](Vectors& v) { filter->filter(v.a, v.d); },
      [area, buffer, delay, specification](Vectors& v) {
        ovksFIRSR_32f(v.a.data(), v.d.data(), v.length(), specification, delay->data(), delay->data(), buffer->data());
      });
}

void transformRow(int order) {
  int bytes, initBytes, workBytes;
  ovksFFTGetSize_R_32f(order, FFTNoDiv, AlgHintNone, &bytes, &initBytes, &workBytes);
  const auto area = std::make_shared<ovks::Buffer>(bytes), work = std::make_shared<ovks::Buffer>(workBytes);
  ovks::Buffer initRoom(initBytes);
  FFTSpec_R_32f* specification;
  ovksFFTInit_R_32f(&specification, order, FFTNoDiv, AlgHintNone, area->data(), initRoom.data());
  const auto fft = std::make_shared<ovks::RealFFT<float>>(order, FFTNoDiv);
  row(
      "FFTFwd_RToPerm_32f", 1 << order, [fft](Vectors& v) { fft->toPerm(v.a, v.d); },
      [area, work, specification](Vectors& v) {
        ovksFFTFwd_RToPerm_32f(v.a.data(), v.d.data(), specification, work->data());
      });
}

}  // namespace

int main(int argc, char** argv) {
  for (const int n : {4, 16, 256, 2048}) callRows(n);
  for (const int n : {16, 256}) filterRow(n, 16);
  for (const int order : {4, 8, 10}) transformRow(order);
  return bench::run(argc, argv);
}
