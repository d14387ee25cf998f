#!/bin/bash
# SPDX-License-Identifier: MIT
# Draws a demo through the drop-in pair and by the machine's own ES 1.1, and compares the pictures.
#   check_demo.sh headless|window BIN LIB DEMO PERCENT OUT [LONGHAND]
# LONGHAND: the demo's option that does without the extension it shows. Drawn so through the pair, the picture must be the
# same, and the machine's own ES 1.1 draws so when it lacks the extension.
set -euo pipefail
mode=$1 bin=$2 lib=$3 demo=$4 percent=$5 out=$6/$4.$1 longhand=${7-}
skipped=77

options=()
start=()
if [ "$mode" = window ]; then
    command -v xvfb-run >/dev/null || { echo "no xvfb-run here"; exit $skipped; }
    options=(--window --frames 2)
    start=(xvfb-run --auto-servernum)
fi

ours() { # NAME OPTIONS
    VSP_ASSERT=abort LD_LIBRARY_PATH=$lib "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out$1.png" "${@:2}"
}

native() { # NAME OPTIONS
    env -u LD_LIBRARY_PATH "${start[@]}" "$bin/$demo" "${options[@]}" --png "$out$1.png" "${@:2}"
}

compare() { # NAME NAME
    "$bin/picdiff" "$out$1.png" "$out$2.png" --allow "$percent" --out "$out$2.difference.png"
}

mkdir -p "$6"
ours ''
if [ -z "$longhand" ]; then
    native .native
else
    ours .longhand "$longhand"
    compare '' .longhand
    # Both pictures would also agree without the thing itself: what is drawn moves, so that a later picture differs.
    ours .later --time 0.7
    if "$bin/picdiff" "$out.png" "$out.later.png" --allow 5; then
        echo "a later picture is nearly the same"
        exit 1
    fi
    native .native 2>"$out.message" || {
        grep -q "^$demo: this driver has no GL_OES_" "$out.message" || { cat "$out.message"; exit 1; }
        native .native "$longhand"
    }
fi
compare '' .native
