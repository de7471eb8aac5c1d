// SPDX-License-Identifier: MIT
// Transforms of real signals.
#include "core/export.hpp"
#include "transform/fft_entry.hpp"

namespace {
using namespace ovks;
using namespace ovks::fft;
constexpr Direction kForward = Direction::forward, kInverse = Direction::inverse;
}  // namespace

OVKS_EXPORT(ovksFFTFwd_RToPerm_32f, realTransform<kForward, PermLayout>);
OVKS_EXPORT(ovksFFTFwd_RToPerm_32f_I, realTransform<kForward, PermLayout>);
OVKS_EXPORT(ovksFFTInv_PermToR_32f, realTransform<kInverse, PermLayout>);
OVKS_EXPORT(ovksFFTInv_PermToR_32f_I, realTransform<kInverse, PermLayout>);
OVKS_EXPORT(ovksFFTFwd_RToPack_32f, realTransform<kForward, PackLayout>);
OVKS_EXPORT(ovksFFTFwd_RToPack_32f_I, realTransform<kForward, PackLayout>);
OVKS_EXPORT(ovksFFTInv_PackToR_32f, realTransform<kInverse, PackLayout>);
OVKS_EXPORT(ovksFFTInv_PackToR_32f_I, realTransform<kInverse, PackLayout>);
OVKS_EXPORT(ovksFFTFwd_RToCCS_32f, realTransform<kForward, CcsLayout>);
OVKS_EXPORT(ovksFFTFwd_RToCCS_32f_I, realTransform<kForward, CcsLayout>);
OVKS_EXPORT(ovksFFTInv_CCSToR_32f, realTransform<kInverse, CcsLayout>);
OVKS_EXPORT(ovksFFTInv_CCSToR_32f_I, realTransform<kInverse, CcsLayout>);
