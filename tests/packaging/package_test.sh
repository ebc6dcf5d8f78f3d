#!/usr/bin/env bash
# Unpacks the Debian packages into a scratch root, as dpkg would install them
# but without root, and uses them from there as their users do: tarn-host
# lists the root against its simulated cloud, the simulated cloud knows its
# catalogue, a module project builds against the platform with CMake and
# with pkg-config, and the completion script completes.
#
#   tests/packaging/package_test.sh [DIR]   # DIR holds the .deb files;
#                                           # without it scripts/package.sh makes them
#   tests/packaging/package_test.sh --arch arm64|armhf [DIR]
#
# With an architecture, the packages are a device's: they unpack in their
# places, and the packaged tarn-host lists the root against the packaged
# simulated cloud, both under qemu-user.
set -uo pipefail
cd "$(dirname "$0")/../.." || exit 1
here=$PWD/tests/packaging

device=""
if [ "${1:-}" = "--arch" ]; then
  device=${2:-}
  case "$device" in
    arm64) arch=aarch64-linux-gnu emulator=(qemu-aarch64 -L /) ;;
    armhf) arch=arm-linux-gnueabihf emulator=(qemu-arm -L /) ;;
    *) echo "usage: tests/packaging/package_test.sh --arch arm64|armhf [DIR]" >&2; exit 2 ;;
  esac
  shift 2
fi

if [ ! -f /usr/share/bash-completion/bash_completion ]; then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  echo "Installing: bash-completion"
  $sudo apt-get update -qq || echo "apt-get update failed for some indexes; installing from the others" >&2
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq bash-completion >/dev/null || exit 1
fi

debs=${1:-}
if [ -z "$debs" ]; then
  if [ -n "$device" ]; then
    scripts/package.sh "$device" >&2 || exit 1
    debs=${BUILD_DIR:-build-deb-$device}/packages
  else
    scripts/package.sh >&2 || exit 1
    debs=${BUILD_DIR:-build-deb}/packages
  fi
fi
debs=$(cd "$debs" && pwd)

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
root=$scratch/root
[ -n "$device" ] || arch=$(gcc -print-multiarch)
libdir=$root/usr/lib/$arch

passed=0
failed=0
# check NAME COMMAND...: runs one check, its output kept for the failure.
check() {
  local name=$1
  shift
  local out
  if out=$("$@" 2>&1); then
    passed=$((passed + 1))
    echo "ok    $name"
  else
    failed=$((failed + 1))
    echo "FAIL  $name"
    printf '%s\n' "$out" | sed 's/^/      /'
  fi
}

# The installed tool serves the explorer's page from its own resources.
serves_its_page() {
  local out="$scratch/serve.out" pid port page=""
  env -u LD_LIBRARY_PATH "$root/usr/bin/tarn-host" serve --port 0 >"$out" 2>&1 &
  pid=$!
  for _ in $(seq 100); do
    grep -q "^serving" "$out" && break
    sleep 0.1
  done
  port=$(sed -n 's|^serving http://127.0.0.1:\([0-9]*\)/.*|\1|p' "$out")
  if [ -n "$port" ]; then
    exec 3<>"/dev/tcp/127.0.0.1/$port"
    printf 'GET / HTTP/1.0\r\nHost: 127.0.0.1:%s\r\n\r\n' "$port" >&3
    page=$(cat <&3)
    exec 3<&-
  fi
  kill "$pid"
  wait "$pid" 2>/dev/null || true
  grep -q "tarn-host explorer" <<<"$page" || { cat "$out"; return 1; }
}

# has TEXT COMMAND...: the command succeeds and prints TEXT.
has() {
  local text=$1
  shift
  local out
  out=$("$@" 2>&1) || { printf '%s\n' "$out"; return 1; }
  grep -qF -- "$text" <<<"$out" || { printf 'no "%s" in:\n%s\n' "$text" "$out"; return 1; }
}

deb() { ls "$debs"/"$1"_*_"${device:-$(dpkg --print-architecture)}".deb; }

depends_on() {
  local package=$1
  shift
  local depends
  depends=$(dpkg-deb -f "$(deb "$package")" Depends) || return 1
  for needed in "$@"; do
    grep -qE "(^|, )$needed" <<<"$depends" || { echo "$package does not depend on $needed: $depends"; return 1; }
  done
}

unpack() {
  mkdir -p "$root"
  for package in tarn-host tarn-cb-airable airable-cloudsim; do
    dpkg -x "$(deb "$package")" "$root" || return 1
  done
}

# Each file in its place under /usr, as the GNU install directories say.
layout() {
  local missing=0
  for file in "$libdir/tarn/modules/libtarn_cb_airable.so" "$libdir/tarn/modules/translations/tarn_cb_airable_de.qm" \
    "$libdir/libtarn_api.so" "$libdir/libtarn_api_play.so" \
    "$libdir/libtarn_http_client.so" "$libdir/libtarn_host.so" "$root/usr/bin/tarn-host" \
    "$root/usr/bin/airable-cloudsim" "$root/usr/include/tarn/cmworker.h" "$root/usr/include/tarn/httpclient.h" \
    "$root/usr/include/tarn/playlogicbase.h" "$root/usr/include/tarn/tarnvalue.h" \
    "$libdir/cmake/TarnPlatform/TarnPlatformConfig.cmake" "$libdir/pkgconfig/tarn-platform.pc" \
    "$root/usr/share/bash-completion/completions/tarn-host"; do
    [ -e "$file" ] || { echo "missing ${file#"$root"}"; missing=1; }
  done
  return $missing
}

