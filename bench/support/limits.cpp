// SPDX-License-Identifier: MIT
#include "support/limits.hpp"

#include <immintrin.h>

namespace bench {
namespace {

#ifdef __AVX512F__
using V = __m512i;
V either(V a, V b) { return _mm512_or_si512(a, b); }
void past(V* p, V v) { _mm512_stream_si512(p, v); }
#else
using V = __m256i;
V either(V a, V b) { return _mm256_or_si256(a, b); }
void past(V* p, V v) { _mm256_stream_si256(p, v); }
#endif

template <class F>
void over(std::size_t bytes, F at) {
  const std::size_t n = bytes / sizeof(V);
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) {
    at(i);
    at(i + 1);
    at(i + 2);
    at(i + 3);
  }
  for (; i < n; ++i) at(i);
}

const V* vectors(const void* p) { return static_cast<const V*>(p); }
V* vectors(void* p) { return static_cast<V*>(p); }

}  // namespace

void limitCopy(const void* src, void* dst, std::size_t bytes) {
  over(bytes, [s = vectors(src), d = vectors(dst)](std::size_t i) {
    d[i] = s[i];
    asm volatile("" ::: "memory");  // stays a loop
  });
}

void limitCombine(const void* src1, const void* src2, void* dst, std::size_t bytes) {
  over(bytes, [a = vectors(src1), b = vectors(src2), d = vectors(dst)](std::size_t i) { d[i] = either(a[i], b[i]); });
}

void limitRead(const void* src, std::size_t bytes) {
  over(bytes, [s = vectors(src)](std::size_t i) {
    V v = s[i];
    asm volatile("" : "+v"(v));  // loaded, and forgotten
  });
}

void limitRead(const void* src1, const void* src2, std::size_t bytes) {
  over(bytes, [a = vectors(src1), b = vectors(src2)](std::size_t i) {
    V v = a[i], w = b[i];
    asm volatile("" : "+v"(v), "+v"(w));
  });
}

void limitCombineStreaming(const void* src1, const void* src2, void* dst, std::size_t bytes) {
  over(bytes,
       [a = vectors(src1), b = vectors(src2), d = vectors(dst)](std::size_t i) { past(d + i, either(a[i], b[i])); });
  _mm_sfence();
}

void limitCopyStreaming(const void* src, void* dst, std::size_t bytes) {
  over(bytes, [s = vectors(src), d = vectors(dst)](std::size_t i) { past(d + i, s[i]); });
  _mm_sfence();
}

}  // namespace bench
