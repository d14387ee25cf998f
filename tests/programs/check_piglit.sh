#!/bin/bash
# SPDX-License-Identifier: MIT
# Runs tests of Debian's piglit natively and over the drop-in pair: what passes natively has to pass over the pair.
#   check_piglit.sh FOLDER BUILD LIST
# LIST: a test a line; behind its name the result over the pair, where it is no "pass", and the reason.
set -uo pipefail
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
folder=$1 build=$2 list=$here/$3
libraries=$build/lib
. "$here/common.sh"
need piglit
need_display "$@"

tests=$(echo "$folder"/root/usr/lib/*/piglit/bin)
export PIGLIT_SOURCE_DIR=${tests%/bin}

# The last result counts: those before it are of the test's parts. A crash leaves none.
result_of() { # RUNNER TEST
    (cd "$PIGLIT_SOURCE_DIR" && "$1" "$tests/$2" -auto 2>/dev/null) | sed -n 's/^PIGLIT: {"result": "\([a-z]*\)" }$/\1/p' |
        tail -n 1
}

passed=0 differing=0 unused=0 wrong=0
while read -r name expected reason; do
    case $name in '' | '#'*) continue ;; esac
    [ -x "$tests/$name" ] || { echo "$name: not in this package"; wrong=1; continue; }
    native=$(result_of natively "$name")
    [ "$native" = pass ] || { echo "$name: natively ${native:-a crash}"; unused=$((unused + 1)); continue; }
    ours=$(result_of over_the_pair "$name")
    if [ "$ours" != "${expected:-pass}" ]; then
        echo "$name: passes natively; ${ours:-a crash} over the pair, not ${expected:-pass}"
        wrong=1
    elif [ "$ours" = pass ]; then
        passed=$((passed + 1))
    else
        echo "$name: $ours, $reason"
        differing=$((differing + 1))
    fi
done <"$list"
echo "$passed pass as natively, $differing differ as documented, $unused do not pass natively"
[ $passed -gt 0 ] || { [ $wrong -ne 0 ] || skip "none of them passes natively"; }
exit $wrong
