#!/usr/bin/env bash
# Configures and builds into build/ (or the directory given as $BUILD_DIR)
# with the extra CMake options given as arguments.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${BUILD_DIR:-build}
cmake -S . -B "$dir" -DTARN_WERROR=ON "$@" >/dev/null
cmake --build "$dir" -j"$(nproc)"
