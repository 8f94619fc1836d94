#!/usr/bin/env bash
# install_test.sh BUILD: installs the build into a fresh prefix under a restrictive umask,
# checks the installed tree's modes, then builds a small C and C++ consumer against the
# installed tree, once through find_package(zelcore CONFIG) and once through pkg-config, and
# runs them.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "$1" && pwd)
. "$here/check_tree.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix
(umask 077 && cmake --install "$build" --prefix "$prefix") > "$work/install.log" ||
  { cat "$work/install.log"; exit 1; }

# Directories the installation made are 0755 as well, the prefix itself included.
bad=$(cd "$prefix" && stat -c '%a %n' . bin lib* lib*/pkgconfig lib*/cmake include share | grep -v '^755 ' || true)
[ -z "$bad" ] || { echo "installed directories: $bad"; exit 1; }
zel_check_tree "$prefix" "$(id -un):$(id -gn)"

expect_output() {  # expect_output NAME COMMAND...: runs a consumer, compares its output
  local name=$1 expected
  shift
  case $name in
    *_c) expected=$'new date-time: zelStatusOK\nnot a date-time: zelStatusInvalidDateTime' ;;
    *) expected="class: KAPLA_ManagedElement" ;;
  esac
  local output
  output=$("$@") || { echo "$name failed: $output"; exit 1; }
  [ "$output" = "$expected" ] || { printf '%s printed:\n%s\nexpected:\n%s\n' "$name" "$output" "$expected"; exit 1; }
}
schema=("$prefix"/share/zelcore/schema/*.xml)

# find_package: the imported target brings the include directory and the library.
cmake -S "$here/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
  > "$work/cmake.log" 2>&1 || { cat "$work/cmake.log"; exit 1; }
found=$(sed -n 's/^zelcore_DIR:PATH=//p' "$work/cmake/CMakeCache.txt")
[ "$found" -ef "$(echo "$prefix"/lib*/cmake/zelcore)" ] || { echo "find_package found $found"; exit 1; }
cmake --build "$work/cmake" > "$work/cmake-build.log" 2>&1 || { cat "$work/cmake-build.log"; exit 1; }
expect_output cmake_c "$work/cmake/consumer_c"
expect_output cmake_cpp "$work/cmake/consumer_cpp" "${schema[@]}"

# pkg-config: the file finds the prefix from where it lies.
export PKG_CONFIG_PATH=$(echo "$prefix"/lib*/pkgconfig)
[ "$(pkg-config --variable=prefix zelcore)" -ef "$prefix" ] ||
  { echo "zelcore.pc names the prefix $(pkg-config --variable=prefix zelcore)"; exit 1; }
read -ra flags <<< "$(pkg-config --cflags --libs zelcore)"
cc -std=c99 -Wall -Werror -o "$work/pc_c" "$here/consumer/consumer.c" "${flags[@]}"
c++ -std=c++17 -Wall -Werror -o "$work/pc_cpp" "$here/consumer/consumer.cpp" "${flags[@]}"
libdir=$(pkg-config --variable=libdir zelcore)
expect_output pc_c env LD_LIBRARY_PATH="$libdir" "$work/pc_c"
expect_output pc_cpp env LD_LIBRARY_PATH="$libdir" "$work/pc_cpp" "${schema[@]}"
echo "installed package used both ways OK"
