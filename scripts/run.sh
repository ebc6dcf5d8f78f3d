#!/usr/bin/env bash
# Sets up, builds, and runs the host against the embedded simulated cloud.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh
scripts/build.sh
exec build/bin/tarn-host "$@"
