#!/bin/bash
# SPDX-License-Identifier: MIT
# Draws a demo through the drop-in pair and by the machine's own ES 1.1, and compares the pictures.
#   check_demo.sh headless|window BIN LIB DEMO OUT
# 0.5 % of the pixels of the fixed-point demo differ by up to 15 of 255: its colours above 1 are clamped before fog
# here, and its fog factor is clamped per vertex.
set -euo pipefail
mode=$1 bin=$2 lib=$3 demo=$4 out=$5/$4.$1
skipped=77

options=()
start=()
if [ "$mode" = window ]; then
    command -v xvfb-run >/dev/null || { echo "no xvfb-run here"; exit $skipped; }
    options=(--window --frames 2)
    start=(xvfb-run --auto-servernum)
fi
mkdir -p "$5"
VSP_ASSERT=abort LD_LIBRARY_PATH=$lib "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out.png"
env -u LD_LIBRARY_PATH "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out.native.png"
"$bin/picdiff" "$out.png" "$out.native.png" --allow 0.6 --out "$out.difference.png"
