# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# Sourced by the checks of real programs. They set `folder` (of set_up.sh) and `libraries` (of the drop-in pair).
# shellcheck disable=SC2154
# PROGRAMS_PLATFORM in the environment: x11, the default, wayland, or headless for none.
platform=${PROGRAMS_PLATFORM:-x11}

skip() { # REASON
    echo "skipped: $1"
    exit 77
}

need() { # NAME of what set_up.sh sets up
    [ -e "$folder/$1.ready" ] && return
    skip "$(cat "$folder/$1.missing" 2>/dev/null || echo "$1 has not been set up")"
}

# Starts the calling script again under a display server, which lives until the script ends: an X server that starts anew
# when its last client leaves refuses the next one now and then.
need_display() { # ARGUMENTS of the script
    [ -n "${PROGRAMS_DISPLAY-}" ] && return
    export PROGRAMS_DISPLAY=yes
    if [ "$platform" = headless ]; then
        unset DISPLAY WAYLAND_DISPLAY
        return
    fi
    if [ "$platform" = wayland ]; then
        need wayland
        under_weston "$0" "$@"
        exit
    fi
    command -v xvfb-run >/dev/null || skip "no xvfb-run here"
    exec xvfb-run --auto-servernum --server-args="-screen 0 640x480x24 -noreset" "$0" "$@"
}

# Runs a command beside a compositor without a screen, and has its status.
under_weston() { # COMMAND...
    local files=$folder/wayland/usr/lib weston status=0
    files=$(echo "$files"/*-linux-gnu*)
    unset DISPLAY
    XDG_RUNTIME_DIR=$(mktemp -d)
    export XDG_RUNTIME_DIR WAYLAND_DISPLAY=programs
    WESTON_MODULE_MAP="headless-backend.so=$files/libweston-10/headless-backend.so;kiosk-shell.so=$files/weston/kiosk-shell.so" \
        LD_LIBRARY_PATH=$files:$files/weston "$folder/wayland/usr/bin/weston" --backend=headless-backend.so \
        --shell=kiosk-shell.so --no-config --width=640 --height=480 --socket=programs >"$XDG_RUNTIME_DIR/log" 2>&1 &
    weston=$!
    for _ in {1..50}; do
        [ -S "$XDG_RUNTIME_DIR/programs" ] && break
        sleep 0.1
    done
    [ -S "$XDG_RUNTIME_DIR/programs" ] || { cat "$XDG_RUNTIME_DIR/log"; skip "the compositor does not start"; }
    "$@" || status=$?
    kill $weston
    rm -r "$XDG_RUNTIME_DIR"
    return $status
}

# The path of a program that was built, or that a package has: those have the machine's name in their ending.
find_program() { # NAME
    local path
    for path in "$folder/bin/$1" "$folder/root/usr/bin/$1" "$folder/root/usr/bin/$1".*; do
        [ -x "$path" ] && echo "$path" && return
    done
    echo "there is no program $1" >&2
    return 1
}

# The folders of the fetched libraries, each with a colon before it.
fetched_libraries() {
    local path
    if [ "$platform" = wayland ]; then printf ':%s' "$folder"/wayland/usr/lib/*-linux-gnu*; fi
    for path in "$folder"/root/usr/lib/*-linux-gnu* "$folder"/root/usr/lib/*/piglit/lib \
        "$folder"/sdl/usr/lib/*-linux-gnu* "$folder"/sdl/usr/lib/*/pulseaudio; do
        [ -d "$path" ] && printf ':%s' "$path"
    done
}

natively() { # COMMAND...
    env -u TRL20_DRIVER_EGL -u TRL20_DRIVER_GLES2 LD_LIBRARY_PATH="$(fetched_libraries)" timeout 60 "$@"
}

over_the_pair() { # COMMAND...
    env VSP_ASSERT=abort LD_LIBRARY_PATH="$libraries$(fetched_libraries)" timeout 60 "$@"
}
