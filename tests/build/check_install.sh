#!/bin/bash
# SPDX-License-Identifier: MIT
# Installs the build below a prefix, uses it as a stranger would, and uninstalls it.
#   check_install.sh BUILD SOURCE LIB VERSION
set -euo pipefail
build=$1 source=$2 lib=$3 version=$4
# shellcheck source=tests/build/installed_tree.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/installed_tree.bash"
record=$build/installed.txt

scratch=$(mktemp -d)
[ ! -e "$record" ] || mv "$record" "$scratch/record" # what the user has installed stays known
tidy_up() {
    rm -f "$record"
    [ ! -e "$scratch/record" ] || mv "$scratch/record" "$record"
    rm -rf "$scratch"
}
trap tidy_up EXIT
install_into() { cmake --install "$build" --prefix "$1" --strip >>"$scratch/log"; } # PREFIX
uninstall() { cmake --build "$build" --target uninstall >>"$scratch/log"; }

# A user's prefix, which has something already.
prefix=$scratch/home/.local
mkdir -p "$prefix/share/man"
list_tree "$scratch/home" >"$scratch/before"
install_into "$prefix"
expect 'the installed files' "$(expected_files "$lib")" "$(list_tree "$prefix")"
check_installed_tree "$prefix" "$lib" "$scratch/elsewhere" "$version" "$source"

mv "$prefix" "$scratch/moved tree"
output=$("$scratch/moved tree/bin/trl20" run "$scratch/elsewhere/program") || true
expect_part 'a tree that was moved works' "library path: $scratch/moved tree/$lib/trl20" "$output"
mv "$scratch/moved tree" "$prefix"

install_into "$prefix"
uninstall
expect 'uninstalling leaves what was there before' "$(cat "$scratch/before")" "$(list_tree "$scratch/home")"
expect_status 'uninstalling once more' 0 uninstall

# Folders that someone else uses by now stay.
install_into "$prefix"
touch "$prefix/bin/another"
uninstall
expect 'uninstalling keeps what others put there' $'bin/another\nshare/man/' "$(list_tree "$prefix")"

# The way of those who make packages.
export DESTDIR=$scratch/staging
install_into /usr
expect 'the files below DESTDIR' "$(expected_files "$lib")" "$(list_tree "$DESTDIR/usr")"
output=$("$DESTDIR/usr/bin/trl20" run "$scratch/elsewhere/program") || true
expect_part 'a staged tree works' 'renderer: QRN N614' "$output"
unset DESTDIR
uninstall
expect_status 'uninstalling removes the staged tree' 1 test -e "$scratch/staging"

exit $((failures > 0))
