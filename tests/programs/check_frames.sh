#!/bin/bash
# SPDX-License-Identifier: MIT
# Compares the first frames of a program over the drop-in pair with those of this machine's own libraries.
#   check_frames.sh FOLDER BUILD SET_UP es1|other PROGRAM FRAMES PERCENT
# es1: an OpenGL ES 1.1 program, drawn by the library; other: drawn by the machine both times
# PERCENT: how many of the pixels may differ by more than 8 of 255.
set -euo pipefail
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
folder=$1 build=$2 set_up=$3 api=$4 name=$5 frames=$6 percent=$7
libraries=$build/lib
. "$here/common.sh"
need "$set_up"
need_display "$@"

program=$(find_program "$name")
out=$build/pictures/programs/$name.$platform${TRL20_DRIVER_LIMIT:+.$TRL20_DRIVER_LIMIT}
mkdir -p "$(dirname "$out")"
rm -f "$out".*
grab=(env LD_PRELOAD="$libraries/libframe_grabber.so" FRAME_GRABBER_FRAMES="$frames")
natively "${grab[@]}" FRAME_GRABBER_OUT="$out.native" "$program" >"$out.native.txt" 2>&1 ||
    skip "natively $name ends with status $?: $(tail -n 1 "$out.native.txt")"
over_the_pair "${grab[@]}" FRAME_GRABBER_OUT="$out" "$program" >"$out.txt" 2>&1 ||
    { echo "over the pair $name ends with status $?:"; cat "$out.txt"; exit 1; }

status=0
by_machine=$(grep '^drawn by ' "$out.native.txt") by_pair=$(grep '^drawn by ' "$out.txt")
echo "$by_pair, natively $by_machine"
if [ "$api" = es1 ]; then [ "$by_pair" != "$by_machine" ] || status=1; else [ "$by_pair" = "$by_machine" ] || status=1; fi
for ((frame = 1; frame <= frames; frame++)); do
    "$build/bin/picdiff" "$out.$frame.png" "$out.native.$frame.png" --allow "$percent" --out "$out.$frame.diff.png" ||
        status=1
done
exit $status
