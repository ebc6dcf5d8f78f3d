#!/usr/bin/env bash
# Installs what is missing on Debian 12 for one job:
#   scripts/setup.sh          building and running the host, the module and
#                             the simulated cloud
#   scripts/setup.sh tests    that, and what the tests and benchmarks use,
#                             the browser tests' Chromium and Node.js among them,
#                             and Qt's lrelease for the module's translations
#   scripts/setup.sh fuzz     that, and clang for the fuzz targets
set -euo pipefail

job=${1:-run}
packages=(
  build-essential cmake pkg-config
  qtbase5-dev liblog4cplus-dev
  libcpp-httplib-dev libssl-dev libreadline-dev
  rapidjson-dev
)
case "$job" in
  run) ;;
  tests | fuzz)
    packages+=(
      libgtest-dev libbenchmark-dev
      libsimdjson-dev
      file bash-completion
      chromium
      qttools5-dev-tools
    )
    # The browser tests of tarn-host serve drive Chromium from Node.js; a
    # machine that has its own Node.js keeps it.
    command -v node >/dev/null 2>&1 || packages+=(nodejs npm)
    [ "$job" = tests ] || packages+=(clang libclang-rt-14-dev)
    ;;
  *) echo "usage: scripts/setup.sh [run|tests|fuzz]" >&2; exit 2 ;;
esac

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
# An index that fails (a mirror mid-sync for one architecture) leaves the
# others usable; the install says whether what is needed was found.
$sudo apt-get update -qq || echo "apt-get update failed for some indexes; installing from the others" >&2
# The host's job takes no recommended extras: it is the first thing a new
# user waits for.
recommends=()
[ "$job" != run ] || recommends=(--no-install-recommends)
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${recommends[@]}" "${missing[@]}" >/dev/null
