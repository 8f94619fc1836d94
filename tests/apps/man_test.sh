#!/usr/bin/env bash
# man_test.sh ZELCOLLECT MANPAGE: the manual page names every option that `zelcollect --help`
# lists, long and short, and no other; groff renders it without a warning.
set -euo pipefail
zelcollect=$1
page=$2

# Options as written: "-x" or "--long-name", not inside a word ("CIM-XML", "HOST-YYYY").
options() {
  grep -oE '(^|[^[:alnum:]_-])(--[a-z][a-z-]*[a-z]|-[A-Za-z])($|[^[:alnum:]_-])' |
    grep -oE -- '--?[A-Za-z][a-z-]*' | sed -E 's/-+$//' | sort -u
}
help=$("$zelcollect" --help | options)
# The page's source, its minus signs and font changes undone: the rendered page hyphenates.
man=$(grep -v '^\.\\"' "$page" | sed -e 's/\\-/-/g' -e 's/\\f[BIRP]//g' | options)
[ -n "$help" ] || { echo "no options in zelcollect --help"; exit 1; }
missing=$(comm -23 <(echo "$help") <(echo "$man"))
extra=$(comm -13 <(echo "$help") <(echo "$man"))
status=0
[ -z "$missing" ] || { echo "in --help, not in $page:" $missing; status=1; }
[ -z "$extra" ] || { echo "in $page, not in --help:" $extra; status=1; }

command -v groff > /dev/null || { echo "groff is missing (scripts/lib.sh installs groff-base)"; exit 1; }
warnings=$(groff -man -Tutf8 -ww -z "$page" 2>&1)
[ -z "$warnings" ] || { echo "groff warns:"; echo "$warnings"; status=1; }
# Every section a reader looks for.
for section in NAME SYNOPSIS DESCRIPTION COMMANDS OPTIONS "EXIT STATUS" ENVIRONMENT FILES; do
  grep -qx "\.SH \"\?$section\"\?" "$page" || { echo "no section $section"; status=1; }
done
[ $status = 0 ] && echo "manual page OK"
exit $status
