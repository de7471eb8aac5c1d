/* SPDX-License-Identifier: MIT
 * program [level]: calls of several families give what they should, on the level that it names, or else the
 * one that fits the processor. */
#include <ovkcore.h>
#include <ovks.h>
#include <stdio.h>
#include <string.h>

static int has_avx512(void) {
  return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512cd") &&
         __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
}

int main(int argc, char** argv) {
  const char* level = argc > 1 ? argv[1] : has_avx512() ? "n0" : "a2";
  float *samples, sum = 0;
  int good;
  if (strcmp(level, "n0") == 0 && !has_avx512()) {
    puts("skipped: this processor has no level n0");
    return 77;
  }
  samples = ovksMalloc_32f(1000);
  good = samples != NULL && ovksSet_32f(0.25f, samples, 1000) == StatusOk && ovksWinHann_32f_I(samples, 0) < 0;
  good = good && ovksAddC_32f_I(1.0f, samples, 1000) == StatusOk;
  good = good && ovksSum_32f(samples, 1000, &sum, AlgHintNone) == StatusOk && sum == 1250.0f;
  good = good && ovksSortAscend_32f_I(samples, 1000) == StatusOk;
  ovksFree(samples);
  printf("level %s: %s\n", ovksGetLibVersion()->targetCpu, good ? "good" : "wrong");
  return good && strcmp(ovksGetLibVersion()->targetCpu, level) == 0 ? 0 : 1;
}
