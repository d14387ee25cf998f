# SPDX-License-Identifier: MIT
# Expectations of shell tests. Each tells what it found instead and counts it; a test ends with: exit $((failures > 0))

failures=0
# shellcheck disable=SC2034 # for the scripts that source this
skipped=77 # tells ctest that the test could not run

expect() { # WHAT EXPECTED ACTUAL
    [ "$2" = "$3" ] && return
    printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}
expect_part() { # WHAT PART ACTUAL
    [[ $3 == *"$2"* ]] && return
    printf '%s\n  expected part: %s\n  actual:        %s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
}
expect_status() { # WHAT STATUS COMMAND...
    local status=0
    "${@:3}" >/dev/null 2>&1 || status=$?
    expect "$1" "$2" "$status"
}
