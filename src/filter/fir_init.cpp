// SPDX-License-Identifier: MIT
// Sizes and initialisation of FIR filters.
#include <limits>

#include "core/export.hpp"
#include "filter/fir_spec.hpp"

namespace {

using namespace ovks;

template <class T>
Status writeSizes(int tapsLen, int* pSpecSize, int* pBufSize) {
  const FirLayout<T> layout(tapsLen);
  constexpr int64_t kMost = std::numeric_limits<int>::max();
  if (layout.specBytes() > kMost || layout.bufferBytes() > kMost) return StatusBadSize;
  *pSpecSize = static_cast<int>(layout.specBytes());
  *pBufSize = static_cast<int>(layout.bufferBytes());
  return StatusOk;
}

Status getSize(int tapsLen, DataType tapsType, int* pSpecSize, int* pBufSize) {
  if (tapsLen < 1) return StatusBadSize;
  const bool known =
      tapsType == DataType32f || tapsType == DataType32fc || tapsType == DataType64f || tapsType == DataType64fc;
  if (!known) return StatusBadDataType;
  if (!pSpecSize || !pBufSize) return StatusNullPtr;
  switch (tapsType) {
    case DataType32f: return writeSizes<float>(tapsLen, pSpecSize, pBufSize);
    case DataType32fc: return writeSizes<Complex32f>(tapsLen, pSpecSize, pBufSize);
    case DataType64f: return writeSizes<double>(tapsLen, pSpecSize, pBufSize);
    default: return writeSizes<Complex64f>(tapsLen, pSpecSize, pBufSize);
  }
}

// The transform of the taps, padded with zeros to its length.
template <class T>
void initSpectrum(const T* pTaps, FirHeader<T>* header, uint8_t* start) {
  using F = Transforms<T>;
  const FirLayout<T> layout(header->tapsLen);
  header->length = static_cast<int32_t>(layout.length());
  header->scratch = start + layout.scratchOffset();
  header->spectrum = reinterpret_cast<T*>(start + layout.spectrumOffset());
  F::kInit(&header->fft, layout.order, FFTDivInvByN, AlgHintNone, start + layout.fftOffset(), header->scratch);
  copyElements(pTaps, header->spectrum, header->tapsLen);
  zeroElements(header->spectrum + header->tapsLen, header->length - header->tapsLen);
  F::kForward(header->spectrum, header->spectrum, header->fft, header->scratch);
}

template <class T, class Spec>
Status init(const T* pTaps, int tapsLen, FilterAlg algType, Spec* pSpec) {
  constexpr int kLongTaps = 32;
  if (tapsLen < 1) return StatusBadSize;
  if (!pTaps || !pSpec) return StatusNullPtr;
  if (algType != FilterAlgAuto && algType != FilterAlgDirect && algType != FilterAlgFFT) return StatusBadAlgType;
  uint8_t* const start = alignUp64(reinterpret_cast<uint8_t*>(pSpec));
  const auto header = reinterpret_cast<FirHeader<T>*>(start);
  *header = {};
  header->tapsLen = tapsLen;
  header->taps = reinterpret_cast<T*>(start + kFirHeaderBytes);
  header->isLong = std::is_same_v<T, float> && tapsLen >= kLongTaps;
  copyElements(pTaps, header->taps, tapsLen);
  if (algType != FilterAlgDirect) initSpectrum(pTaps, header, start);
  header->algType = algType;
  return StatusOk;
}

}  // namespace

OVKS_EXPORT(ovksFIRSRGetSize, getSize);
OVKS_EXPORT(ovksFIRSRInit_32f, init);
OVKS_EXPORT(ovksFIRSRInit_64f, init);
OVKS_EXPORT(ovksFIRSRInit_32fc, init);
OVKS_EXPORT(ovksFIRSRInit_64fc, init);
