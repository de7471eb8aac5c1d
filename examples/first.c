/* SPDX-License-Identifier: MIT */
#include <ovks.h>
#include <stdio.h>

int main(void) {
  const int16_t a[4] = {30000, 3, 5, -3}, b[4] = {30000, 0, 0, 0};
  int16_t mean[4];
  /* (a + b) / 2^1, ties to even */
  const Status status = ovksAdd_16s_Sfs(a, b, mean, 4, 1);
  printf("%d: %d %d %d %d\n", status, mean[0], mean[1], mean[2], mean[3]); /* 0: 30000 2 2 -2 */
  return 0;
}
