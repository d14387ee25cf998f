#!/bin/bash
# SPDX-License-Identifier: MIT
# Explains three frames of a demo through the drop-in pair, with the swaps that only an EGL brings.
#   check_explain.sh BIN LIB
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
TRL20_EXPLAIN=$folder LD_LIBRARY_PATH=$2 "$1/gears" --frames 3
cat "$folder/summary.txt"
grep -Eq '^gears: [0-9]+ draws in 3 frames and ' "$folder/summary.txt"
grep -Eq '^frames    1 frame with a build, .*; 2 frames without, .*; longest: frame 0, ' "$folder/summary.txt"
programs=("$folder"/program-*.txt)
grep -q '^==== vertex shader, as generated ====$' "${programs[0]}"
# Every program is listed with its draws, of which the demo has some for each.
[ "$(grep -Ec '^ {4}[0-9]{3} +0 +[0-9]+ .* [1-9][0-9]* +[1-9][0-9]*  GL_' "$folder/summary.txt")" = ${#programs[@]} ]
