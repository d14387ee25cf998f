#!/bin/bash
# SPDX-License-Identifier: MIT
# Compares what a program prints over the drop-in pair with what it prints over this machine's own libraries.
#   check_text.sh FOLDER BUILD SET_UP WITHOUT PROGRAM [ARGUMENTS...]
# WITHOUT: the lines that match this regular expression name the library, and have to differ; -: there are none
set -euo pipefail
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
folder=$1 build=$2 set_up=$3 without=$4 name=$5
libraries=$build/lib
. "$here/common.sh"
need "$set_up"
need_display "$@"
shift 5

program=$(find_program "$name")
text=$build/pictures/programs/$(printf '%s.' "$name" "$@" | tr -c 'a-zA-Z0-9._' -)$platform
mkdir -p "$(dirname "$text")"
status=0 native_status=0
natively "$program" "$@" >"$text.native.txt" 2>&1 || native_status=$?
over_the_pair "$program" "$@" >"$text.txt" 2>&1 || status=$?
[ $status -eq $native_status ] || { echo "status $status, natively $native_status"; cat "$text.txt"; exit 1; }

compared() { if [ "$without" = - ]; then cat "$1"; else grep -vE -- "$without" "$1"; fi; }
diff -U 2 --label native --label "over the pair" <(compared "$text.native.txt") <(compared "$text.txt")
if [ "$without" != - ] && diff -q <(grep -E -- "$without" "$text.native.txt") \
    <(grep -E -- "$without" "$text.txt") >/dev/null; then
    echo "the library was not in use"
    exit 1
fi
[ "$(compared "$text.txt" | wc -l)" -gt 0 ] || { echo "nothing was printed"; exit 1; }
echo "$(compared "$text.txt" | wc -l) lines are equal"
