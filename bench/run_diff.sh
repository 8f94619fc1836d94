#!/usr/bin/env bash
# run_diff.sh [build dir] [bytes] [repetitions]: the comparison of a generated document
# (90 MB by default) with a copy of it with 1% of its properties changed, against the load of
# both; one process per run, medians of the repetitions (7 by default).
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
bytes=${2:-$((90 << 20))}
runs=${3:-7}
cmake --build "$build" --target diff_bench >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
"$build/bench/diff_bench" prepare "$bytes" "$dir/old.xml" "$dir/new.xml"
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }
for ((i = 0; i < runs; ++i)); do
  "$build/bench/diff_bench" run "$dir/old.xml" "$dir/new.xml" >> "$dir/diff.txt"
  "$build/bench/diff_bench" run "$dir/old.xml" "$dir/new.xml" load >> "$dir/load.txt"
done
read -r instances changed < <(tail -1 "$dir/diff.txt" | awk '{ print $6, $7 }')
load=$(awk '{ print $1 }' "$dir/diff.txt" | median)
compare=$(awk '{ print $2 }' "$dir/diff.txt" | median)
ratio=$(awk '{ print $3 }' "$dir/diff.txt" | median)
held=$(awk '{ print $4 }' "$dir/diff.txt" | median)
peak=$(awk '{ print $5 }' "$dir/diff.txt" | median)
loadPeak=$(awk '{ print $5 }' "$dir/load.txt" | median)
echo "differing instances $instances (changed $changed)"
echo "load of both $load ms, comparison $compare ms, ratio $ratio (median of the ratios)"
echo "holding both containers $((held / 1024)) MB; peak during the comparison $((peak / 1024)) MB," \
     "$(awk -v p="$peak" -v h="$held" 'BEGIN { printf "%.3f", p / h }')x"
whole=$((peak > loadPeak ? peak : loadPeak))
echo "whole run's peak: load only $((loadPeak / 1024)) MB, load and comparison $((whole / 1024)) MB," \
     "$(awk -v w="$whole" -v l="$loadPeak" 'BEGIN { printf "%.3f", w / l }')x"
