# zel_check_tree PREFIX [OWNER]: the installed zelcore under PREFIX (bin, lib, include, share)
# is owned by OWNER (default root:root), its directories and zelcollect are 0755, every other
# file 0644: the collector runs the installed plugins as root and refuses any that another
# user could change. Sourced by the packaging tests; prints each wrong path and exits 1.
zel_check_tree() {
  local prefix=$1 owner=${2:-root:root} bad
  bad=$(cd "$prefix" && find bin/zelcollect lib*/libzelcore.so* lib*/pkgconfig/zelcore.pc \
      lib*/cmake/zelcore lib*/zelcore include/zelcore share/zelcore share/man/man1/zelcollect.1 \
      -printf '%u:%g %m %y %p\n' | awk -v owner="$owner" '
    $1 != owner { print "owner " $1 ": " $4; next }
    $3 == "d" && $2 != "755" { print $2 " " $4; next }
    $3 == "f" && $4 == "bin/zelcollect" && $2 != "755" { print $2 " " $4; next }
    $3 == "f" && $4 != "bin/zelcollect" && $2 != "644" { print $2 " " $4 }')
  if [ -n "$bad" ]; then
    echo "installed under $prefix:"
    echo "$bad"
    exit 1
  fi
  # The plugins and the schema, as the collector finds them, and the manual page.
  (cd "$prefix" && ls lib*/zelcore/plugins/os/libos.pi.so lib*/zelcore/plugins/os/os.properties.xml \
     share/zelcore/schema/01-qualifiers.xml share/man/man1/zelcollect.1 > /dev/null) ||
    { echo "plugins, schema or manual page missing under $prefix"; exit 1; }
}
