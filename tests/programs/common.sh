# SPDX-License-Identifier: MIT
# Sourced by the checks of real programs. They set `folder` (of set_up.sh) and `libraries` (of the drop-in pair).

skip() { # REASON
    echo "skipped: $1"
    exit 77
}

need() { # NAME of what set_up.sh sets up
    [ -e "$folder/$1.ready" ] && return
    skip "$(cat "$folder/$1.missing" 2>/dev/null || echo "$1 has not been set up")"
}

# Starts the calling script again under an X server, which lives until the script ends: a server that starts anew when
# its last client leaves refuses the next one now and then.
need_display() { # ARGUMENTS of the script
    [ -n "${PROGRAMS_DISPLAY-}" ] && return
    command -v xvfb-run >/dev/null || skip "no xvfb-run here"
    PROGRAMS_DISPLAY=yes exec xvfb-run --auto-servernum --server-args="-screen 0 640x480x24 -noreset" "$0" "$@"
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
    for path in "$folder"/root/usr/lib/*-linux-gnu* "$folder"/root/usr/lib/*/piglit/lib; do
        [ -d "$path" ] && printf ':%s' "$path"
    done
}

natively() { # COMMAND...
    env -u TRL20_DRIVER_EGL -u TRL20_DRIVER_GLES2 LD_LIBRARY_PATH="$(fetched_libraries)" timeout 60 "$@"
}

over_the_pair() { # COMMAND...
    env VSP_ASSERT=abort LD_LIBRARY_PATH="$libraries$(fetched_libraries)" timeout 60 "$@"
}
