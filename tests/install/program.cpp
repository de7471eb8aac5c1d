// SPDX-License-Identifier: MIT
// The same program in C++.
#include "program.c"
