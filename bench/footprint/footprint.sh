#!/usr/bin/env bash
# The module's footprint on the device: stripped sizes of the module and of
# the platform's libraries, and the resident memory the module adds to a host.
#
#   bench/footprint/footprint.sh BUILD_DIR [EMULATOR...]
#   bench/footprint/footprint.sh build-release
#   bench/footprint/footprint.sh build-armhf qemu-arm -L /
#
# BUILD_DIR is a build with -DTARN_BENCH=ON (Release for the figures). The
# emulator, when given, runs every program of the build. Under qemu-user
# /proc/self/status describes the emulator's process: its resident size holds
# the guest's memory and the code qemu translated, so the module's share then
# includes the translation of the module's code and of the libraries it pulls
# in. The cloud runs under the emulator too, unless CLOUDSIM names a native
# airable-cloudsim; it is only a peer on loopback, so its speed changes the
# run's time, not the figures. STRIP overrides the strip program chosen from
# the module's architecture, REQUESTS the number of browse requests (10000),
# BLOCK_CACHE_SIZE the platform value settings:airable/blockCacheSize.
#
# Prints one markdown table on standard output, the runs' raw figures on
# standard error.
set -euo pipefail

if [[ $# -lt 1 ]]; then
    echo "usage: $0 BUILD_DIR [EMULATOR...]" >&2
    exit 2
fi
build=$(cd "$1" && pwd)
shift
emulator=("$@")
requests=${REQUESTS:-10000}

module=$build/lib/libtarn_cb_airable.so
example=$build/lib/libtarn_cb_example.so
program=$build/bin/airable-footprint
for f in "$module" "$example" "$program" "$build/bin/airable-cloudsim"; do
    [[ -e $f ]] || { echo "$0: $f is missing (build with -DTARN_BENCH=ON)" >&2; exit 1; }
done

machine=$(LC_ALL=C readelf -h "$module" | sed -n 's/^ *Machine: *//p')
case $machine in
    AArch64) arch=arm64; strip_default=aarch64-linux-gnu-strip ;;
    ARM) arch=armhf; strip_default=arm-linux-gnueabihf-strip ;;
    *X86-64*) arch=x86-64; strip_default=strip ;;
    *) echo "$0: unknown architecture '$machine'" >&2; exit 1 ;;
esac
strip=${STRIP:-$strip_default}
command -v "$strip" >/dev/null || { echo "$0: $strip is missing" >&2; exit 1; }

work=$(mktemp -d)
cloud_pid=
cleanup() {
    if [[ -n $cloud_pid ]]; then
        kill "$cloud_pid" 2>/dev/null || true
        wait "$cloud_pid" 2>/dev/null || true
    fi
    rm -rf "$work"
}
trap cleanup EXIT

# Size of a stripped copy, in KiB with one decimal.
stripped_kib() {
    local copy
    copy=$work/stripped-$(basename "$1")
    "$strip" -o "$copy" "$1"
    awk -v b="$(stat -c %s "$copy")" 'BEGIN { printf "%.1f", b / 1024 }'
}

# value KEY LINE: the number behind KEY= in a line of key=value pairs.
value() { sed -n "s/.*\\b$1=\\([-0-9]*\\).*/\\1/p" <<<"$2"; }

sizes=$("${emulator[@]}" "$program" --write-data "$work")
large_bytes=$(value large_listing_bytes "$sizes")

cloud_cmd=("${emulator[@]}" "$build/bin/airable-cloudsim")
[[ -n ${CLOUDSIM:-} ]] && cloud_cmd=("$CLOUDSIM")
"${cloud_cmd[@]}" --port 0 --data "$work" --secret footprint-secret >"$work/cloud.out" 2>"$work/cloud.err" &
cloud_pid=$!
cloud=
for _ in $(seq 600); do
    cloud=$(sed -n "s/^Simulated cloud at \\([^,]*\\),.*/\\1/p" "$work/cloud.out")
    [[ -n $cloud ]] && break
    kill -0 "$cloud_pid" 2>/dev/null || break
    sleep 0.1
done
[[ -n $cloud ]] || { echo "$0: the cloud did not start:" >&2; cat "$work/cloud.err" >&2; exit 1; }

run() {
    "${emulator[@]}" "$program" --module "$1" --cloud "$cloud" --secret footprint-secret --requests "$requests" \
        ${BLOCK_CACHE_SIZE:+--block-cache-size "$BLOCK_CACHE_SIZE"}
}
base=$(run "$example")
echo "example module: $base" >&2
real=$(run "$module")
echo "module: $real" >&2
if [[ $(value failed "$real") != 0 || $(value large_failed "$real") != 0 ]]; then
    echo "$0: requests of the module failed: $real" >&2
    exit 1
fi

# A number with commas between the thousands.
commas() {
    awk -v k="$1" 'BEGIN { n = k < 0 ? -k : k; s = "";
        while (n >= 1000) { s = sprintf(",%03d", n % 1000) s; n = int(n / 1000) }
        print (k < 0 ? "-" : "") n s }'
}
kib() { echo "$(commas "$1") KiB"; }
# share FIELD: the module's run less the baseline's.
share() { echo $(($(value "$1" "$real") - $(value "$1" "$base"))); }
# rise FIELD RUN: FIELD less the resident size before the large request.
rise() { echo $(($(value "$1" "$2") - $(value before_large "$2"))); }
# row TEXT FIELD [GOAL]: both runs and the module's share of FIELD.
row() { echo "| $1 | $(kib "$(value "$2" "$base")") | $(kib "$(value "$2" "$real")") | $(kib "$(share "$2")") | ${3:-} |"; }
verdict() { if (($1 <= $2)); then echo "met"; else echo "**not met**"; fi; }

peak_note=
[[ $(value peak_reset "$real") == 1 ]] || peak_note=" (VmHWM could not be reset: the run's peak)"
peak_share=$(($(rise peak "$real") - $(rise peak "$base")))
peak_goal=$((3 * large_bytes / 1024))
browsed_share=$(share browsed)
large_mib=$(awk -v b="$large_bytes" 'BEGIN { printf "%.1f", b / 1048576 }')

echo "| $arch | example module | module | module's share | goal |"
echo "|---|---|---|---|---|"
echo "| \`libtarn_cb_airable.so\`, stripped | $(stripped_kib "$example") KiB | $(stripped_kib "$module") KiB | | at most 600 KB on armhf |"
for lib in libtarn_api.so libtarn_api_play.so libtarn_http_client.so libtarn_host.so; do
    echo "| \`$lib\`, stripped | | $(stripped_kib "$build/lib/$lib") KiB | | |"
done
row "Resident (VmRSS), idle after start-up" idle
row "of which anonymous (RssAnon)" idle_anon
row "Resident after $(commas "$requests") browse requests" browsed "at most 4 MiB: $(verdict "$browsed_share" 4096)"
row "of which anonymous" browsed_anon
echo "| Peak (VmHWM) of the rows request of a $large_mib MiB listing, over the resident size before it$peak_note" \
    "| $(kib "$(rise peak "$base")") | $(kib "$(rise peak "$real")") | $(kib "$peak_share")" \
    "| at most 3x the listing, $(kib "$peak_goal"): $(verdict "$peak_share" "$peak_goal") |"
row "Resident once the large listing is released" after_large
row "of which anonymous" after_large_anon
