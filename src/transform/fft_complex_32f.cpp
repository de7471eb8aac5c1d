// SPDX-License-Identifier: MIT
// Complex transforms.
#include "core/export.hpp"
#include "transform/fft_entry.hpp"

namespace {
using namespace ovks::fft;
constexpr Direction kForward = Direction::forward, kInverse = Direction::inverse;
}  // namespace

OVKS_EXPORT(ovksFFTFwd_CToC_32fc, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_32fc_I, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_32f, complexTransform<kForward>);
OVKS_EXPORT(ovksFFTFwd_CToC_32f_I, splitTransform<kForward>);
OVKS_EXPORT(ovksFFTInv_CToC_32fc, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_32fc_I, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_32f, complexTransform<kInverse>);
OVKS_EXPORT(ovksFFTInv_CToC_32f_I, splitTransform<kInverse>);
