#!/usr/bin/env bash
# run_load_rss.sh [build dir]: peak resident memory of loading the generated 1, 20 and 90 MB
# documents from files into a fresh container, one process per size.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build}
cmake --build "$build" --target cimxml_generate cimxml_load_rss >/dev/null
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
for mb in 1 20 90; do
  "$build/bench/cimxml_generate" $((mb << 20)) "$dir/doc.xml"
  "$build/bench/cimxml_load_rss" "$dir/doc.xml"
done
