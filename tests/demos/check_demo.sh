#!/bin/bash
# SPDX-License-Identifier: MIT
# Draws a demo through the drop-in pair and by the machine's own ES 1.1, and compares the pictures.
#   check_demo.sh headless|window BIN LIB DEMO PERCENT OUT
set -euo pipefail
mode=$1 bin=$2 lib=$3 demo=$4 percent=$5 out=$6/$4.$1
skipped=77

options=()
start=()
if [ "$mode" = window ]; then
    command -v xvfb-run >/dev/null || { echo "no xvfb-run here"; exit $skipped; }
    options=(--window --frames 2)
    start=(xvfb-run --auto-servernum)
fi
mkdir -p "$6"
VSP_ASSERT=abort LD_LIBRARY_PATH=$lib "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out.png"
env -u LD_LIBRARY_PATH "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out.native.png"
"$bin/picdiff" "$out.png" "$out.native.png" --allow "$percent" --out "$out.difference.png"
