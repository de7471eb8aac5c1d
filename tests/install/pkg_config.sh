#!/bin/sh
# SPDX-License-Identifier: MIT
# pkg_config.sh libraries out: builds programs with what pkg-config says of the installed library, and runs them. CC and
# CXX are the compilers. Programs in C get along without the C++ run-time library, even when static.
set -eux
cd "$(dirname "$0")"
PKG_CONFIG_PATH=$1/pkgconfig
export PKG_CONFIG_PATH
out=$2
mkdir -p "$out"

pkg-config --exact-version=9.0.2 ovks ovkcore
for compiler in "$CC" "$CXX"; do
  source=program.c
  [ "$compiler" = "$CC" ] || source=program.cpp
  "$compiler" $source $(pkg-config --cflags --libs ovks) -Wl,-rpath,"$1" -o "$out/shared"
  "$out/shared"
  "$compiler" $source -static $(pkg-config --cflags --libs --static ovks) -o "$out/static"
  "$out/static" a2
done
# The static program has the table of exports, slots side by side in the order of their names.
nm "$out/static" | grep ' d ovksSlot_' | sort >"$out/slots"
cut -d ' ' -f 3 "$out/slots" | LC_ALL=C sort -c
first=$(head -n 1 "$out/slots" | cut -d ' ' -f 1) last=$(tail -n 1 "$out/slots" | cut -d ' ' -f 1)
[ $((0x$last - 0x$first)) -eq $((8 * ($(wc -l <"$out/slots") - 1))) ]

"$CC" program.c $(pkg-config --cflags ovks) "$1"/libovks.a "$1"/libovkcore-9.0.a -lm -Wl,--gc-sections -o "$out/small"
"$out/small" a2
# It holds the functions that it calls, and nothing that only others call.
nm "$out/small" >"$out/symbols"
readelf -d "$out/small" >>"$out/symbols"
grep -q ' ovksSlot_ovksSet_32f$' "$out/symbols"
[ "$(grep -Ec ' ovksSlot_ovksFFT|NEEDED.*stdc' "$out/symbols")" -eq 0 ]