# The programs take the unpacked libraries, not copies found elsewhere.
resolves_in_root() {
  local out
  out=$(env -u LD_LIBRARY_PATH ldd "$1") || return 1
  grep libtarn_ <<<"$out" | grep -v "=> $root/" && { echo "$out"; return 1; }
  return 0
}

example_with_cmake() {
  local build=$scratch/example-cmake
  cmake -S "$here/example_module" -B "$build" -DCMAKE_PREFIX_PATH="$root/usr" >/dev/null &&
    cmake --build "$build" -j"$(nproc)" &&
    has "Example example:" "$build/load_module" "$build/libtarn_cb_example.so"
}

pkg() { PKG_CONFIG_PATH=$libdir/pkgconfig pkg-config "$@"; }

example_with_pkg_config() {
  local flags build=$scratch/example-pc
  flags=$(pkg --cflags --libs tarn-platform) || return 1
  grep -qF -- "-ltarn_api" <<<"$flags" || { echo "$flags"; return 1; }
  mkdir -p "$build"
  # shellcheck disable=SC2086 # the flags are words
  c++ -std=c++17 -fPIC -shared -o "$build/libtarn_cb_example.so" "$here/example_module/examplemodule.cpp" $flags &&
    has "Example example:" "$scratch/example-cmake/load_module" "$build/libtarn_cb_example.so"
}

same_dir() { [ "$(cd "$1" && pwd -P)" = "$(cd "$2" && pwd -P)" ] || { echo "$1 is not $2"; return 1; }; }

# complete WORDS... EXPECTED: what the completion offers for the last word.
completes() {
  local expected=${*: -1}
  local line=("${@:1:$#-1}")
  local out
  out=$(bash -c '
    source /usr/share/bash-completion/bash_completion
    source "$1"
    shift
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    COMP_LINE="$*"
    COMP_POINT=${#COMP_LINE}
    _tarn_host tarn-host "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD-1]}"
    printf "%s\n" "${COMPREPLY[@]}" | sort | tr "\n" " "
  ' _ "$root/usr/share/bash-completion/completions/tarn-host" "${line[@]}")
  [ "${out% }" = "$expected" ] || { printf 'completing "%s": got "%s", expected "%s"\n' "${line[*]}" "${out% }" "$expected"; return 1; }
}

# The device's programs from the scratch root, under the emulator: the
# packaged cloud on a free port, and tarn-host against it.
lists_against_packaged_cloud() {
  local out="$scratch/cloud.out" pid url secret listing
  env -u LD_LIBRARY_PATH "${emulator[@]}" "$root/usr/bin/airable-cloudsim" --port 0 >"$out" 2>&1 &
  pid=$!
  for _ in $(seq 600); do
    grep -q "^Simulated cloud at" "$out" && break
    sleep 0.1
  done
  url=$(sed -n "s|^Simulated cloud at \([^,]*\), secret '\(.*\)'|\1|p" "$out")
  secret=$(sed -n "s|^Simulated cloud at \([^,]*\), secret '\(.*\)'|\2|p" "$out")
  listing=$(env -u LD_LIBRARY_PATH "${emulator[@]}" "$root/usr/bin/tarn-host" --cloud "$url" --secret "$secret" ls 2>&1)
  kill "$pid"
  wait "$pid" 2>/dev/null || true
  grep -q "Radios" <<<"$listing" || { cat "$out"; printf '%s\n' "$listing"; return 1; }
}

if [ -n "$device" ]; then
  check "$device packages with their run-time dependencies" \
    depends_on tarn-host libqt5core5a libqt5network5 liblog4cplus libreadline8
  check "packages unpack" unpack
  check "files in their places" layout
  check "$device tarn-host lists the root against the packaged simulated cloud" lists_against_packaged_cloud
  echo "packaging ($device): $passed passed, $failed failed"
  [ "$failed" -eq 0 ]
  exit
fi

check "three packages with their run-time dependencies" \
  depends_on tarn-host libqt5core5a libqt5network5 liblog4cplus libreadline8
check "module needs the platform's package" depends_on tarn-cb-airable tarn-host libqt5core5a
check "simulated cloud's dependencies" depends_on airable-cloudsim libqt5core5a libcpp-httplib
check "packages unpack" unpack
check "files in their places" layout
check "tarn-host finds its libraries in the scratch root" resolves_in_root "$root/usr/bin/tarn-host"
check "tarn-host lists the root against the simulated cloud" \
  has "Radios" env -u LD_LIBRARY_PATH "$root/usr/bin/tarn-host" ls
check "tarn-host serve serves the explorer's page" serves_its_page
check "airable-cloudsim knows its built-in catalogue" \
  has "/airable/radios" env -u LD_LIBRARY_PATH "$root/usr/bin/airable-cloudsim" --routes
check "a module builds with find_package(TarnPlatform) and its worker comes up" example_with_cmake
check "the installed module loads on the installed platform" \
  has "Airable airable:" "$scratch/example-cmake/load_module" "$libdir/tarn/modules/libtarn_cb_airable.so"
check "a module builds with pkg-config's flags" example_with_pkg_config
check "pkg-config names the module directory" \
  same_dir "$(pkg --variable=moduledir tarn-platform)" "$libdir/tarn/modules"
check "completion: commands" completes tarn-host "" "get help ls menu oauth play serve set shell watch"
check "completion: a command's options and the tool's" completes tarn-host ls --r "--reset-required --roles"
check "completion: after the tool's options" completes tarn-host --cloud http://x --secret s w "watch"
check "completion: log levels" completes tarn-host --log-level "" "debug error info trace warn"
check "completion: help's command" completes tarn-host help pl "play"
check "completion: a value given with =" completes tarn-host --log-level=w "warn"

echo "packaging: $passed passed, $failed failed"
[ "$failed" -eq 0 ]
