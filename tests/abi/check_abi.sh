#!/usr/bin/env bash
# check_abi.sh LIBRARY: does libzelcore.so.1 export every symbol that hosts and plugins link to?
#
# The lists beside this script name them: c_symbols.txt (C names, one a line) and
# cxx_symbols.txt (as `nm -DC` spells them with g++ 12, each tagged with the subsystem whose
# tests cover it). A C++ line matches an export that adds " const" or differs only in an
# [abi:cxx11] tag (the return type is a std::string), an export that names a C type by
# another tag name, or one of the "alt:" spellings after the line's tag (a const& parameter
# where the list has a value, for example). Lines tagged [internal] are reported but do not
# count: they are the bodies' own functions, which the library may keep hidden.
#
# Exit status 0 when the soname is libzelcore.so.1 and nothing counted is missing; 1 otherwise,
# with each missing symbol on its own line; 2 when the library, a list or a tool is missing.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
lib=${1:-}
python=/usr/bin/python3

fail() {
  echo "check_abi: $*" >&2
  exit 2
}
[ -n "$lib" ] || fail "usage: check_abi.sh LIBRARY"
[ -f "$lib" ] || fail "no library at $lib"
for list in c_symbols.txt cxx_symbols.txt; do
  [ -s "$here/$list" ] || fail "the list $here/$list is missing or empty"
done
for tool in nm readelf "$python"; do
  command -v "$tool" >/dev/null || fail "$tool is needed and not installed"
done

lib=$(readlink -f "$lib")
echo "library: $lib"
soname=$(readelf -d "$lib" | sed -n 's/.*Library soname: \[\(.*\)\].*/\1/p')
status=0
if [ "$soname" = libzelcore.so.1 ]; then
  echo "soname: libzelcore.so.1 OK"
else
  echo "soname: MISMATCH: '${soname:-none}', expected libzelcore.so.1"
  status=1
fi

tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
nm -D --defined-only "$lib" > "$tmp/raw.txt"
nm -DC --defined-only "$lib" > "$tmp/demangled.txt"

"$python" - "$here/c_symbols.txt" "$here/cxx_symbols.txt" "$tmp/raw.txt" "$tmp/demangled.txt" \
  <<'PY' || status=1
import re, sys
c_path, cxx_path, raw_path, dem_path = sys.argv[1:5]
STRING = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> >"
TAG = "[abi:cxx11]"
# C types whose struct or enum tag (what the C++ mangling shows) the header may name freely.
C_TYPES = ("zelStatusCode", "zelLogSeverity", "zelPluginCallbacks")
VERSION = re.compile(r"@{1,2}[A-Za-z_][A-Za-z0-9_.]*$")

def exports(path):
    lines = (re.match(r"^([0-9a-fA-F]+)?\s+(\S)\s+(.*)$", l.rstrip("\n")) for l in open(path, errors="replace"))
    return [VERSION.sub("", m.group(3)) for m in lines if m and m.group(2) not in "AU"]

raw = set(exports(raw_path))
functions = {n for n in exports(dem_path) if "(" in n}
by_untagged = {}
for n in functions:
    by_untagged.setdefault(n.replace(TAG, ""), []).append(n)

missing = 0
c_names = [n for n in (l.split("#")[0].strip() for l in open(c_path)) if n]
for name in c_names:
    if name not in raw:
        missing += 1
        cxx = sorted(n for n in functions if n.startswith(name + "("))
        print(f"MISSING: {name}" + (f"  (exported with C++ linkage only: {cxx[0].replace(STRING, 'std::string')})" if cxx else ""))
print(f"C symbols: {len(c_names) - missing}/{len(c_names)}")

def found(symbol):
    """Whether an export matches symbol, as the header comment says."""
    spellings = [symbol] + ([] if symbol.endswith(" const") else [symbol + " const"])
    if any(s in functions or s.replace(TAG, "") in by_untagged for s in spellings):
        return True
    if not any(t in symbol for t in C_TYPES):
        return False
    pattern = re.escape(symbol.replace(TAG, ""))
    for t in C_TYPES:
        pattern = pattern.replace(t, r"[A-Za-z_]\w*")
    rx = re.compile("^" + pattern + "( const)?$")
    return any(rx.match(untagged) for untagged in by_untagged)

counted = counted_found = internal = internal_found = 0
for line in open(cxx_path):
    line = line.rstrip("\n")
    if not line.strip() or line.lstrip().startswith("#"):
        continue
    symbol, _, comment = line.partition(" # ")
    fields = [f.strip() for f in comment.split(" ; ")]
    tag = fields[0]
    alternatives = [f[len("alt: "):] for f in fields[1:] if f.startswith("alt: ")]
    hit = any(found(s) for s in [symbol.strip()] + alternatives)
    if "[internal]" in tag:
        internal, internal_found = internal + 1, internal_found + hit
        if not hit:
            print(f"  not exported [{tag}]: {symbol.strip().replace(STRING, 'std::string')}")
    else:
        counted, counted_found = counted + 1, counted_found + hit
        if not hit:
            missing += 1
            print(f"MISSING [{tag}]: {symbol.strip().replace(STRING, 'std::string')}")
print(f"C++ symbols: {counted_found}/{counted}; [internal] {internal_found}/{internal}")
sys.exit(1 if missing else 0)
PY

if [ $status = 0 ]; then
  echo "abi: OK"
else
  echo "abi: FAILED"
fi
exit $status
