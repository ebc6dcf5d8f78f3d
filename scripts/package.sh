#!/usr/bin/env bash
# Builds the Debian packages into build-deb/packages (or $BUILD_DIR/packages):
# a build for the /usr prefix without the tests, then cpack, which strips the
# binaries. Extra CMake options may be given as arguments.
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${BUILD_DIR:-build-deb}
scripts/setup.sh
# cpack tells binaries from other files with file(1) before it asks
# dpkg-shlibdeps for their dependencies.
if ! command -v file >/dev/null; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "Installing: file"
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq file >/dev/null
fi
BUILD_DIR=$dir scripts/build.sh -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_BUILD_TYPE=RelWithDebInfo -DTARN_TESTS=OFF "$@"
rm -f "$dir"/packages/*.deb
(cd "$dir" && cpack -G DEB -B "$PWD/packages" >/dev/null)
ls "$dir"/packages/*.deb
