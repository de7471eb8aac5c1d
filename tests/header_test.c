/* SPDX-License-Identifier: MIT
 * The public headers as a C99 program sees them, under the strictest warnings; linked and run. */
#include "ovks.h"
#include "ovkcore.h"

#include <stdio.h>
#include <string.h>

int main(void) {
  const Complex16s a[2] = {{1, 2}, {-3, 4}}, b[2] = {{5, 6}, {7, -8}};
  Complex16s sum[2];
  float* samples = ovksMalloc_32f(3);
  int good = samples != NULL && ownGetFeature(0) == 1;
  good = good && ovksSet_32f(0.5f, samples, 3) == StatusOk && ovksMulC_32f_I(4.0f, samples, 3) == StatusOk;
  good = good && samples[2] == 2.0f && ovksAdd_16sc_Sfs(a, b, sum, 2, 0) == StatusOk && sum[1].im == -4;
  good = good && strlen(ovksGetLibVersion()->targetCpu) == 2;
  ovksFree(samples);
  if (!good) puts("a call from C went wrong");
  return good ? 0 : 1;
}
