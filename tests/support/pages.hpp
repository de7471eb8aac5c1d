// SPDX-License-Identifier: MIT
// Pages of memory, inaccessible until they are opened.
#pragma once

#include <cstddef>

namespace ovks::test {

inline constexpr std::size_t kPage = 4096;

std::byte* reservePages(std::size_t bytes);
void openPages(std::byte* begin, std::size_t bytes);
void releasePages(std::byte* begin, std::size_t bytes);
bool isWritable(const void* p);

}  // namespace ovks::test
