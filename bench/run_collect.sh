#!/usr/bin/env bash
# Wall time of a whole zelcollect run on this machine, a previous binary against a new one:
# the median of 7 runs each, alternating, result file and output included.
#   bench/run_collect.sh OLD NEW [zelcollect options...]
set -euo pipefail
if [ $# -lt 2 ]; then
  echo "usage: $0 OLD-ZELCOLLECT NEW-ZELCOLLECT [options...]" >&2
  exit 2
fi
old=$1 new=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
run() { # binary -> milliseconds
  local start end
  start=$(date +%s%N)
  "$1" -o "$work/inventory.xml.gz" "${@:2}" >/dev/null 2>&1 || true
  end=$(date +%s%N)
  echo $(((end - start) / 1000))
}
median() { sort -n | sed -n 4p; }
: >"$work/old" && : >"$work/new"
"$old" -n "$@" >/dev/null 2>&1 || true # warm the page cache
for _ in 1 2 3 4 5 6 7; do
  run "$old" "$@" >>"$work/old"
  run "$new" "$@" >>"$work/new"
done
o=$(median <"$work/old") n=$(median <"$work/new")
printf 'old %d.%03d ms  new %d.%03d ms  ratio %s (median of 7)\n' $((o / 1000)) $((o % 1000)) \
  $((n / 1000)) $((n % 1000)) "$(awk -v o="$o" -v n="$n" 'BEGIN { printf "%.2f", n / o }')"
