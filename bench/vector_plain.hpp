// SPDX-License-Identifier: MIT
// Plain loops of the element-wise rows, as a compiler vectorises them for this machine.
#pragma once

#include <cstdint>

namespace plain {

void add32f(const float* a, const float* b, float* d, int n);
void mul32f(const float* a, const float* b, float* d, int n);
void mulC32f(const float* a, float c, float* d, int n);
void mul32fc(const float* a, const float* b, float* d, int n);
void add16s(const int16_t* a, const int16_t* b, int16_t* d, int n);
void add16sScaled(const int16_t* a, const int16_t* b, int16_t* d, int n, int s);
void mul16sScaled(const int16_t* a, const int16_t* b, int16_t* d, int n, int s);
void add8u(const uint8_t* a, const uint8_t* b, uint8_t* d, int n);
void mul8uScaled(const uint8_t* a, const uint8_t* b, uint8_t* d, int n, int s);
void convert32f16s(const float* a, int16_t* d, int n);
void div32f(const float* a, const float* b, float* d, int n);

}  // namespace plain
