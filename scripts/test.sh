#!/usr/bin/env bash
# Installs what is missing (Debian 12, as root), builds, and runs every test twice: a normal
# build and an AddressSanitizer + UndefinedBehaviorSanitizer build.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/lib.sh

zel_install_deps "$ZEL_PACKAGES $ZEL_TEST_PACKAGES"
zel_build build -DZEL_SANITIZE=OFF
zel_build build-asan -DZEL_SANITIZE=ON -DZEL_BUILD_BENCH=OFF

jobs=$(nproc)
echo "== tests (normal build)"
ctest --test-dir build --output-on-failure -j "$jobs"
echo "== tests (ASan + UBSan build)"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1 \
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
LSAN_OPTIONS=suppressions=$PWD/scripts/lsan.supp \
  ctest --test-dir build-asan --output-on-failure -j "$jobs"
