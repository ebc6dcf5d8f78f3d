#!/usr/bin/env bash
# Sets up, builds, and runs the host against the embedded simulated cloud.
# Setup and build talk on standard error only, so that standard output is
# the host's alone (scripts/run.sh --json ls | jq ...).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh >&2
scripts/build.sh >&2
exec "${BUILD_DIR:-build}/bin/tarn-host" "$@"
