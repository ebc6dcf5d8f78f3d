#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for the given number
# of seconds (default 60) on its seed corpus.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
scripts/setup.sh
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DTARN_FUZZ=ON -DTARN_TESTS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
targets=$(for f in fuzz/*_fuzz.cpp; do basename "$f" .cpp; done)
cmake --build build-fuzz -j"$(nproc)" --target $targets
for name in $targets; do
  target=build-fuzz/bin/$name
  corpus=build-fuzz/corpus/$name
  mkdir -p "$corpus"
  seeds=fuzz/corpus/${name%_fuzz}
  [ -d "$seeds" ] || seeds=
  echo "== $name for ${seconds}s"
  "$target" -max_total_time="$seconds" -print_final_stats=1 "$corpus" $seeds
done
