#!/usr/bin/env bash
# Installs what the build needs on Debian 12, if it is missing.
set -euo pipefail

packages=(
  build-essential cmake pkg-config binutils
  qtbase5-dev liblog4cplus-dev
  libgtest-dev libbenchmark-dev
  libcpp-httplib-dev libssl-dev libreadline-dev
  rapidjson-dev libsimdjson-dev
  clang libclang-rt-14-dev
  file bash-completion
  chromium
)
# The browser tests of tarn-host serve drive Chromium from Node.js; a
# machine that has its own Node.js keeps it.
command -v node >/dev/null 2>&1 || packages+=(nodejs npm)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
