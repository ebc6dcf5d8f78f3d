#!/usr/bin/env bash
# Runs the whole test suite several times while busy loops hold the cores,
# as a loaded CI machine would: a test that races the clock on its success
# path fails here first.
#   scripts/loaded-test.sh [RUNS] [BUSY_LOOPS] [ctest arguments...]
# Defaults: 5 runs, 2 busy loops, the build in build/ (or $BUILD_DIR).
set -uo pipefail
cd "$(dirname "$0")/.."
runs=${1:-5}
loops=${2:-2}
shift 2 2>/dev/null || shift $#
dir=${BUILD_DIR:-build}

busy=()
for _ in $(seq "$loops"); do
  (while :; do :; done) &
  busy+=($!)
done
trap 'kill "${busy[@]}" 2>/dev/null' EXIT

failed=0
for run in $(seq "$runs"); do
  start=$SECONDS
  log=$dir/loaded-run-$run.log
  if ctest --test-dir "$dir" --output-on-failure -j"$(nproc)" "$@" >"$log" 2>&1; then
    result=passed
  else
    result=FAILED
    failed=$((failed + 1))
  fi
  echo "run $run of $runs, $loops busy loops: $result in $((SECONDS - start)) s ($(grep -E '^[0-9]+% tests passed' "$log"))"
  [ "$result" = passed ] || grep -E '^\s+[0-9]+ - ' "$log"
done
[ "$failed" -eq 0 ]
