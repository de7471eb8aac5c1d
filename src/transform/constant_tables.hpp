// SPDX-License-Identifier: MIT
// The tables of transforms that are not long: made by the compiler.
#pragma once

namespace ovks::fft {

// Up to these orders the tables are constants.
inline constexpr int kMaxConstantOrder = 10, kMaxConstantSplitOrder = 11;

// Of interleaved points.
template <class T>
const T* constantTwiddles(int order);

// Of real transforms.
template <class T>
const T* constantSplitTwiddles(int order);
template <class T>
const T* constantRealTiles(int order);

}  // namespace ovks::fft
