// SPDX-License-Identifier: MIT
// What the machine allows: traffic with next to no arithmetic, on aligned vectors of bytes.
#pragma once

#include <cstddef>

namespace bench {

void limitCopy(const void* src, void* dst, std::size_t bytes);
void limitCombine(const void* src1, const void* src2, void* dst, std::size_t bytes);
void limitCombineStreaming(const void* src1, const void* src2, void* dst, std::size_t bytes);
void limitRead(const void* src, std::size_t bytes);
void limitRead(const void* src1, const void* src2, std::size_t bytes);
void limitCopyStreaming(const void* src, void* dst, std::size_t bytes);

}  // namespace bench
