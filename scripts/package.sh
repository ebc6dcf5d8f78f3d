#!/usr/bin/env bash
# Builds the Debian packages into build-deb/packages (or $BUILD_DIR/packages):
# a build for the /usr prefix without the tests, then cpack, which strips the
# binaries.
#   scripts/package.sh [arm64|armhf] [CMake options...]
# With an architecture, the build is a cross build (build-deb-ARCH) and the
# packages are that architecture's. Extra CMake options may be given.
set -euo pipefail
cd "$(dirname "$0")/.."

arch=""
case "${1:-}" in
  arm64) arch=arm64 triplet=aarch64-linux-gnu ;;
  armhf) arch=armhf triplet=arm-linux-gnueabihf ;;
esac
[ -z "$arch" ] || shift

scripts/setup.sh
options=(-DCMAKE_INSTALL_PREFIX=/usr -DTARN_TESTS=OFF)
if [ -n "$arch" ]; then
  scripts/setup-cross.sh "$arch"
  dir=${BUILD_DIR:-build-deb-$arch}
  # A cross build's packages are optimised as the native ones (-O2), and the
  # dependencies read from the binaries with the architecture's libraries.
  options+=(-DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/toolchains/$triplet.cmake" -DCMAKE_BUILD_TYPE=Release "-DCMAKE_CXX_FLAGS_RELEASE=-O2 -DNDEBUG")
  export DEB_HOST_ARCH=$arch
else
  dir=${BUILD_DIR:-build-deb}
  options+=(-DCMAKE_BUILD_TYPE=RelWithDebInfo)
fi
# cpack tells binaries from other files with file(1) before it asks
# dpkg-shlibdeps for their dependencies.
if ! command -v file >/dev/null; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "Installing: file"
  $sudo apt-get update -qq || echo "apt-get update failed for some indexes; installing from the others" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq file >/dev/null
fi
BUILD_DIR=$dir scripts/build.sh "${options[@]}" "$@"
rm -f "$dir"/packages/*.deb
(cd "$dir" && cpack -G DEB -B "$PWD/packages" >/dev/null)
ls "$dir"/packages/*.deb
