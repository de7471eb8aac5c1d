// SPDX-License-Identifier: MIT
// level n0 COMMAND: runs the command if the processor has the level, else counts as skipped. Compiled for any
// processor, as the command may not be.
#ifdef _WIN32
#include <process.h>
#else
#include <unistd.h>
#endif

#include <cstdio>
#include <string_view>

int main(int argc, char** argv) {
  constexpr int kSkipped = 77;
  if (argc < 3) return 2;
  const bool avx2 = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi2");
  const bool avx512 = avx2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512cd") &&
                      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq") &&
                      __builtin_cpu_supports("avx512vl");
  if (!(std::string_view(argv[1]) == "n0" ? avx512 : avx2)) {
    std::printf("skipped: this processor has no level %s\n", argv[1]);
    return kSkipped;
  }
#ifdef _WIN32
  if (const auto status = _spawnv(_P_WAIT, argv[2], argv + 2); status != -1) return static_cast<int>(status);
#else
  execv(argv[2], argv + 2);
#endif
  std::perror(argv[2]);
  return 1;
}
