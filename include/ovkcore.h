/* SPDX-License-Identifier: MIT */
/** @file
 *  The companion module: aligned memory and questions about the processor. */
#ifndef OVKCORE_H
#define OVKCORE_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Processor features, as bits for ownGetFeature(). */
enum {
  OvkFeatureF16C = 1 << 0,    /**< half-precision conversion */
  OvkFeatureFMA = 1 << 1,     /**< fused multiply-add */
  OvkFeatureAVX2 = 1 << 2,    /**< 256-bit integer vectors */
  OvkFeatureAVX512F = 1 << 3, /**< 512-bit vectors: foundation */
  OvkFeatureAVX512CD = 1 << 4,
  OvkFeatureAVX512BW = 1 << 5,
  OvkFeatureAVX512DQ = 1 << 6,
  OvkFeatureAVX512VL = 1 << 7
};

/** Returns @p size bytes at a 64-byte boundary, or null when @p size is zero or below or memory is exhausted. Blocks of
 *  64 KB and more begin at differing places within memory pages, so that those used together do not compete for the
 *  same sets of the caches. */
void* ovkMalloc(int64_t size);

/** Releases memory from ovkMalloc(); a null pointer is ignored. */
void ovkFree(void* ptr);

/** Writes the size in bytes of the largest processor cache. Returns 0; or -8 when @p pSize is null, or -1 when the
 *  processor does not tell, with nothing written. */
int32_t ovkGetMaxCacheSizeB(int32_t* pSize);

/** Returns @p ptr rounded up to a multiple of @p alignment, a power of two in bytes. */
void* ovkAlignPtr(void* ptr, int32_t alignment);

/** Returns 1 when processor and operating system offer every feature in @p mask, else 0. */
int32_t ownGetFeature(uint64_t mask);

#ifdef __cplusplus
}
#endif

#endif
