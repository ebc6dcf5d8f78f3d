#!/usr/bin/env bash
# Builds for an ARM device and runs the tests under qemu-user:
#   scripts/cross.sh arm64|armhf [ctest arguments...]
# Installs what is missing (Debian 12 multiarch), builds into build-ARCH (or
# $BUILD_DIR) with the architecture's toolchain file, then runs ctest there;
# each cross-built test runs under the emulator. The build is optimised as the
# native packages are (-O2), without debug information, which keeps it short.
set -euo pipefail
cd "$(dirname "$0")/.."

arch=${1:-}
case "$arch" in
  arm64) triplet=aarch64-linux-gnu ;;
  armhf) triplet=arm-linux-gnueabihf ;;
  *) echo "usage: scripts/cross.sh arm64|armhf [ctest arguments...]" >&2; exit 2 ;;
esac
shift

scripts/setup.sh tests
scripts/setup-cross.sh "$arch"

dir=${BUILD_DIR:-build-$arch}
BUILD_DIR=$dir scripts/build.sh -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/$triplet.cmake" \
  -DCMAKE_BUILD_TYPE=Release -DCMAKE_CXX_FLAGS_RELEASE="-O2 -DNDEBUG"
ctest --test-dir "$dir" --output-on-failure -j"$(nproc)" "$@"
