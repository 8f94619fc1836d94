#!/usr/bin/env bash
# ftp_site.sh MODE ROOT COMMAND...: runs COMMAND in a private network and mount namespace
# where only loopback exists and "zelupload" names 127.0.0.1, with a real FTP server
# (ftpserver.py MODE) serving ROOT there; MODE "none" starts no server. Exits with the
# command's status; 77 when the namespace cannot be made.
set -u
if [ "${ZEL_FTP_SITE_INSIDE:-}" != 1 ]; then
  unshare --net --mount -- true 2>/dev/null || exit 77
  ZEL_FTP_SITE_INSIDE=1 exec unshare --net --mount -- bash "$0" "$@"
fi
mode=$1 root=$2
shift 2
here=$(cd "$(dirname "$0")" && pwd)
mount --make-rprivate / || exit 77
ip link set lo up || exit 77
hosts=$(mktemp)
trap 'rm -f "$hosts"' EXIT
printf '127.0.0.1 localhost zelupload\n::1 localhost\n' > "$hosts"
mount --bind "$hosts" /etc/hosts || exit 77
if [ "$mode" != none ]; then
  mkdir -p "$root"
  coproc server { exec /usr/bin/python3 "$here/ftpserver.py" "$root" "$mode" 2>/dev/null; }
  read -r -t 10 ready <&"${server[0]}"
  if [ "${ready:-}" != ready ]; then
    echo "ftp_site.sh: the FTP server did not start" >&2
    exit 1
  fi
  trap 'kill $server_PID 2>/dev/null; rm -f "$hosts"' EXIT
fi
"$@"
