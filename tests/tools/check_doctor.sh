#!/bin/bash
# SPDX-License-Identifier: MIT
# The doctor's verdict, exit status and advice on this machine, and with one thing after another missing.
#   check_doctor.sh DOCTOR LIBRARIES EGL_WITHOUT_SURFACELESS_PLATFORM
set -euo pipefail
doctor=$1 libraries=$2 fewer_platforms=$3
# shellcheck source=tests/support/expect.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/../support/expect.bash"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch" # no settings file
unset TRL20_DRIVER_LIMIT TRL20_DRIVER_EGL TRL20_DRIVER_GLES2 TRL20_GLES1_LIBRARY

# Sets report. The folder of the libraries is $libraries, or what "folder" says.
examine() { # STATUS [VARIABLE=VALUE...]
    local status=0
    what="with ${*:2}"
    report=$(env "${@:2}" "$doctor" "${folder:-$libraries}" 2>/dev/null) || status=$?
    expect "$what: exit status" "$1" "$status"
    expect "$what: lines beyond one screen" '' "$(sed -n '25,$p' <<<"$report")"
    # Paths are as long as they are.
    expect "$what: lines wider than the screen" '' "$(grep -v / <<<"$report" | grep -E '.{81}')"
}
says() { # PART...
    local part
    for part; do expect_part "$what: the report" "$part" "$report"; done
}
row() { # ABILITY yes|no
    expect "$what: $1" "$2" "$(sed -n "s/^  $1  *\(yes\|no\) .*/\1/p" <<<"$report")"
}

examine 0 A=machine
says 'This machine will do' 'driver  ' 'OpenGL ES 3.2' 'EGL  ' "libraries   $libraries"
row 'precise fragment colours' yes
row 'flat shading' yes
row 'soft edges of lines' yes
row 'wide lines' yes
expect 'without a limit none is told' '' "$(grep '^limited' <<<"$report")"

# A driver that can do less, as the backend will see it.
examine 0 TRL20_DRIVER_LIMIT=es2
says 'limited     to es2'
row 'flat shading' no
row 'soft edges of lines' no
row 'wide lines' no
row 'ETC1 textures' no
row 'logic operations' no
examine 0 TRL20_DRIVER_LIMIT=thin-lines
says 'limited     to thin-lines'
row 'flat shading' yes
row 'wide lines' no

examine 0 TRL20_DRIVER_LIMIT=es3
expect 'a limit that is none is not told as one' '' "$(grep '^limited' <<<"$report")"
row 'flat shading' yes
expect 'a limit that is none: standard error' \
    "trl20: TRL20_DRIVER_LIMIT is es2 or thin-lines, not 'es3'; the driver is used as it is" \
    "$(TRL20_DRIVER_LIMIT=es3 "$doctor" "$libraries" 2>&1 >/dev/null)"

# What this driver can be told to leave out.
if grep -q Mesa <<<"$report"; then
    examine 0 MESA_GLES_VERSION_OVERRIDE=2.0
    says 'OpenGL ES 2.0'
    row 'flat shading' no
    row 'soft edges of lines' no
    row 'ETC1 textures' yes
    examine 0 MESA_EXTENSION_OVERRIDE='-GL_OES_compressed_ETC1_RGB8_texture -GL_OES_EGL_image_external'
    row 'ETC1 textures' no
    row 'images of video frames' no
    row 'flat shading' yes
    examine 1 MESA_GLES_VERSION_OVERRIDE=1.0
    says 'it makes no OpenGL ES 2.0 context' 'apt-get install libegl1'
fi
examine 0 -u WAYLAND_DISPLAY -u DISPLAY
says 'no display here' 'xvfb-run'
examine 0 -u WAYLAND_DISPLAY DISPLAY=:7
says 'X11 display :7'

# A driver without the surfaceless platform, on a machine without a display.
examine 0 -u WAYLAND_DISPLAY -u DISPLAY TRL20_DRIVER_EGL="$fewer_platforms" EGL_PLATFORM=x11
says 'on the device platform'

# Drivers that are missing.
examine 1 TRL20_DRIVER_EGL=/nonexistent
says 'will not do: it has no OpenGL ES 2.0 driver' 'TRL20_DRIVER_EGL: /nonexistent: cannot open' 'Unset this'
examine 1 TRL20_DRIVER_GLES2=/nonexistent
says 'will not do: it has no OpenGL ES 2.0 driver' 'TRL20_DRIVER_GLES2: /nonexistent: cannot open' 'Unset this'
examine 1 TRL20_DRIVER_GLES2="$libraries/libGLESv2.so"
says 'will not do' "TRL20_DRIVER_GLES2 names $libraries/libGLESv2.so" 'Unset this'
examine 1 TRL20_DRIVER_EGL=libm.so.6
says 'will not do' 'TRL20_DRIVER_EGL names libm.so.6'
examine 1 __EGL_VENDOR_LIBRARY_FILENAMES=/nonexistent
says 'EGL is there, but no driver behind it starts' 'apt-get install libegl1 libgles2 libgl1-mesa-dri'

# Libraries of ours that are missing, or told not to draw.
mkdir "$scratch/empty"
folder=$scratch/empty examine 1 A=empty
says 'drawing through trl20 failed' 'libEGL.so.1: cannot open' 'Install or build trl20 again'
for library in libGLESv1_CM_trl20.so libGLESv2.so libvsp.so; do
    mkdir "$scratch/without"
    cp -d "$libraries"/*.so* "$scratch/without"
    rm "$scratch/without/$library"
    folder=$scratch/without examine 1 A="no $library"
    says 'drawing through trl20 failed'
    rm -r "$scratch/without"
done
echo 'performance es11ifd' >orvala_panel.txt
examine 1 A=settings
says 'a triangle was drawn in a wrong colour, or not at all' 'orvala_panel.txt in this folder'
rm orvala_panel.txt

expect_status 'without a folder' 2 "$doctor"
expect_part 'the line above benchmarks' 'driver: ' "$("$doctor" --brief)"
expect_status 'the line above benchmarks without a driver' 1 env TRL20_DRIVER_EGL=/nonexistent "$doctor" --brief
exit $((failures > 0))
