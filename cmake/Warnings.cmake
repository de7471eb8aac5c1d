# SPDX-License-Identifier: MIT
# Warnings and sanitizers that every target shares.
add_compile_options(
  -Wall -Wextra -Wshadow -Wpointer-arith -Wundef -Werror=return-type
  "$<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor;-Woverloaded-virtual>"
  # Vector values never cross a module's boundary, so their calling convention is nobody's concern.
  -Wno-psabi
  # The intrinsics' own undefined registers.
  "$<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-uninitialized;-Wno-maybe-uninitialized>"
  # A dynamic initialiser would write into the read-only table of exports.
  "$<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Werror=global-constructors>")

if(OVKS_SANITIZE)
  add_compile_options("-fsanitize=${OVKS_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
  # Elements may lie at any address, which these processors have nothing against.
  add_compile_options(-fno-sanitize=alignment)
  add_link_options("-fsanitize=${OVKS_SANITIZE}")
endif()
