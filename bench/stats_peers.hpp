// SPDX-License-Identifier: MIT
// Reductions as a compiler makes them for this very machine, of plain loops or of another library's expressions. Those
// of floats add in single precision, the wide ones in double.
#pragma once

#include <ovks/types.h>

#include <cstdint>

struct StatsPeer {
  const char* name;

  float (*sum)(const float*, int);
  double (*wideSum)(const float*, int);
  float (*deviation)(const float*, int);
  double (*logarithms)(const float*, int);
  float (*norm1)(const float*, int);
  float (*norm2)(const float*, int);
  float (*normInf)(const float*, int);
  float (*difference1)(const float*, const float*, int);
  float (*difference2)(const float*, const float*, int);
  float (*differenceInf)(const float*, const float*, int);

  double (*wideDot)(const float*, const float*, int);
  double (*wideNorm1)(const float*, int);
  double (*wideNorm2)(const float*, int);
  double (*wideDifference1)(const float*, const float*, int);
  double (*wideDifference2)(const float*, const float*, int);

  Complex32f (*complexDot)(const Complex32f*, const Complex32f*, int);
  double (*moduli)(const Complex32f*, int);
  float (*largestModulus)(const Complex32f*, int);

  int64_t (*shortSum)(const int16_t*, int);
  int64_t (*shortNorm1)(const int16_t*, int);
  int64_t (*shortNorm2Sqr)(const int16_t*, int);
  int64_t (*shortDifference1)(const int16_t*, const int16_t*, int);
  int64_t (*shortDot)(const int16_t*, const int16_t*, int);
};

extern const StatsPeer kLoop;
#ifdef OVKS_HAVE_EIGEN
extern const StatsPeer kEigen;
#endif
