#!/bin/bash
# SPDX-License-Identifier: MIT
# Fetches real programs from Debian's packages into a folder and builds those that come as source. Nothing is installed
# and the system's configuration stays as it is. What is there already is kept; what cannot be had leaves a file
# NAME.missing with the reason, and the tests that need it are skipped.
#   set_up.sh FOLDER C_COMPILER
set -uo pipefail
here=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")" && pwd)
mkdir -p "$1"
folder=$(cd -- "$1" && pwd) compiler=$2
skipped=77

# apt with package lists of its own. A network that does not answer is given up soon.
options=(-qq -o APT::Sandbox::User=root -o Acquire::Retries=1 -o Acquire::http::Timeout=15 -o Acquire::https::Timeout=15)
apt_get() { # STATE_FOLDER ARGUMENTS...
    local state=$folder/apt/$1
    shift
    mkdir -p "$state/lists/partial" "$state/cache"
    timeout 120 apt-get "${options[@]}" -o Dir::State::lists="$state/lists" -o Dir::Cache="$state/cache" "$@" \
        >>"$folder/log" 2>&1
}

binary_lists() {
    [ -e "$folder/apt/binary/updated" ] && return
    apt_get binary update
    [ -n "$(ls "$folder"/apt/binary/lists/*Packages* 2>/dev/null)" ] && touch "$folder/apt/binary/updated"
}

# What a pattern names of packages is unpacked into a folder of FOLDER.
unpack() { # ROOT PATTERN PACKAGE...
    local root=$folder/$1 pattern=$2 file
    shift 2
    binary_lists || return 1
    rm -rf "$folder/debs"
    mkdir -p "$folder/debs" "$root"
    (cd "$folder/debs" && apt_get binary download "$@") || return 1
    for file in "$folder"/debs/*.deb; do
        # A package may have nothing of that name.
        dpkg-deb --fsys-tarfile "$file" | tar -x -C "$root" --wildcards "$pattern" 2>>"$folder/log"
    done
    rm -r "$folder/debs"
}

# A package with all that it needs and this machine lacks, unpacked into a folder of FOLDER.
unpack_with_needs() { # ROOT PACKAGE
    local root=$folder/$1 file
    binary_lists || return 1
    rm -f "$folder"/apt/binary/cache/archives/*.deb
    apt_get binary -y --no-install-recommends --download-only -o Debug::NoLocking=yes install "$2" || return 1
    mkdir -p "$root"
    for file in "$folder"/apt/binary/cache/archives/*.deb; do
        if [ -e "$file" ]; then dpkg-deb -x "$file" "$root"; fi
    done
    rm -f "$folder"/apt/binary/cache/archives/*.deb
}

# A source package of this machine's suite, or else of a later one. Its upstream part is enough: Debian's own changes
# concern the packaging.
fetch_source() { # SOURCE_PACKAGE
    local suite archive component
    binary_lists || return 1
    read -r archive suite component < <(apt-get "${options[@]}" -o Dir::State::lists="$folder/apt/binary/lists" indextargets \
        --format '$(REPO_URI) $(CODENAME) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian')
    [ -n "${component-}" ] || return 1
    mkdir -p "$folder/source"
    for suite in "$suite" stable testing; do
        mkdir -p "$folder/apt/$suite"
        echo "deb-src $archive $suite $component" >"$folder/apt/$suite/sources.list"
        local from=(-o Dir::Etc::sourcelist="$folder/apt/$suite/sources.list" -o Dir::Etc::sourceparts=-)
        apt_get "$suite" "${from[@]}" update || continue
        (cd "$folder/source" && apt_get "$suite" "${from[@]}" source --download-only "$1")
        tar -x -C "$folder/source" -f "$(ls "$folder/source/$1"_*.orig.tar.* 2>/dev/null | grep -v '\.asc$' | tail -n 1)" \
            2>/dev/null && return
    done
    return 1
}

build() { # COMPILER_ARGUMENTS...
    "$compiler" -O1 -w "$@" 2>>"$folder/log"
}

# --- what is set up ---------------------------------------------------------------------------------------------------

# The OpenGL ES 1.1 programs of mesa-demos, and two of desktop GL over EGL.
set_up_mesa_demos() {
    local source program eglut
    [ -d "$(echo "$folder"/source/mesa-demos-*/src)" ] || fetch_source mesa-demos ||
        { echo "Debian's source package mesa-demos cannot be had"; return 1; }
    source=$(echo "$folder"/source/mesa-demos-*/src/egl)
    eglut=("$source"/eglut/eglut.c "$source"/eglut/eglut_x11.c)
    mkdir -p "$folder/bin"
    for program in bindtex clear drawtex es1_info gears msaa pbuffer render_tex texture_from_pixmap torus tri two_win; do
        build -I"$source/eglut" "$source/opengles1/$program.c" "${eglut[@]}" -o "$folder/bin/$program" \
            -lEGL -lGLESv1_CM -lX11 -lm || { echo "mesa-demos' $program cannot be built"; return 1; }
    done
    for program in eglgears egltri; do
        build -I"$source/eglut" -I"$source/../util" "$source/opengl/$program.c" "${eglut[@]}" -o "$folder/bin/$program" \
            -lEGL -lGL -lX11 -lm || { echo "mesa-demos' $program cannot be built"; return 1; }
    done
}

