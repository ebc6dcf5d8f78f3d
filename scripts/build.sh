#!/usr/bin/env bash
# Configures and builds into build/ (or the directory given as $BUILD_DIR)
# with the extra CMake options given as arguments; after "--target", the
# targets to build instead of all:
#   scripts/build.sh [CMake options...] [--target targets...]
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${BUILD_DIR:-build}
options=()
while [ $# -gt 0 ] && [ "$1" != --target ]; do
  options+=("$1")
  shift
done
cmake -S . -B "$dir" -DTARN_WERROR=ON "${options[@]}" >/dev/null
cmake --build "$dir" -j"$(nproc)" "$@"
