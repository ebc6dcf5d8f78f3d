#!/usr/bin/env bash
# Sets up, builds and runs every test.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh tests
scripts/build.sh -DTARN_TESTS=ON
ctest --test-dir build --output-on-failure -j"$(nproc)"
