#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for the given number
# of seconds (default 60) on its seed corpus, as many at once as there are
# cores. Names after the seconds pick targets: scripts/fuzz.sh 60 oauth_fuzz
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
shift || true
scripts/setup.sh fuzz
CC=clang CXX=clang++ cmake -S . -B build-fuzz -DTARN_FUZZ=ON -DTARN_TESTS=OFF -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
if [ $# -gt 0 ]; then
  targets="$*"
else
  targets=$(for f in fuzz/*_fuzz.cpp; do basename "$f" .cpp; done)
fi
cmake --build build-fuzz -j"$(nproc)" --target $targets

# One target's run; its output goes to a log that is shown when it fails.
run() {
  local name=$1 log=build-fuzz/$1.log
  local corpus=build-fuzz/corpus/$name seeds=fuzz/corpus/${name%_fuzz}
  mkdir -p "$corpus"
  [ -d "$seeds" ] || seeds=
  if (cd build-fuzz && "bin/$name" -max_total_time="$seconds" -rss_limit_mb=2048 -print_final_stats=1 \
        "corpus/$name" ${seeds:+"../$seeds"}) >"$log" 2>&1; then
    echo "== $name: $(grep -E '^stat::number_of_executed_units' "$log" | awk '{print $2}') runs in ${seconds}s"
  else
    echo "== $name FAILED"; tail -n 60 "$log"; return 1
  fi
}

failed=0
running=0
for name in $targets; do
  run "$name" &
  running=$((running + 1))
  if [ "$running" -ge "$(nproc)" ]; then
    wait -n || failed=1
    running=$((running - 1))
  fi
done
while [ "$running" -gt 0 ]; do
  wait -n || failed=1
  running=$((running - 1))
done
exit $failed
