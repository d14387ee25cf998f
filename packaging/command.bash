# SPDX-License-Identifier: MIT
# What the checkout's ./trl20 and the installed trl20 share: messages, and starting a program over the libraries.

# Messages go to standard error, so that the output of a program under 'run' stays its own.
say() { printf 'trl20: %s\n' "$*" >&2; }
fail() { # MESSAGE [STATUS]
    say "$1"
    exit "${2:-1}"
}

# For commands without arguments: what is given all the same was meant to do something.
take_nothing() { # ARGS
    [ $# -eq 0 ] || fail "$command takes no arguments; see trl20 help" 2
}

# Of the program: what ldd says that it needs, and what is to come before that: nothing, or a library that follows the
# current API.
needed=
preload=

# Sets force, program and arguments from the command line.
read_program() { # run|explain [--force] PROGRAM ARGS
    local command=$1
    shift
    force=no
    if [ "${1-}" = --force ]; then
        force=yes
        shift
    fi
    case ${1-} in
    '') fail "a program is needed, such as: trl20 $command PROGRAM ARGS" 2 ;;
    -*) fail "$1 is no option of trl20 $command; see trl20 help" 2 ;;
    esac
    program=$1
    arguments=("${@:2}")
}

# Makes program the path of a file that can be started. A name without a slash is looked for as a shell does.
find_program() {
    if [[ $program != */* ]]; then
        local found
        if ! found=$(type -P -- "$program"); then
            [ -f "$program" ] && fail "$program: no such command; for the file in this folder write ./$program" 2
            fail "$program: no such program" 2
        fi
        program=$found
    fi
    [ -e "$program" ] || fail "$program: no such file" 2
    [ -f "$program" ] || fail "$program: not a file" 2
    [ -x "$program" ] || fail "$program: not executable" 2
}

elf_field() { # FILE OFFSET BYTES: an unsigned number of its ELF header, in this machine's byte order
    local number
    number=$(od -An "-tu$3" -j "$2" -N "$3" -- "$1")
    printf '%d' "$number"
}
elf_bits() { # FILE
    case $(elf_field "$1" 4 1) in 1) echo 32 ;; *) echo 64 ;; esac
}
elf_machine() { elf_field "$1" 18 2; } # FILE

# Whether the program, or a library that it needs, opens EGL or OpenGL ES 1.1 by itself, as libraries for games do.
opens_its_own() {
    local files
    mapfile -t files < <(sed -n 's/^.* => \(.*\) (0x[0-9a-f]*)$/\1/p' <<<"$needed")
    grep -qaE 'lib(EGL|GLESv1_CM)\.so' -- "$program" "${files[@]}"
}

# A script does not show what it needs: --force runs it.
check_program() { # FOLDER: of the libraries
    local bits own_bits
    local least=52 # bytes of the smaller of the two ELF headers
    if [ "$(head -c 4 -- "$program" | tr -d '\0')" != $'\x7fELF' ] || [ "$(stat -Lc %s -- "$program")" -lt $least ]; then
        fail "$program is no program file (run --force runs it all the same)" 2
    fi
    bits=$(elf_bits "$program")
    own_bits=$(elf_bits "$1/libvsp.so")
    if [ "$bits" != "$own_bits" ]; then
        fail "$program is a $bits-bit program and this trl20 is built for $own_bits bits: it needs a $bits-bit trl20" 2
    fi
    if [ "$(elf_machine "$program")" != "$(elf_machine "$1/libvsp.so")" ]; then
        fail "$program is for another kind of processor than this trl20" 2
    fi
    case $needed in
    *" => $1/names/libEGL.so"* | *" => $1/names/libGLESv1_CM.so"*) ;;
    *libEGL.so* | *libGLESv1_CM.so*)
        fail "$program finds a libEGL of its own and would not use trl20 (run --force runs it all the same)" 2
        ;;
    *)
        opens_its_own && return
        case $needed in *"not found"*)
            fail "$program needs what is not here: $(sed -n 's/^[[:space:]]*\(.*\) => not found$/\1/p' <<<"$needed" | paste -sd ' ')" 2
            ;;
        esac
        fail "$program does not use OpenGL ES 1.1: it needs neither libEGL nor libGLESv1_CM (run --force runs it all the same)" 2
        ;;
    esac
}

# OpenGL ES 1.1 and 2.0 have many names in common, and the dynamic linker takes them from the library that comes first. A
# program that links both gets them from a third one, which follows the API of the current context. By its name alone:
# the folder is in the library path, and may have a space in its own.
serve_both() { # FOLDER: of the libraries
    case $needed in *" => $1/names/libGLESv1_CM.so"*libGLESv2.so* | *libGLESv2.so*" => $1/names/libGLESv1_CM.so"*)
        preload=libtrl20_both.so
        ;;
    esac
}

# The folder with the pair's names comes first, what is set already stays behind it.
library_path() { # FOLDER: of the libraries
    printf '%s' "$1/names${LD_LIBRARY_PATH:+:$LD_LIBRARY_PATH}"
}

# Finds the program and what it needs. Refuses one that would not work, unless it is forced.
admit_program() { # FOLDER: of the libraries
    find_program
    needed=$(LD_LIBRARY_PATH=$(library_path "$1") ldd "$program" 2>/dev/null) || needed=
    [ "$force" = yes ] || check_program "$1"
    serve_both "$1"
}

# Becomes the program: its process, signals and exit status are what the caller sees.
start_program() { # FOLDER: of the libraries
    admit_program "$1"
    become_program "$1"
}

# Runs the program with TRL20_EXPLAIN set and prints the summary whatever became of the program: that it is ended by ^C
# is usual. Returns its exit status.
explain_program() { # FOLDER FOLDER: of the libraries; to write to, unless TRL20_EXPLAIN names one
    local summary status=0
    admit_program "$1"
    export TRL20_EXPLAIN=${TRL20_EXPLAIN:-$2}
    [[ $TRL20_EXPLAIN == /* ]] || TRL20_EXPLAIN=${PWD%/}/$TRL20_EXPLAIN # the program may change its folder
    if ! mkdir -p -- "$TRL20_EXPLAIN" 2>/dev/null || [ ! -w "$TRL20_EXPLAIN" ]; then
        fail "explain cannot write to $TRL20_EXPLAIN; TRL20_EXPLAIN can name another folder" 2
    fi
    summary=$TRL20_EXPLAIN/summary.txt
    rm -f -- "$summary"
    trap : INT
    (become_program "$1") || status=$?
    trap - INT
    if [ -e "$summary" ]; then
        cat -- "$summary"
        say "the programs' texts are in ${TRL20_EXPLAIN#"${PWD%/}/"}"
    else
        rmdir -- "$TRL20_EXPLAIN" 2>/dev/null || true
        say "nothing was explained: ${program##*/} did not get as far as an OpenGL ES 1.1 context"
    fi
    return $status
}

# What the user preloads stays in front: tracers want to see the calls, and sanitizers insist on it.
become_program() { # FOLDER: of the libraries
    if [ -n "$preload" ]; then export LD_PRELOAD=${LD_PRELOAD:+$LD_PRELOAD:}$preload; fi
    set +e # which would end with the failed exec
    shopt -s execfail
    LD_LIBRARY_PATH=$(library_path "$1") exec "$program" "${arguments[@]}" || fail "$program could not be started" 2
}
