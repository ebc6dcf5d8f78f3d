#!/usr/bin/env bash
# Installs what a cross build for arm64 or armhf needs on Debian 12, if it is
# missing: the cross compiler, qemu-user, and the architecture's libraries
# beside the native ones (multiarch).
set -euo pipefail

arch=${1:-}
case "$arch" in
  arm64) triplet=aarch64-linux-gnu ;;
  armhf) triplet=arm-linux-gnueabihf ;;
  *) echo "usage: scripts/setup-cross.sh arm64|armhf" >&2; exit 2 ;;
esac
native=$(dpkg --print-architecture)

packages=("g++-$triplet" qemu-user)
for p in qtbase5-dev liblog4cplus-dev libcpp-httplib-dev libreadline-dev libgtest-dev libssl-dev; do
  packages+=("$p:$arch")
done

installed() {
  dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q "install ok installed"
}
missing=()
for p in "${packages[@]}"; do
  installed "$p" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
echo "Installing: ${missing[*]}"
dpkg --print-foreign-architectures | grep -qx "$arch" || $sudo dpkg --add-architecture "$arch"
# A mirror can be mid-sync for one architecture: its index then fails to
# download while the others are fine, and what was fetched still serves.
$sudo apt-get update -qq || echo "apt-get update: some indexes failed; going on with the others" >&2

# A Multi-Arch: same library must have one version on both architectures.
# When the two architectures' indexes differ (one has a security update the
# other has not yet, or the native package came from a newer snapshot), pin
# each such library in the dependency closure to the native version, or if
# the architecture lacks it, to the newest version both have. --no-remove keeps apt from solving it by removing
# native packages.
# The architecture's packages that apt would have to install: a walk down
# their dependencies that stops at what a native package already provides
# across architectures (Multi-Arch: foreign or allowed, such as the native
# moc or perl).
declare -A have same across
while read -r name multiarch version; do
  have[$name]=$version
  case $multiarch in
    same) same[$name]=1 ;;
    foreign | allowed) across[$name]=1 ;;
  esac
done < <(dpkg-query -W -f='${Package} ${Architecture} ${Multi-Arch} ${Version} ${db:Status-Abbrev}\n' |
           awk -v a="$native" '$2 == a && $5 ~ /^ii/ { print $1, ($3 == "" ? "no" : $3), $4 }')
declare -A seen
frontier=("${missing[@]}")
closure=()
while [ ${#frontier[@]} -gt 0 ]; do
  next=()
  for dep in $(apt-cache depends --no-recommends --no-suggests --no-conflicts --no-breaks --no-replaces \
                 --no-enhances "${frontier[@]}" 2>/dev/null | grep -o "[^ <>|]*:$arch" | sort -u); do
    name=${dep%:"$arch"}
    [ -n "${seen[$name]:-}" ] && continue
    seen[$name]=1
    [ -n "${across[$name]:-}" ] && continue
    closure+=("$name")
    next+=("$dep")
  done
  frontier=("${next[@]}")
done
shared=()
for name in "${closure[@]}"; do
  [ -n "${same[$name]:-}" ] && shared+=("$name")
done
declare -A offered
if [ ${#shared[@]} -gt 0 ]; then
  # One line per package, architecture and version: "name[:arch] | version | source".
  while IFS='|' read -r pkg version _; do
    pkg=${pkg// /}; version=${version// /}
    offered[$pkg]+=" $version"
  done < <(apt-cache madison "${shared[@]}" "${shared[@]/%/:$arch}")
fi
pins=()
for name in "${shared[@]}"; do
  common=""
  [[ " ${offered[$name:$arch]:-} " == *" ${have[$name]} "* ]] && common=${have[$name]}
  for v in ${offered[$name:$arch]:-}; do
    [ "$common" = "${have[$name]}" ] && break
    [[ " ${offered[$name]:-} " == *" $v "* ]] || continue
    if [ -z "$common" ] || dpkg --compare-versions "$v" gt "$common"; then common=$v; fi
  done
  if [ -z "$common" ]; then
    echo "No version of $name is available for both $native and $arch" >&2
    exit 1
  fi
  [ "$common" = "${have[$name]}" ] || pins+=("$name:$native=$common")
  pins+=("$name:$arch=$common")
done
# A native library moved to another version takes the native packages built
# with it along (its -dev package depends on its exact version).
if printf '%s\n' "${pins[@]}" | grep -q ":$native="; then
  declare -A moved
  for pin in "${pins[@]}"; do
    [[ $pin == *":$native="* ]] || continue
    name=${pin%%:*}
    moved[$(dpkg-query -W -f='${source:Package} ${Version}' "$name:$native")]=${pin#*=}
  done
  while read -r name source version; do
    to=${moved["$source $version"]:-}
    [ -n "$to" ] || continue
    [[ " ${pins[*]} " == *" $name:$native="* ]] && continue
    pins+=("$name:$native=$to")
  done < <(dpkg-query -W -f='${Package} ${Architecture} ${source:Package} ${Version} ${db:Status-Abbrev}\n' |
             awk -v a="$native" '($2 == a || $2 == "all") && $5 ~ /^ii/ { print $1, $3, $4 }')
fi
changed=$(printf '%s\n' "${pins[@]}" | grep ":$native=" || true)
[ -z "$changed" ] || echo "Native libraries moved to the version $arch has too:" $changed

DEBIAN_FRONTEND=noninteractive ${TARN_APT_SIMULATE:+echo} $sudo apt-get install -y -q --no-install-recommends --no-remove --allow-downgrades \
  "${missing[@]}" "${pins[@]}" | grep -v "^\(Get\|Selecting\|Preparing\|Unpacking\|Setting up\|Processing\)"
