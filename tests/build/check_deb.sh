#!/bin/bash
# SPDX-License-Identifier: MIT
# Makes the Debian package, uses it unpacked, and installs and removes it in a root folder of its own.
#   check_deb.sh BUILD SOURCE LIB VERSION
set -euo pipefail
build=$1 source=$2 lib=$3 version=$4
# shellcheck source=tests/build/installed_tree.bash
source "$(dirname -- "${BASH_SOURCE[0]}")/installed_tree.bash"
for tool in cpack dpkg-deb dpkg-shlibdeps; do
    command -v $tool >/dev/null || { echo "no $tool here"; exit "$skipped"; }
done

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cpack -G DEB --config "$build/CPackConfig.cmake" -B "$scratch/made" >"$scratch/log" 2>&1 || { cat "$scratch/log"; exit 1; }
package=$scratch/made/trl20_$version-1_$(dpkg --print-architecture).deb
expect_status 'the package has the name that Debian gives it' 0 test -f "$package"

# Its list, its rights and its needs.
dpkg-deb -c "$package" >"$scratch/list"
expect 'the packaged files' \
    "$({ expected_files "$lib" && echo share/doc/trl20/changelog.Debian.gz; } | LC_ALL=C sort)" \
    "$(grep -v '^d' "$scratch/list" | sed 's/ -> .*//; s/.* //; s:^\./usr/::' | LC_ALL=C sort)"
expect 'everything belongs to root and may be read by everyone' '' \
    "$(grep -vE '^(drwxr-xr-x|-rwxr-xr-x|-rw-r--r--|lrwxrwxrwx) root/root ' "$scratch/list")"
needs=$(dpkg-deb -f "$package" Depends)
for need in libegl1 libgles2 'libc6 (>= '; do
    expect_part 'the needs of the package' "$need" "$needs"
done
expect 'no script runs at installation' $'control\nmd5sums' "$(dpkg-deb --ctrl-tarfile "$package" | tar -t | sed 's:^\./::; /^$/d' | sort)"

# Unpacked anywhere it works.
dpkg -x "$package" "$scratch/unpacked"
check_installed_tree "$scratch/unpacked/usr" "$lib" "$scratch/elsewhere" "$version" "$source"

# A root folder with an empty list of packages; what trl20 needs is not in it.
root=$scratch/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates"
touch "$root/var/lib/dpkg/status"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(unshare --map-root-user)
install_package() { "${as_root[@]}" dpkg --root="$root" --force-depends --log=/dev/null -i "$package" >>"$scratch/log" 2>&1; }
remove_package() { "${as_root[@]}" dpkg --root="$root" --log=/dev/null -r trl20 >>"$scratch/log" 2>&1; }
install_package || { cat "$scratch/log"; exit 1; }
output=$("$root/usr/bin/trl20" run "$scratch/elsewhere/program") || true
expect_part 'the installed package works' 'renderer: QRN N614' "$output"
remove_package || { cat "$scratch/log"; exit 1; }
expect 'removing the package leaves nothing' '' "$(list_tree "$root" | grep -v '^var/lib/dpkg/')"

exit $((failures > 0))