set_up_mesa_utils() {
    unpack root './usr/bin/*' mesa-utils-bin || { echo "Debian's package mesa-utils-bin cannot be had"; return 1; }
}

set_up_waffle() {
    unpack root './usr/*' libwaffle-1-0 waffle-utils || { echo "Debian's packages of waffle cannot be had"; return 1; }
}

# It opens its windows through waffle.
set_up_piglit() {
    [ -e "$folder/waffle.ready" ] || { echo "waffle is missing"; return 1; }
    unpack root './usr/lib/*/piglit/[bl]i[nb]/*' piglit || { echo "Debian's package piglit cannot be had"; return 1; }
}

set_up_glfw() {
    local multiarch
    unpack root './usr/*' libglfw3 libglfw3-dev ||
        { echo "Debian's packages of GLFW cannot be had"; return 1; }
    multiarch=$(dirname "$(ls "$folder"/root/usr/lib/*/libglfw.so.3)")
    mkdir -p "$folder/bin"
    build -I"$folder/root/usr/include" "$here/glfw_es1.c" -o "$folder/bin/glfw_es1" \
        -L"$multiarch" -lglfw -lGLESv1_CM -lm || { echo "the GLFW program cannot be built"; return 1; }
}

set_up_sdl() {
    local library
    unpack_with_needs sdl libsdl2-2.0-0 && unpack sdl './usr/include/*' libsdl2-dev ||
        { echo "Debian's packages of SDL cannot be had"; return 1; }
    library=$(ls "$folder"/sdl/usr/lib/*/libSDL2-2.0.so.0 /usr/lib/*/libSDL2-2.0.so.0 2>/dev/null | head -n 1)
    mkdir -p "$folder/bin"
    # What SDL needs is beside it, and the linker has not to look for it.
    build -I"$folder/sdl/usr/include" -I"$(echo "$folder"/sdl/usr/include/*-linux-gnu*)" "$here/sdl_es1.c" \
        -o "$folder/bin/sdl_es1" "$library" -Wl,--allow-shlib-undefined ||
        { echo "the SDL program cannot be built"; return 1; }
}

# A Wayland compositor with what it needs for running without a screen, and GLFW for it.
set_up_wayland() {
    unpack wayland './usr/*' weston libweston-10-0 libevdev2 libinput10 libmtdev1 libgudev-1.0-0 libwacom9 \
        libwayland-cursor0 libwayland-egl1 libglfw3-wayland || { echo "Debian's package weston cannot be had"; return 1; }
}

command -v apt-get >/dev/null && command -v dpkg-deb >/dev/null ||
    { echo "skipped: this is no Debian system"; exit $skipped; }
status=0
: >"$folder/log"
for name in mesa_demos mesa_utils waffle piglit glfw sdl wayland; do
    # A change of this script or of a program of ours sets up anew.
    [ "$folder/$name.ready" -nt "${BASH_SOURCE[0]}" ] && [ "$folder/$name.ready" -nt "$here/glfw_es1.c" ] &&
        [ "$folder/$name.ready" -nt "$here/sdl_es1.c" ] && continue
    rm -f "$folder/$name.ready"
    if set_up_$name >"$folder/$name.missing"; then
        mv "$folder/$name.missing" "$folder/$name.ready"
        echo "$name: set up"
    else
        echo "skipped: $(cat "$folder/$name.missing") (see $folder/log)"
        status=$skipped
    fi
done
exit $status
