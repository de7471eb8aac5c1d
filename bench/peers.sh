#!/bin/sh
# SPDX-License-Identifier: MIT
# peers.sh FOLDER: builds FFTW from its Debian source with AVX-512, which the Debian package lacks, into FOLDER.
set -eu
mkdir -p "$1/lists/partial" "$1/sources"
cd "$1"
[ ! -e done ] || exit 0
for list in /etc/apt/sources.list.d/*.sources; do
  [ ! -e "$list" ] || sed 's/^Types: .*/Types: deb-src/' "$list" >"sources/$(basename "$list")"
done
for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
  [ ! -e "$list" ] || sed -n 's/^deb /deb-src /p' "$list" >"sources/$(basename "$list" .list).list"
done
apt="apt-get -q -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts=$PWD/sources -o Dir::State::lists=$PWD/lists"
$apt update
$apt source --download-only fftw3
rm -rf source
dpkg-source -x fftw3_*.dsc source
for precision in "" --enable-single; do
  mkdir -p "build$precision"
  (
    cd "build$precision"
    CFLAGS="-O3 -march=native" ../source/configure --prefix="$OLDPWD" --with-pic --disable-fortran --disable-doc \
      --enable-sse2 --enable-avx --enable-avx2 --enable-avx512 $precision >configure.log
    make -s -j"$(nproc)" >make.log 2>&1
    make -s install >install.log 2>&1
  )
done
touch done
