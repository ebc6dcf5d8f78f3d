#!/usr/bin/env bash
# Sets up, builds, and runs the host against the embedded simulated cloud.
# Only what running needs is installed and built: the host, the module and
# the simulated cloud. A build directory made this way leaves the tests out
# until scripts/test.sh turns them on; one that has them keeps them.
# Setup and build talk on standard error only, so that standard output is
# the host's alone (scripts/run.sh --json ls | jq ...).
set -euo pipefail
cd "$(dirname "$0")/.."
dir=${BUILD_DIR:-build}
scripts/setup.sh >&2
options=()
[ -f "$dir/CMakeCache.txt" ] || options=(-DTARN_TESTS=OFF)
BUILD_DIR=$dir scripts/build.sh "${options[@]}" --target tarn-host tarn_cb_airable airable-cloudsim >&2
exec "$dir/bin/tarn-host" "$@"
