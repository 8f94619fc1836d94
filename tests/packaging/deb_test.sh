#!/usr/bin/env bash
# deb_test.sh BUILD: builds the Debian package with cpack, checks its owners and modes, installs
# it with dpkg into a fresh root that holds only the packages it depends on (copied from this
# machine, with their dpkg records), and runs the installed zelcollect there under chroot.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
build=$(cd "$1" && pwd)
. "$here/check_tree.sh"

if [ "$(id -u)" != 0 ]; then
  echo "SKIPPED: installing a package into a fresh root needs root (dpkg --root, chroot)"
  exit 0
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The package must not take its modes from the packager's umask.
(umask 077 && cpack --config "$build/CPackConfig.cmake" -B "$work/out") > "$work/cpack.log" 2>&1 ||
  { cat "$work/cpack.log"; exit 1; }
deb=$(echo "$work"/out/zelcore_*_amd64.deb)
[ -f "$deb" ] || { echo "cpack made no package: $(ls "$work/out")"; exit 1; }

# The control fields: dpkg-shlibdeps' Depends, libcurl recommended for uploads.
depends=$(dpkg-deb -f "$deb" Depends)
for lib in libc6 libstdc++6 zlib1g; do
  [[ $depends == *"$lib ("* ]] || { echo "Depends lacks $lib: $depends"; exit 1; }
done
[[ $(dpkg-deb -f "$deb" Recommends) == libcurl4 ]] ||
  { echo "Recommends lacks libcurl4: $(dpkg-deb -f "$deb" Recommends)"; exit 1; }

# The archive: everything root/root; directories and programs 0755, the rest 0644.
bad=$(dpkg-deb -c "$deb" | awk '
  $2 != "root/root" { print "owner " $2 ": " $6; next }
  $1 ~ /^d/ && $1 != "drwxr-xr-x" { print $1 " " $6; next }
  $1 ~ /^-/ && $6 ~ /^\.\/usr\/bin\// && $1 != "-rwxr-xr-x" { print $1 " " $6; next }
  $1 ~ /^-/ && $6 !~ /^\.\/usr\/bin\// && $1 != "-rw-r--r--" { print $1 " " $6 }')
[ -z "$bad" ] || { echo "in the package:"; echo "$bad"; exit 1; }

# The fresh root: the packages the Depends line needs, with what they need in turn, each as
# dpkg knows it here; the shell and ldconfig for the package's scripts.
root=$work/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/tmp" "$root/proc"
packages=()
pending=$(echo "$depends" | tr ',|' '\n\n' | sed 's/(.*//; s/:any//; s/ //g')
while [ -n "$pending" ]; do
  next=""
  for p in $pending; do
    [[ " ${packages[*]} " == *" $p "* ]] && continue
    # An alternative or a virtual name not installed here: dpkg -i names what is missing.
    dpkg-query -W -f='${Status}' "$p" 2> /dev/null | grep -q 'ok installed' || continue
    packages+=("$p")
    next+=" $(dpkg-query -W -f='${Depends},${Pre-Depends}' "$p" | tr ',|' '\n\n' |
                sed 's/(.*//; s/:any//; s/ //g')"
  done
  pending=$(echo $next)
done
dpkg-query -s "${packages[@]}" > "$root/var/lib/dpkg/status"
# The root's top directories as here: where /lib is a link to usr/lib, so it is there, and
# files are copied by their real directory.
canonical=()
for dir in /bin /sbin /lib /lib64; do
  if [ -L "$dir" ]; then
    target=$(readlink -f "$dir")
    mkdir -p "$root$target"
    cp -a "$dir" "$root$dir"
    canonical+=(-e "s|^${dir#/}/|${target#/}/|")
  fi
done
for p in "${packages[@]}"; do
  dpkg-query -L "$p" | while read -r f; do
    [ -d "$f" ] || [ ! -e "$f" ] || echo "$f"  # the documentation may be left out here
  done
done | { cat; printf '%s\n' /bin/sh /bin/dash /sbin/ldconfig; } | sed -e 's|^/||' "${canonical[@]}" |
  tar -C / -cf - --no-recursion -T - | tar -C "$root" -xf -

dpkg --root="$root" -i "$deb" > "$work/dpkg.log" 2>&1 || { cat "$work/dpkg.log"; exit 1; }
dpkg --root="$root" -s zelcore | grep -qx 'Status: install ok installed' ||
  { echo "dpkg does not call zelcore installed in the fresh root"; exit 1; }

# The installed tree: the same owners and modes as cmake --install makes.
zel_check_tree "$root/usr"

# The collector as installed, with its own library, plugins and schema; /proc in a mount
# namespace of its own, so that nothing stays mounted.
if ! unshare --mount true 2> /dev/null; then
  echo "SKIPPED: running the installed collector needs a mount namespace for /proc (unshare)"
  exit 0
fi
unshare --mount sh -c 'mount -t proc proc "$1/proc" && exec chroot "$1" /usr/bin/zelcollect -n -f xml' \
  - "$root" > "$work/out.txt" 2> "$work/err.txt" ||
  { echo "zelcollect -n failed:"; cat "$work/err.txt"; exit 1; }
grep -q '<INSTANCE CLASSNAME="KAPLA_OperatingSystem">' "$work/out.txt" ||
  { echo "no operating system in the inventory:"; cat "$work/out.txt" "$work/err.txt"; exit 1; }
# Its software plugin reads the fresh root's dpkg records, where zelcore is installed.
grep -q '<PROPERTY NAME="Name" TYPE="string"><VALUE>zelcore</VALUE>' "$work/out.txt" ||
  { echo "the fresh root's packages are not in the inventory:"; cat "$work/out.txt"; exit 1; }
echo "package installed and run OK"
