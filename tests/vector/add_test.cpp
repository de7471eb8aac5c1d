// SPDX-License-Identifier: MIT
#include "support/harness.hpp"

namespace ovks::test {
namespace {

TEST(Add, Vectors) {
  checkExports([](auto a, auto b) { return a + b; }, ovksAdd_16s, ovksAdd_16s32f, ovksAdd_16s32s_I, ovksAdd_16s_I,
               ovksAdd_16s_ISfs, ovksAdd_16s_Sfs, ovksAdd_16sc_ISfs, ovksAdd_16sc_Sfs, ovksAdd_16u, ovksAdd_16u_ISfs,
               ovksAdd_16u_Sfs, ovksAdd_32f, ovksAdd_32f_I, ovksAdd_32fc, ovksAdd_32fc_I, ovksAdd_32s_ISfs,
               ovksAdd_32s_Sfs, ovksAdd_32sc_ISfs, ovksAdd_32sc_Sfs, ovksAdd_32u, ovksAdd_64f, ovksAdd_64f_I,
               ovksAdd_64fc, ovksAdd_64fc_I, ovksAdd_64s_Sfs, ovksAdd_8u16u, ovksAdd_8u_ISfs, ovksAdd_8u_Sfs);
}

TEST(Add, Constants) {
  checkExports([](auto a, auto c) { return a + c; }, ovksAddC_16s_I, ovksAddC_16s_ISfs, ovksAddC_16s_Sfs,
               ovksAddC_16sc_ISfs, ovksAddC_16sc_Sfs, ovksAddC_16u_ISfs, ovksAddC_16u_Sfs, ovksAddC_32f, ovksAddC_32f_I,
               ovksAddC_32fc, ovksAddC_32fc_I, ovksAddC_32s_ISfs, ovksAddC_32s_Sfs, ovksAddC_32sc_ISfs,
               ovksAddC_32sc_Sfs, ovksAddC_64f, ovksAddC_64f_I, ovksAddC_64fc, ovksAddC_64fc_I, ovksAddC_64s_Sfs,
               ovksAddC_64u_Sfs, ovksAddC_8u_ISfs, ovksAddC_8u_Sfs);
}

TEST(Sub, Vectors) {
  checkExports([](auto a, auto b) { return b - a; }, ovksSub_16s, ovksSub_16s32f, ovksSub_16s_I, ovksSub_16s_ISfs,
               ovksSub_16s_Sfs, ovksSub_16sc_ISfs, ovksSub_16sc_Sfs, ovksSub_16u_ISfs, ovksSub_16u_Sfs, ovksSub_32f,
               ovksSub_32f_I, ovksSub_32fc, ovksSub_32fc_I, ovksSub_32s_ISfs, ovksSub_32s_Sfs, ovksSub_32sc_ISfs,
               ovksSub_32sc_Sfs, ovksSub_64f, ovksSub_64f_I, ovksSub_64fc, ovksSub_64fc_I, ovksSub_8u_ISfs,
               ovksSub_8u_Sfs);
}

TEST(Sub, Constants) {
  checkExports([](auto a, auto c) { return a - c; }, ovksSubC_16s_I, ovksSubC_16s_ISfs, ovksSubC_16s_Sfs,
               ovksSubC_16sc_ISfs, ovksSubC_16sc_Sfs, ovksSubC_16u_ISfs, ovksSubC_16u_Sfs, ovksSubC_32f, ovksSubC_32f_I,
               ovksSubC_32fc, ovksSubC_32fc_I, ovksSubC_32s_ISfs, ovksSubC_32s_Sfs, ovksSubC_32sc_ISfs,
               ovksSubC_32sc_Sfs, ovksSubC_64f, ovksSubC_64f_I, ovksSubC_64fc, ovksSubC_64fc_I, ovksSubC_8u_ISfs,
               ovksSubC_8u_Sfs);
}

TEST(Sub, ConstantsReversed) {
  checkExports([](auto a, auto c) { return c - a; }, ovksSubCRev_16s_ISfs, ovksSubCRev_16s_Sfs, ovksSubCRev_16sc_ISfs,
               ovksSubCRev_16sc_Sfs, ovksSubCRev_16u_ISfs, ovksSubCRev_16u_Sfs, ovksSubCRev_32f, ovksSubCRev_32f_I,
               ovksSubCRev_32fc, ovksSubCRev_32fc_I, ovksSubCRev_32s_ISfs, ovksSubCRev_32s_Sfs, ovksSubCRev_32sc_ISfs,
               ovksSubCRev_32sc_Sfs, ovksSubCRev_64f, ovksSubCRev_64f_I, ovksSubCRev_64fc, ovksSubCRev_64fc_I,
               ovksSubCRev_8u_ISfs, ovksSubCRev_8u_Sfs);
}

// The smallest integer is its own magnitude.
template <auto lowest>
Exact magnitude(Exact x) {
  return x.numerator < 0 && x.numerator != lowest ? Exact() - x : x;
}

TEST(Abs, Vectors) {
  checkExports(magnitude<INT16_MIN>, ovksAbs_16s, ovksAbs_16s_I);
  checkExports(magnitude<INT32_MIN>, ovksAbs_32s, ovksAbs_32s_I);
  checkExports([](auto x) { return std::fabs(x); }, ovksAbs_32f, ovksAbs_32f_I, ovksAbs_64f, ovksAbs_64f_I);
}

}  // namespace
}  // namespace ovks::test
