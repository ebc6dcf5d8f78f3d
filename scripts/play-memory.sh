#!/usr/bin/env bash
# Measures what many plays of one row, typed one after the other into
# "tarn-host --json shell" as a person would, do to the resident size: the
# host's with its embedded cloud, and with --cloud-process the host's and
# the simulated cloud's, each in a process of its own. The warm-up plays
# fill what is kept by design (caches, the cloud's logs up to their bounds);
# only what the plays after them add is growth.
#
#   scripts/play-memory.sh [--cloud-process] [--warm-up N] [--plays N] [--env NAME=VALUE]... [PATH]
#
# Defaults: 500 warm-up plays, 4500 measured ones, PATH /airable/radios/r1001.
# --env runs the programs with that variable set, e.g. MALLOC_ARENA_MAX=8.
# Uses the programs of an existing build, in build/ or $BUILD_DIR:
#   cmake --build build --target tarn-host tarn_cb_airable airable-cloudsim
# A play of the embedded cloud takes about a quarter of a second, since the
# host waits until the cloud has heard its events: the defaults take some
# twenty minutes.
set -euo pipefail
cd "$(dirname "$0")/.."
bin=${BUILD_DIR:-build}/bin

usage() {
  sed -n 's/^#   scripts/scripts/p' "$0" >&2
  exit 2
}

warmUp=500
plays=4500
path=/airable/radios/r1001
separate=false
environment=()
while [ $# -gt 0 ]; do
  case $1 in
    --cloud-process) separate=true ;;
    --warm-up) warmUp=${2:?}; shift ;;
    --plays) plays=${2:?}; shift ;;
    --env) environment+=("${2:?}"); shift ;;
    -h|--help) usage ;;
    -*) usage ;;
    *) path=$1 ;;
  esac
  shift
done
for program in tarn-host airable-cloudsim; do
  if [ ! -x "$bin/$program" ]; then
    echo "play-memory: no $bin/$program; build it first (BUILD_DIR names another build)" >&2
    exit 1
  fi
done

# Resident size in KiB, as the kernel counts it.
rss() { awk '/^VmRSS:/ { print $2 }' "/proc/$1/status"; }
megabytes() { awk -v kib="$1" 'BEGIN { printf "%.1f MB", kib / 1024 }'; }
growth() { awk -v kib="$1" 'BEGIN { printf "%+.2f MB", kib / 1024 }'; }

cloudPid=
hostPid=
cleanUp() {
  if [ -n "$hostPid" ]; then kill "$hostPid" 2>/dev/null || true; fi
  if [ -n "$cloudPid" ]; then kill "$cloudPid" 2>/dev/null || true; fi
}
trap cleanUp EXIT

hostOptions=()
if $separate; then
  cloudOut=$(mktemp)
  env "${environment[@]}" "$bin/airable-cloudsim" --port 0 >"$cloudOut" 2>/dev/null &
  cloudPid=$!
  for _ in $(seq 100); do
    grep -q '^Simulated cloud at' "$cloudOut" && break
    sleep 0.1
  done
  address=$(sed -n "s/^Simulated cloud at \([^,]*\), secret '\(.*\)'$/\1 \2/p" "$cloudOut")
  rm -f "$cloudOut"
  if [ -z "$address" ]; then
    echo "play-memory: the simulated cloud did not start" >&2
    exit 1
  fi
  read -r url secret <<<"$address"
  hostOptions=(--cloud "$url" --secret "$secret")
fi

coproc HOST { exec env "${environment[@]}" "$bin/tarn-host" --json "${hostOptions[@]}" shell 2>/dev/null; }
hostPid=$HOST_PID

failures=0
# Plays n times, one play at a time: each prints one line, the play's
# object or its error.
play() {
  local n=$1 line
  for ((i = 0; i < n; i++)); do
    echo "play $path" >&"${HOST[1]}"
    if ! read -r line <&"${HOST[0]}"; then
      echo "play-memory: tarn-host ended" >&2
      exit 1
    fi
    case $line in *'"error"'*) failures=$((failures + 1)) ;; esac
  done
}

start=$SECONDS
play "$warmUp"
hostBefore=$(rss "$hostPid")
cloudBefore=$($separate && rss "$cloudPid" || echo 0)
play "$plays"
hostAfter=$(rss "$hostPid")
cloudAfter=$($separate && rss "$cloudPid" || echo 0)

where=$($separate && echo "the simulated cloud in its own process" || echo "the embedded cloud")
echo "$plays plays of $path after $warmUp warm-up plays, with $where, in $((SECONDS - start)) s${environment:+ (${environment[*]})}"
echo "tarn-host: $(megabytes "$hostBefore") -> $(megabytes "$hostAfter"), $(growth $((hostAfter - hostBefore)))"
if $separate; then
  echo "airable-cloudsim: $(megabytes "$cloudBefore") -> $(megabytes "$cloudAfter"), $(growth $((cloudAfter - cloudBefore)))"
fi
if [ "$failures" -gt 0 ]; then
  echo "play-memory: $failures plays failed" >&2
  exit 1
fi
