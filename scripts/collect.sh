#!/usr/bin/env bash
# Installs what is missing (Debian 12, as root), builds, and inventories this machine with
# zelcollect: the inventory on standard output, the result in ./inventory.xml.gz. Arguments
# are passed on to zelcollect (see zelcollect --help).
set -euo pipefail
here=$(pwd)
root=$(cd "$(dirname "$0")/.." && pwd)
cd "$root"
. scripts/lib.sh

zel_install_deps
zel_build build -DZEL_SANITIZE=OFF >&2
cd "$here"
exec "$root/build/apps/zelcollect/zelcollect" "$@"
