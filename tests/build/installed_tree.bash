# SPDX-License-Identifier: MIT
# What must hold for every installed tree, however it came there. Sourced by check_install.sh and check_deb.sh.

tests=$(dirname -- "${BASH_SOURCE[0]}")
# shellcheck source=tests/support/expect.bash
source "$tests/../support/expect.bash"

# Files and links below a folder, and the folders that are empty.
list_tree() { # FOLDER
    (cd -- "$1" && find . \( -type d -empty -printf '%P/\n' \) -o \( ! -type d -printf '%P\n' \) | LC_ALL=C sort)
}

# The expected list: LIB stands for the library folder.
expected_files() { # LIB
    sed "s:^LIB/:$1/:" "$tests/installed_files.txt" | LC_ALL=C sort
}

# Sets flags. A compile line as the manual page gives it, in a folder that knows nothing of the source tree.
compile_installed_program() { # PREFIX LIB FOLDER
    export PKG_CONFIG_PATH=$1/$2/pkgconfig
    read -ra flags <<<"$(pkg-config --cflags --libs trl20)"
    mkdir -p "$3"
    cp "$tests/installed_program.c" "$3"
    (cd "$3" && "${CC:-cc}" installed_program.c -o program "${flags[@]}")
}

check_drawing() { # PREFIX LIB FOLDER
    local output
    output=$(cd / && "$1/bin/trl20" run "$3/program" 0 'two words') || true
    expect_part 'the library draws' 'renderer: QRN N614' "$output"
    expect_part 'it is OpenGL ES 1.1' 'version: OpenGL ES-CM 1.1' "$output"
    expect_part 'the triangle is drawn' 'inside: 255 0 51' "$output"
    expect_part 'the rest is cleared' 'outside: 0 102 0' "$output"
    expect_part 'arguments reach the program' 'argument: two words' "$output"
    expect_part 'the libraries come first' "library path: $(readlink -f "$1/$2/trl20")/names" "$output"
}

# The same file without the command: the installed libraries must not be found by accident.
check_no_shadow() { # FOLDER
    local output
    output=$(env -u LD_LIBRARY_PATH "$1/program") || true
    expect 'without trl20 run the libraries are not used' '' "$(grep 'QRN' <<<"$output")"
}

check_run() { # PREFIX FOLDER
    local command=$1/bin/trl20 output pid status
    expect_status 'the exit status is the program'\''s' 7 "$command" run "$2/program" 7

    output=$(cd "$2" && LD_LIBRARY_PATH=/nowhere:/else "$command" run ./program) || true
    expect_part 'a relative path and a library path that is set' ':/nowhere:/else' "$output"
    output=$(PATH=$2:$PATH "$command" run program) || true
    expect_part 'a program in PATH' 'renderer: QRN' "$output"
    mkdir -p "$2/a folder"
    cp "$2/program" "$2/a folder/a program"
    output=$(cd "$2/a folder" && "$command" run './a program') || true
    expect_part 'a path with spaces' 'renderer: QRN' "$output"
    ln -sf "$command" "$2/link to trl20"
    output=$("$2/link to trl20" run "$2/program") || true
    expect_part 'the command through a link' 'renderer: QRN' "$output"
    printf '#!/bin/sh\nexec "%s/program" "$@"\n' "$2" >"$2/script"
    chmod +x "$2/script"
    output=$("$command" run --force "$2/script") || true
    expect_part 'a script with --force' 'renderer: QRN' "$output"
    printf '#include <dlfcn.h>\nint main(void) { return dlopen("libEGL.so.1", RTLD_NOW) ? 9 : 1; }\n' >"$2/opens.c"
    "${CC:-cc}" "$2/opens.c" -o "$2/opens"
    expect_status 'a program that opens its EGL by itself' 9 "$command" run "$2/opens"

    "$command" run "$2/program" --wait &
    pid=$!
    for _ in $(seq 500); do
        [ "$(readlink "/proc/$pid/exe")" = "$(readlink -f "$2/program")" ] && break
        sleep 0.02
    done
    kill -TERM $pid
    status=0
    wait $pid || status=$?
    expect 'a signal to the command ends the program' $((128 + 15)) $status
}

