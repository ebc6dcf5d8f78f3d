#!/usr/bin/env python3
"""Turns a benchmark JSON file into the throughput and ratio tables of
docs/performance.md.

    airable-bench --benchmark_repetitions=7 --benchmark_out=run.json \
                  --benchmark_out_format=json
    bench/ratios.py run.json

The fastest repetition of each benchmark is taken (CPU time), which on a
shared machine is the figure least disturbed by other load.
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


if __name__ == "__main__":
    main(sys.argv[1])
