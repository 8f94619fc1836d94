#!/usr/bin/env bash
# run_xml.sh [repetitions] [build dir]: runs the XML benchmark (default 5 repetitions, build/)
# and prints the median throughput of each parser, and of the whole load into a container
# (also with the heap trimmed between loads),
# per document size and its ratio to expat.
# Rates are per CPU second, which is steadier than wall time on a shared machine.
set -euo pipefail
cd "$(dirname "$0")/.."
reps=${1:-5}
build=${2:-build}
cmake --build "$build" --target xml_bench >/dev/null
"$build/bench/xml_bench" --benchmark_repetitions="$reps" --benchmark_report_aggregates_only=true \
  --benchmark_format=json --benchmark_out="$build/bench/xml_bench.json" >/dev/null
python3 - "$build/bench/xml_bench.json" "$reps" <<'PY'
import json, sys
runs = json.load(open(sys.argv[1]))["benchmarks"]
median = {}
for run in runs:
    if run.get("aggregate_name") == "median":
        name, size = run["run_name"].split("/")[:2]
        median[(name[3:], int(size))] = run["bytes_per_second"] / (1 << 20)
parsers = ["TXmlParser", "ContainerLoad", "ContainerLoadTrimmed", "Expat", "LibXml2Sax"]
print(f"medians of {sys.argv[2]} repetitions, MB/s (CPU time); ratio = parser / expat")
print(f"{'size':>6} " + " ".join(f"{p.replace('ContainerLoad', 'Load'):>12}" for p in parsers) + f" {'TXml/expat':>11} {'load/expat':>11} {'trimmed/expat':>14} {'libxml2/expat':>14}")
for size in sorted({s for _, s in median}):
    rate = {p: median.get((p, size), float("nan")) for p in parsers}
    print(f"{size:>4}MB " + " ".join(f"{rate[p]:>12.1f}" for p in parsers)
          + f" {rate['TXmlParser'] / rate['Expat']:>11.2f} {rate['ContainerLoad'] / rate['Expat']:>11.2f}"
          + f" {rate['ContainerLoadTrimmed'] / rate['Expat']:>14.2f}"
          + f" {rate['LibXml2Sax'] / rate['Expat']:>14.2f}")
PY
