#!/usr/bin/env bash
# Builds only what the thread sanitizer runs, and runs it: the platform's
# thread test and eight clients at once through the root. Suppressions are
# for Qt's own internals, which the sanitizer cannot see (scripts/tsan.supp).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build-tsan -DTARN_WERROR=ON -DTARN_TSAN=ON -DCMAKE_BUILD_TYPE=Debug >/dev/null
cmake --build build-tsan -j"$(nproc)" --target platform_threads_test load_test
export TSAN_OPTIONS="halt_on_error=1 second_deadlock_stack=1 suppressions=$PWD/scripts/tsan.supp"
build-tsan/bin/platform_threads_test
build-tsan/bin/load_test