# Programs that open their libraries by themselves, under the names of a system with and without development packages.
check_opening() { # PREFIX FOLDER
    local command=$1/bin/trl20 egl names output
    "${CC:-cc}" "$tests/opening_program.c" -o "$2/opening"
    for egl in libEGL.so.1 libEGL.so; do
        for names in libGLESv1_CM.so.1 libGLESv1_CM.so 'libGLESv1_CM.so libGLESv2.so'; do
            # shellcheck disable=SC2086
            output=$("$command" run "$2/opening" 1 $egl $names) || true
            expect_part "OpenGL ES 1.1 from $egl $names" $'renderer: QRN N614\npixel: 0 255 0' "$output"
        done
        for names in libGLESv2.so.2 libGLESv2.so 'libGLESv2.so libGLESv1_CM.so.1'; do
            # shellcheck disable=SC2086
            output=$("$command" run "$2/opening" 2 $egl $names) || true
            expect_part "OpenGL ES 2.0 from $egl $names" 'pixel: 0 255 0' "$output"
            expect "OpenGL ES 2.0 from $egl $names is the machine's" '' "$(grep QRN <<<"$output")"
        done
    done
}

# Compiles the program that draws with contexts of both APIs in turn, and a library that it needs, which calls GL before
# the program starts.
compile_both() { # FOLDER OPTIONS...
    printf '#include <GLES/gl.h>\n__attribute__((constructor)) static void start(void) { glGetError(); }\n' >"$1/early.c"
    "${CC:-cc}" -shared -fPIC "$1/early.c" -o "$1/libearly.so" -lGLESv1_CM
    "${CC:-cc}" "$tests/both_apis_program.c" -o "$1/both" -Wl,--no-as-needed "${@:2}" -lEGL "-L$1" -learly "-Wl,-rpath,$1"
}

gl_functions_of() { # FILE
    nm -D --defined-only "$1" | sed -n 's/^[0-9a-f]* T \(gl[A-Z].*\)/\1/p' | LC_ALL=C sort
}

# The functions that both APIs have follow the current context, in either order of linking.
check_both_libraries() { # PREFIX LIB FOLDER
    local order output round machine
    round=$'OpenGL ES 1.1: 255 102 0, ES-CM, error 0\nOpenGL ES 2.0: 0 153 255, ES, error 0'
    for order in '-lGLESv1_CM -lGLESv2' '-lGLESv2 -lGLESv1_CM'; do
        # shellcheck disable=SC2086
        compile_both "$3" $order
        output=$(env -u LD_LIBRARY_PATH "$3/both" 2>&1) || true
        expect "$order without trl20" "$round"$'\n'"$round" "$output"
        output=$("$1/bin/trl20" run "$3/both" 2>&1) || true
        expect "$order" "$round"$'\n'"$round" "$output"
        output=$("$1/bin/trl20" run --force "$3/both" 2>&1) || true
        expect "$order, with --force" "$round"$'\n'"$round" "$output"
    done

    machine=$(ldd "$3/both" | sed -n 's/^.*libGLESv2.so.2 => \(.*\) (.*/\1/p')
    expect 'these are all functions that both APIs have' \
        "$(LC_ALL=C comm -12 <(gl_functions_of "$1/$2/trl20/libGLESv1_CM_trl20.so") <(gl_functions_of "$machine"))" \
        "$(gl_functions_of "$1/$2/trl20/libtrl20_both.so")"
}

# Only programs that link both APIs are given something to preload, behind what the user preloads.
check_preloading() { # PREFIX FOLDER
    printf '#include <stdio.h>\n#include <stdlib.h>\nint main(void) { return puts(getenv("LD_PRELOAD")) < 0; }\n' >"$2/preloads.c"
    "${CC:-cc}" "$2/preloads.c" -o "$2/preloads" -Wl,--no-as-needed -lGLESv1_CM -lEGL
    expect 'one API' libm.so.6 "$(LD_PRELOAD=libm.so.6 "$1/bin/trl20" run "$2/preloads" 2>&1)"
    mkdir -p "$2/plain"
    "${CC:-cc}" -shared -x c /dev/null -o "$2/plain/libEGL.so" -Wl,-soname,libEGL.so
    "${CC:-cc}" "$2/preloads.c" -o "$2/preloads" -Wl,--no-as-needed "-L$2/plain" -lEGL
    expect 'a name without a version' libm.so.6 "$(LD_PRELOAD=libm.so.6 "$1/bin/trl20" run "$2/preloads" 2>&1)"
    "${CC:-cc}" "$2/preloads.c" -o "$2/preloads" -Wl,--no-as-needed -lGLESv1_CM -lGLESv2
    expect 'both APIs' libtrl20_both.so "$(env -u LD_PRELOAD "$1/bin/trl20" run "$2/preloads" 2>&1)"
    expect 'both APIs and the user'\''s own' libm.so.6:libtrl20_both.so \
        "$(LD_PRELOAD=libm.so.6 "$1/bin/trl20" run "$2/preloads" 2>&1)"
}

