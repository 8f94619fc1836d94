#!/usr/bin/env bash
# run_xml.sh [repetitions] [build dir]: the CIM-XML reader against expat, in one run.
# 1. xml_bench, its repetitions interleaved (default 7): median throughput of the tokenizer,
#    of the whole load into a container (also with the heap trimmed between loads), of expat
#    and of libxml2's SAX parser, per generated document (1, 20, 90 MB and the schema-like one
#    of 1,400 classes), with the ratios to expat (time ratios: above 1 is slower than expat).
#    Rates are per CPU second, which is steadier than wall time on a shared machine.
# 2. Peak resident memory loading the 90 MB document from a file in a fresh process, and
#    what stays resident once the container is destroyed and the heap trimmed.
# 3. The load in a fresh process: `zelcollect show` of the 90 MB document, timed as a whole
#    (CPU seconds, median of the repetitions), beside the loop's time for the same document.
set -euo pipefail
cd "$(dirname "$0")/.."
reps=${1:-7}
build=${2:-build}
cmake --build "$build" --target xml_bench cimxml_generate cimxml_load_rss zelcollect >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$build/bench/xml_bench" --benchmark_repetitions="$reps" --benchmark_enable_random_interleaving=true \
  --benchmark_report_aggregates_only=true \
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
print(f"medians of {sys.argv[2]} interleaved repetitions, MB/s (CPU time); time ratio = expat's rate / the rate")
print(f"{'document':>8} " + " ".join(f"{p.replace('ContainerLoad', 'Load'):>12}" for p in parsers)
      + f" {'TXml/expat':>11} {'load/expat':>11} {'trimmed/expat':>14} {'libxml2/expat':>14}")
for size in sorted({s for _, s in median}):
    rate = {p: median.get((p, size), float("nan")) for p in parsers}
    label = "schema" if size == 0 else f"{size}MB"
    print(f"{label:>8} " + " ".join(f"{rate[p]:>12.1f}" for p in parsers)
          + f" {rate['Expat'] / rate['TXmlParser']:>11.2f} {rate['Expat'] / rate['ContainerLoad']:>11.2f}"
          + f" {rate['Expat'] / rate['ContainerLoadTrimmed']:>14.2f}"
          + f" {rate['Expat'] / rate['LibXml2Sax']:>14.2f}")
loop = json.load(open(sys.argv[1]))
for run in loop["benchmarks"]:
    if run.get("aggregate_name") == "median" and run["run_name"] == "BM_ContainerLoadTrimmed/90":
        print(f"loop: the 90MB load with the heap trimmed takes {run['cpu_time']:.0f} ms CPU")
PY
"$build/bench/cimxml_generate" $((90 << 20)) "$dir/doc.xml"
echo "memory, 90MB document loaded in a fresh process:"
"$build/bench/cimxml_load_rss" "$dir/doc.xml"
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
for ((i = 0; i < reps; ++i)); do
  /usr/bin/time -f "%U %S %e" -o "$dir/time" "$build/apps/zelcollect/zelcollect" show "$dir/doc.xml" >/dev/null
  awk '{ printf "%.0f %.0f\n", ($1 + $2) * 1000, $3 * 1000 }' "$dir/time" >> "$dir/show.txt"
done
echo "fresh process: zelcollect show of the 90MB document, median of $reps:" \
     "$(awk '{ print $1 }' "$dir/show.txt" | median) ms CPU, $(awk '{ print $2 }' "$dir/show.txt" | median) ms wall"
