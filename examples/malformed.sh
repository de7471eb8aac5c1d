#!/bin/sh
# SPDX-License-Identifier: MIT
# malformed.sh demo: a bad file gets one line and status 1.
set -u
folder=$(mktemp -d) && trap 'rm -r "$folder"' EXIT

printf '' >"$folder/empty.wav"
printf 'RIFF\377\377\377\377WAVEfmt ' >"$folder/truncated.wav"
printf 'RIFX....WAVE' >"$folder/other.wav"

for file in "$folder"/*.wav "$folder/missing" "$folder"; do
  "$1" "$file" >"$folder/stdout" 2>"$folder/stderr"
  status=$?
  if [ $status -ne 1 ] || [ "$(wc -l <"$folder/stderr")" -ne 1 ] || [ -s "$folder/stdout" ]; then
    echo "$file: status $status" && cat "$folder/stdout" "$folder/stderr" && exit 1
  fi
done
