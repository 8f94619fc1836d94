#!/usr/bin/env bash
# zelcollect's uploads to a real FTP server in a private network namespace
# (tests/ftp/ftp_site.sh), from the build tree and from an installed copy that sees only
# libcurl's run-time library. Exit 77: no namespace here, nothing tested.
# upload_test.sh BUILD_DIR ZELCOLLECT HIDE_CURL_AUDIT_MODULE [sanitized]
set -uo pipefail
build=$1 zelcollect=$2 hide_curl=$3 sanitized=${4:-}
site=$(cd "$(dirname "$0")/../ftp" && pwd)/ftp_site.sh
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
server=$work/server
inbox=$server/pellar/totarvo/quorline/zel_upload
mkdir -p "$inbox"
failures=0
fail() { echo "FAILED: $*" >&2; failures=$((failures + 1)); }

# check MODE STATUS STDERR COMMAND...: runs the command in the namespace, its output in out,
# and checks its exit status and (unless STDERR is "-") its standard error.
check() {
  local mode=$1 status=$2 expected=$3
  shift 3
  "$site" "$mode" "$server" "$@" > out 2> err
  rc=$?
  if [ "$rc" = 77 ]; then
    echo "no private network and mount namespace (unshare --net --mount): uploads not tested"
    exit 77
  fi
  [ "$rc" = "$status" ] || fail "exit status $rc, not $status (stderr: $(cat err))"
  [ "$expected" = - ] || [ "$(cat err)" = "$expected" ] ||
    fail "standard error: '$(cat err)', not '$expected'"
}

# A collection uploads its result under the host's name and the collection time.
check open 0 - "$zelcollect" -o result.xml.gz --upload
sent=$(ls "$inbox")
[[ "$sent" =~ ^$(hostname | tr -c 'A-Za-z0-9._\n-' -)-20[0-9]{6}T[0-9]{6}\.xml\.gz$ ]] ||
  fail "uploaded as '$sent'"
[ "$(cat err)" = "zelcollect: uploaded $work/result.xml.gz to zelupload as $sent" ] ||
  fail "report: $(cat err)"
cmp -s result.xml.gz "$inbox/$sent" || fail "the uploaded file differs from the result"

# A plain result is compressed for the transfer; without a result file the inventory is sent.
check open 0 "zelcollect: uploaded $work/result.xml to zelupload as plain.xml.gz" \
  "$zelcollect" -o result.xml --upload=plain
gunzip -c "$inbox/plain.xml.gz" | cmp -s - result.xml || fail "plain.xml.gz is not result.xml"
check open 0 "zelcollect: uploaded the inventory to zelupload as nofile.xml.gz" \
  "$zelcollect" -n --upload=nofile
gunzip -c "$inbox/nofile.xml.gz" > nofile.xml
grep -q '<INSTANCE CLASSNAME="KAPLA_ComputerSystem">' nofile.xml || fail "nofile.xml.gz holds no inventory"

# A redacted run sends its redacted result; a JSON result goes as the inventory's CIM-XML.
check open 0 "zelcollect: uploaded $work/redacted.xml.gz to zelupload as redacted.xml.gz" \
  "$zelcollect" --redact-key site.key -o redacted.xml.gz --upload=redacted
cmp -s redacted.xml.gz "$inbox/redacted.xml.gz" || fail "the redacted upload differs"
gunzip -c "$inbox/redacted.xml.gz" > redacted.xml
grep -q "<VALUE>$(hostname)</VALUE>" redacted.xml && fail "the redacted upload names the host"
check open 0 "zelcollect: uploaded the inventory to zelupload as fromjson.xml.gz" \
  "$zelcollect" -o result.json --upload=fromjson
gunzip -c "$inbox/fromjson.xml.gz" > fromjson.xml
grep -q '<INSTANCE CLASSNAME="KAPLA_ComputerSystem">' fromjson.xml || fail "fromjson is no inventory"

# A file written earlier, by the upload command.
check open 0 "" "$zelcollect" upload result.xml.gz later
[ "$(cat out)" = "uploaded result.xml.gz to zelupload as later.xml.gz" ] || fail "$(cat out)"
cmp -s result.xml.gz "$inbox/later.xml.gz" || fail "later.xml.gz differs"

# Refused and unreachable: exit 2 with the reason, the result file kept whole.
rm -f refused.xml.gz
check no-login 2 "zelcollect: cannot upload $work/refused.xml.gz: the server zelupload refused \
the transfer (Error performing upload command: Access denied: 530)" \
  "$zelcollect" -o refused.xml.gz --upload=refused
gzip -t refused.xml.gz || fail "the refused upload's result file is damaged"
check none 2 "zelcollect: cannot upload result.xml.gz: the server zelupload cannot be reached \
(Error connecting to Tarvo Service)" "$zelcollect" upload result.xml.gz nowhere
check open 2 "zelcollect: the upload name 'bad/name' cannot name a file (it is empty, holds a '/' \
or starts with '.')
Try 'zelcollect --help'." "$zelcollect" upload result.xml.gz bad/name

# Only libcurl's run-time library: the build tree's copy cannot upload, an installed one can.
# LeakSanitizer cannot stop a process that has an audit module loaded: no leak check there.
asan="${ASAN_OPTIONS:+$ASAN_OPTIONS:}detect_leaks=0"
check open 2 "zelcollect: cannot upload result.xml.gz: the transfer library libcurl cannot be \
loaded (Error opening curl library: libcurl.so: cannot open shared object file: No such file \
or directory)" env ASAN_OPTIONS="$asan" LD_AUDIT="$hide_curl" "$zelcollect" upload result.xml.gz nocurl
if [ -n "$sanitized" ]; then
  # The sanitizer's dlopen loads libraries on its own behalf, so the library's run path,
  # where the private link is found, does not apply there.
  echo "not tested in a sanitizer build: the installed copy with libcurl's run-time library only"
else
  cmake --install "$build" --prefix "$work/prefix" > /dev/null || fail "cmake --install"
  check open 0 "" env LD_AUDIT="$hide_curl" "$work/prefix/bin/zelcollect" upload result.xml.gz installed
  cmp -s result.xml.gz "$inbox/installed.xml.gz" || fail "the installed copy's upload differs"
fi

[ "$failures" = 0 ] && echo "uploads OK"