check_refusals() { # PREFIX FOLDER
    local command=$1/bin/trl20 output
    cp "$2/program" "$2/of32bits"
    printf '\001' | dd of="$2/of32bits" bs=1 seek=4 conv=notrunc status=none # the class byte of an ELF header
    expect_status 'a 32-bit program' 2 "$command" run "$2/of32bits"
    output=$("$command" run "$2/of32bits" 2>&1) || true
    expect_part 'a 32-bit program is told' 'is a 32-bit program and this trl20 is built for 64 bits' "$output"
    cp "$2/program" "$2/elsewhere"
    printf '\377' | dd of="$2/elsewhere" bs=1 seek=18 conv=notrunc status=none # the low byte of its machine
    output=$("$command" run "$2/elsewhere" 2>&1) || true
    expect_part 'another processor is told' 'is for another kind of processor' "$output"
    expect_status 'and with --force it cannot be started' 2 "$command" run --force "$2/elsewhere"
    head -c 51 "$2/program" >"$2/cut"
    chmod +x "$2/cut"
    output=$("$command" run "$2/cut" 2>&1) || true
    expect 'a file that was cut off is told' "trl20: $2/cut is no program file (run --force runs it all the same)" "$output"
    "${CC:-cc}" "$2/installed_program.c" -o "$2/ownpath" "${flags[@]}" -Wl,--disable-new-dtags \
        "-Wl,-rpath,$(ldd "$2/program" | sed -n 's:^.*=> \(.*\)/libEGL.so.1 .*:\1:p')"
    output=$("$command" run "$2/ownpath" 2>&1) || true
    expect_part 'a program that finds its own EGL is told' 'finds a libEGL of its own' "$output"
    output=$("$command" run /bin/ls 2>&1) || true
    expect_part 'a program without GL is told' 'does not use OpenGL ES 1.1' "$output"
    echo 'int missing(void) { return 0; }' >"$2/missing.c"
    echo 'int missing(void); int main(void) { return missing(); }' >"$2/lacking.c"
    "${CC:-cc}" -shared -fPIC "$2/missing.c" -o "$2/libmissing.so"
    "${CC:-cc}" "$2/lacking.c" -o "$2/lacking" "-L$2" -lmissing
    rm "$2/libmissing.so"
    output=$("$command" run "$2/lacking" 2>&1) || true
    expect_part 'a library that is not here is told' 'needs what is not here: libmissing.so' "$output"
    output=$(cd "$2" && "$command" run program 2>&1) || true
    expect_part 'a name in this folder is told' 'write ./program' "$output"
    for program in "$2/nothing" "$2" "$2/installed_program.c" "$2/script"; do
        expect_status "run $program" 2 "$command" run "$program"
    done
    expect_status 'run without a program' 2 "$command" run
    output=$("$command" run --fast "$2/program" 2>&1) || true
    expect_part 'an unknown option is told' '--fast is no option of trl20 run' "$output"
    expect_status 'an unknown command' 2 "$command" frobnicate
    output=$("$command" doctor "$2/program" 2>&1) || true
    expect_part 'an argument that is not read is told' 'doctor takes no arguments' "$output"
}

check_explain() { # PREFIX FOLDER
    local output status=0
    mkdir -p "$2/work"
    output=$(cd "$2/work" && "$1/bin/trl20" explain ../program 7) || status=$?
    expect 'explain exits as the program does' 7 $status
    expect_part 'the program runs under explain' 'inside: 255 0 51' "$output"
    expect 'the summary is printed' "$(cat "$2/work/trl20-explain/program/summary.txt")" \
        "$(sed '1,/^library path/d' <<<"$output")"
    expect 'the program is explained in a file' 1 "$(grep -lE 'gl_Position' -r "$2/work/trl20-explain" | wc -l)"

    mkdir -p "$2/work/below"
    printf '#!/bin/sh\ncd below\nexec ../../program\n' >"$2/work/start"
    chmod +x "$2/work/start"
    output=$(cd "$2/work" && TRL20_EXPLAIN=here "$1/bin/trl20" explain --force ./start 2>&1) || true
    expect_part 'a program that changes its folder is explained' "the programs' texts are in here" "$output"
    output=$(TRL20_EXPLAIN=$2/program "$1/bin/trl20" explain "$2/program" 2>&1) || true
    expect_part 'a folder that cannot be made is told' "explain cannot write to $2/program" "$output"
    output=$(cd "$2/work" && "$1/bin/trl20" explain --force true 2>&1) || true
    expect_part 'a program without a context is told' 'nothing was explained: true did not get as far' "$output"
    expect_status 'and leaves no folder' 1 test -e "$2/work/trl20-explain/true"
}

