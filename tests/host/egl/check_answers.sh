#!/bin/bash
# SPDX-License-Identifier: MIT
# Compares what the drop-in pair answers about ES 1.x contexts with what this machine's own EGL and ES 1.1 answer.
#   check_answers.sh PROGRAM LIBRARY_FOLDER surfaceless|x11 [DRIVER_EGL]
# DRIVER_EGL: the EGL that the pair runs over, where it is not the machine's standard one.
set -euo pipefail
program=$1 libraries=$2 platform=$3 driver=${4-}
skipped=77
start=()
if [ "$platform" = x11 ]; then
    command -v xvfb-run >/dev/null || { echo "no xvfb-run here"; exit $skipped; }
    start=(xvfb-run --auto-servernum)
fi
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

answers() { # OUTPUT ENVIRONMENT...
    local output=$1
    shift
    "${start[@]}" env "$@" "$program" "$platform" >"$output" 2>"$output.err"
}

# The program says with status 2 that it has no stage, for want of a driver with ES 1.1 or of a display.
status=0
answers "$folder/native" -u LD_LIBRARY_PATH -u TRL20_DRIVER_EGL || status=$?
[ $status -ne 2 ] || { echo "this machine has no ES 1.1 of its own for $platform"; exit $skipped; }
[ $status -eq 0 ] || { echo "natively the program ends with status $status:"; cat "$folder/native.err"; exit 1; }

answers "$folder/ours" LD_LIBRARY_PATH="$libraries" ${driver:+TRL20_DRIVER_EGL="$driver"} ||
    { echo "over the pair the program ends with status $?:"; cat "$folder/ours.err"; exit 1; }
diff -U 3 --label native --label "over the pair" "$folder/native" "$folder/ours"
echo "$(wc -l <"$folder/native") answers are equal"
