// SPDX-License-Identifier: MIT
// Complex transforms.
#include "core/export.hpp"
#include "transform/fft_entry.hpp"

namespace {
using namespace ovks::fft;
constexpr Direction kForward = Direction::forward, kInverse = Direction::inverse;
}  // namespace

OVKS_EXPORT(ovksFFTFwd_CToC_64fc, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_64fc_I, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_64f, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_64f_I, splitTransform<kForward>);
OVKS_EXPORT(ovksFFTInv_CToC_64fc, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_64fc_I, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_64f, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_64f_I, splitTransform<kInverse>);
