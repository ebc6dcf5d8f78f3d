#!/usr/bin/env python3
"""Turns benchmark JSON files into the tables of docs/performance.md.

    airable-bench --benchmark_repetitions=7 --benchmark_out=run.json \
                  --benchmark_out_format=json
    airable-bench-browse --benchmark_out=browse.json --benchmark_out_format=json
    bench/ratios.py run.json [browse.json]

For the parsers, the fastest repetition of each benchmark is taken (CPU
time), which on a shared machine is the figure least disturbed by other load.
For the roads a person waits on, each road through the module is set against
the bare calls of the same URLs (a GET and a parse each), by the median and
the 99th percentile of the wall time of their iterations; the module's share
is what the road costs beyond the bare calls.
"""
import json
import sys
from collections import defaultdict

PEERS = ["rapidjsonNormal", "rapidjsonInsitu", "simdjsonDom", "qjsonDocument"]
# Ours that turn bytes into a tree, and so compare with the peers' parses.
OURS = ["jsonParse", "jsonParserParse", "modelWholeRoad"]


def main(path):
    with open(path) as f:
        run = json.load(f)
    best = defaultdict(dict)  # input -> benchmark -> (seconds, bytes)
    for b in run["benchmarks"]:
        if b.get("run_type") != "iteration" or "error_occurred" in b:
            continue
        function, _, doc = b["run_name"].partition("/")
        seconds = b["cpu_time"] * {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1.0}[b["time_unit"]]
        rate = b.get("bytes_per_second", 0.0)
        if function not in best[doc] or seconds < best[doc][function][0]:
            best[doc][function] = (seconds, rate)

    functions = [f for f in OURS + PEERS if any(f in d for d in best.values())]
    print("MB/s (fastest repetition, CPU time):\n")
    print("| input | " + " | ".join(functions) + " |")
    print("|---" * (len(functions) + 1) + "|")
    for doc, row in best.items():
        cells = ["%.0f" % (row[f][1] / 1e6) if f in row else "-" for f in functions]
        print("| %s | %s |" % (doc, " | ".join(cells)))

    print("\nSpeed of each of ours relative to each peer (>1: ours is faster):\n")
    ours = [f for f in OURS if f in functions]
    print("| input | ours | " + " | ".join(PEERS) + " |")
    print("|---" * (len(PEERS) + 2) + "|")
    for doc, row in best.items():
        for f in ours:
            if f not in row:
                continue
            cells = ["%.2f" % (row[p][0] / row[f][0]) if p in row else "-" for p in PEERS]
            print("| %s | %s | %s |" % (doc, f, " | ".join(cells)))


# Each road through the module and the bare calls it is set against.
ROADS = [
    ("rows 0-99 of a listing of 100 radios", "WorkerRowsRoad", "BareGetAndParse"),
    ("prePlay of a radio", "RadioPrePlayRoad", "RadioPrePlayBare"),
    ("prePlay of a track known by its id", "TrackPrePlayRoad", "TrackPrePlayBare"),
    ("a login form opened", "LoginFormRoad", "LoginFormBare"),
    ("a login form filled in and submitted", "LoginSubmitRoad", "LoginSubmitBare"),
    ("a program's next track", "ProgramNextRoad", "ProgramNextBare"),
]


def roads(path):
    with open(path) as f:
        run = json.load(f)
    counters = {}
    for b in run["benchmarks"]:
        if b.get("run_type") != "iteration" or "error_occurred" in b:
            continue
        counters[b["run_name"].split("/")[0]] = b
    print("\nRoads a person waits on (wall time of each iteration, µs):\n")
    print("| road | module p50 | bare p50 | ratio p50 | module p99 | bare p99 | ratio p99 | module's share at p50 |")
    print("|---|---|---|---|---|---|---|---|")
    for title, road, bare in ROADS:
        if road not in counters or bare not in counters:
            print("| %s | - | - | - | - | - | - | - |" % title)
            continue
        r, b = counters[road], counters[bare]
        print("| %s | %.0f | %.0f | %.2f | %.0f | %.0f | %.2f | %.0f%% |" % (
            title, r["p50_us"], b["p50_us"], r["p50_us"] / b["p50_us"], r["p99_us"], b["p99_us"],
            r["p99_us"] / b["p99_us"], 100.0 * (1.0 - b["p50_us"] / r["p50_us"])))
    for name in ("ManyBrowseRequests", "ManyRadioPlays"):
        if name in counters:
            c = counters[name]
            print("\n%s: resident %d KiB before, %d KiB after, growth %+d KiB" % (
                name, c["rss_before_KiB"], c["rss_after_KiB"], c["growth_KiB"]))


if __name__ == "__main__":
    main(sys.argv[1])
    if len(sys.argv) > 2:
        roads(sys.argv[2])