check_other_commands() { # PREFIX VERSION
    expect 'trl20 version' "trl20 $2" "$("$1/bin/trl20" version)"
    expect_part 'trl20 help' 'run PROGRAM ARGS' "$("$1/bin/trl20" help)"
    expect_status 'trl20 doctor' 0 "$1/bin/trl20" doctor
    expect 'the manual page has no mistakes' '' "$(command -v man >/dev/null && man --warnings -l "$1/share/man/man1/trl20.1.gz" 2>&1 >/dev/null)"
}

# The manual page's last example: the vendor entry points, and a program that needs no trl20 run.
check_linked_by_path() { # PREFIX LIB FOLDER
    local folder output
    folder=$(pkg-config --variable=library_folder trl20)
    "${CC:-cc}" -DGL_GLEXT_PROTOTYPES "$3/installed_program.c" -o "$3/linked" "$folder/libGLESv1_CM_trl20.so" \
        "-Wl,-rpath,$folder" "${flags[@]}"
    output=$(env -u LD_LIBRARY_PATH "$3/linked") || true
    expect_part 'a run path finds the libraries' 'renderer: QRN' "$output"
    expect_part 'a vendor entry point is linked' 'inside: 0 102 0' "$output"
    expect_part 'a vendor entry point acts' 'outside: 255 0 51' "$output"
}

# Those who bring the libraries to a device write C or C++.
check_headers() { # FOLDER
    local language compiler
    printf '#include <%s>\n' GLES/gl.h client_api_table.h vsp.h GLES/glext_trl20.h >"$1/headers.c"
    for language in "${CC:-cc} -std=c11 -x c" "${CXX:-c++} -std=c++11 -x c++"; do
        read -ra compiler <<<"$language"
        expect_status "the headers with $language" 0 \
            "${compiler[@]}" -Wall -Wextra -Werror -fsyntax-only "${flags[@]}" "$1/headers.c"
    done
}

check_files() { # PREFIX LIB SOURCE
    local file
    for file in libEGL.so.1 libGLESv1_CM_trl20.so libtrl20_both.so; do
        expect_part "run path of $file" '[$ORIGIN]' "$(readelf -d "$1/$2/trl20/$file" | grep RUNPATH)"
    done
    for file in libEGL.so.1 libGLESv1_CM_trl20.so libGLESv2.so libtrl20_both.so libvsp.so; do
        expect_part "soname of $file" "[$file]" "$(readelf -d "$1/$2/trl20/$file" | grep SONAME)"
        expect "$file is stripped" '' "$(readelf -S "$1/$2/trl20/$file" | grep '\.symtab')"
    done
    expect 'the names are links into the folder above' '' \
        "$(find "$1/$2/trl20/names" -type f -o -type l ! -lname '../lib*.so*')"
    expect 'libGLESv1_CM.so.1 is a link' libGLESv1_CM_trl20.so "$(readlink "$1/$2/trl20/libGLESv1_CM.so.1")"
    expect 'no file knows the source tree' '' "$(grep -rl "$3" "$1")"
}

check_installed_tree() { # PREFIX LIB SCRATCH VERSION SOURCE
    export EGL_PLATFORM=surfaceless # no display is needed
    compile_installed_program "$1" "$2" "$3"
    check_files "$1" "$2" "$5"
    check_drawing "$1" "$2" "$3"
    check_no_shadow "$3"
    check_run "$1" "$3"
    check_opening "$1" "$3"
    check_both_libraries "$1" "$2" "$3"
    check_preloading "$1" "$3"
    check_refusals "$1" "$3"
    check_explain "$1" "$3"
    check_other_commands "$1" "$4"
    check_linked_by_path "$1" "$2" "$3"
    check_headers "$3"
}
