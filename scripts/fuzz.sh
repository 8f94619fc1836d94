#!/usr/bin/env bash
# fuzz.sh [seconds]: builds the libFuzzer targets with clang, AddressSanitizer and UBSan in
# build-fuzz, then runs each for the given seconds (default 60) over its corpus. New inputs
# go to build-fuzz/corpora/<target>/ (copy the useful ones to fuzz/corpora/<target>/);
# crashing inputs to build-fuzz/artifacts/.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

seconds=${1:-60}
zel_install_deps
if [ ! -f build-fuzz/build.ninja ]; then
  CC=clang CXX=clang++ cmake -S . -B build-fuzz -G Ninja -DZEL_FUZZ=ON -DZEL_SANITIZE=ON \
    -DZEL_BUILD_TESTS=OFF -DZEL_BUILD_BENCH=OFF >/dev/null
fi
cmake --build build-fuzz -j "$(nproc)" --target fuzzers

mkdir -p build-fuzz/artifacts
export LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp  # the root class outlives its container
for fuzzer in build-fuzz/fuzz/*_fuzzer; do
  name=$(basename "$fuzzer" _fuzzer)
  mkdir -p "build-fuzz/corpora/$name"
  dict=()
  [ -f "fuzz/$name.dict" ] && dict=(-dict="fuzz/$name.dict")
  echo "== fuzzing $name for ${seconds}s"
  "$fuzzer" -max_total_time="$seconds" -print_final_stats=1 "${dict[@]}" \
    -artifact_prefix="build-fuzz/artifacts/$name-" "build-fuzz/corpora/$name" "fuzz/corpora/$name"
done
