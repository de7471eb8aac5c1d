#!/bin/sh
# SPDX-License-Identifier: MIT
# debian.sh build out libraries: makes the Debian package and looks into it. The libraries' folder is told from /usr.
set -eux
build=$1 out=$2 libraries=usr/$3
cpack --config "$build/CPackConfig.cmake" -G DEB -B "$out"
dpkg-deb -c "$out"/*.deb >"$out/contents"
for file in libovksa2-9.0.so libovkcore-9.0.so glibc-hwcaps/x86-64-v4/libovksn0-9.0.so; do
  grep -q " \./$libraries/$file\$" "$out/contents"
done
for folder in $libraries $libraries/glibc-hwcaps/x86-64-v4; do
  grep -q " \./$folder/libovks.so.9 -> " "$out/contents"
done
dpkg-deb -I "$out"/*.deb triggers | grep -q ldconfig

# What ldconfig makes of it: the fallback stays the fallback.
dpkg-deb -x "$out"/*.deb "$out/root"
mkdir "$out/root/etc"
PATH=$PATH:/sbin ldconfig -r "$out/root" "/$libraries"
[ "$(readlink "$out/root/$libraries/libovks.so.9")" = libovksa2-9.0.so ]
[ "$(readlink "$out/root/$libraries/glibc-hwcaps/x86-64-v4/libovks.so.9")" = libovksn0-9.0.so ]
