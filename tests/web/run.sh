#!/usr/bin/env bash
# Runs the browser tests of tarn-host serve in the build directory:
# playwright-core as the lock file pins it, then node's test runner.
# Usage: run.sh TARN_HOST WORK_DIR
set -euo pipefail
host=$1
work=$2
here=$(cd "$(dirname "$0")" && pwd)
chromium=${CHROMIUM:-/usr/bin/chromium}
if ! command -v node >/dev/null 2>&1 || [ ! -x "$chromium" ]; then
  echo "skipped: the browser tests need node and $chromium (scripts/setup.sh installs them)"
  exit 77
fi
# The pinned driver wants Node.js 20 or later; Debian 12's own is 18.
node_major=$(node -p 'process.versions.node.split(".")[0]')
if [ "$node_major" -lt 20 ]; then
  echo "skipped: the browser tests need Node.js 20 or later, this machine has $(node --version)"
  exit 77
fi
mkdir -p "$work"
cp "$here"/package.json "$here"/package-lock.json "$here"/*.mjs "$work"/
cd "$work"
# The browser is Debian's: npm brings the driver only, and only when the
# lock file changed.
if ! cmp -s package-lock.json node_modules/.installed-lock; then
  npm ci --no-audit --no-fund --loglevel=error
  cp package-lock.json node_modules/.installed-lock
fi
TARN_HOST=$host SCREENSHOTS=$work/screenshots CHROMIUM=$chromium exec node --test --test-concurrency=1 ./*.test.mjs
