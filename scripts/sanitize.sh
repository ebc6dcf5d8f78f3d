#!/usr/bin/env bash
# The tests again under the address and undefined-behaviour sanitizers (the
# soak among them), and the tests where threads meet (the platform's thread
# test and eight clients at once) under the thread sanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh tests

BUILD_DIR=build-asan scripts/build.sh -DTARN_SANITIZE=ON -DCMAKE_BUILD_TYPE=Debug
ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build-asan --output-on-failure -j"$(nproc)"

scripts/tsan.sh
