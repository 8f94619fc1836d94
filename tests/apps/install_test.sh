#!/usr/bin/env bash
# Installs the build into a fresh prefix and runs the installed zelcollect from elsewhere:
# it must use the schema and plugins installed beside it, not those of the build tree, so
# one installed plugin is removed and must be missing from the inventory.
set -euo pipefail
build=$1
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix" >/dev/null
test -f "$prefix/share/zelcore/schema/01-qualifiers.xml"
rm -r "$prefix"/lib*/zelcore/plugins/software
cd "$prefix"
"$prefix/bin/zelcollect" -o result.xml > out.txt
grep -q '^KAPLA_OperatingSystem  (1 instance, plugin OperatingSystem 1.0.0)$' out.txt
if grep -q '^KAPLA_SoftwarePackage' out.txt; then
  echo "the installed zelcollect used the plugins of the build tree" >&2
  exit 1
fi
grep -q '<INSTANCE CLASSNAME="KAPLA_OperatingSystem">' result.xml
echo "installed zelcollect OK"
