#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: same_output.sh RGB_PROFILE CMYK_PROFILE REFERENCE PROGRAM [ARGUMENT...]
#
# PROGRAM prints the inks that REFERENCE prints, and fails as it does when a profile is none. Both are
# started by $LAUNCHER where that is set.
set -eu
rgb=$1
cmyk=$2
reference=$3
shift 3

run() { # run COMMAND...: what it prints and its exit code
    code=0
    ${LAUNCHER:-} "$@" 2>&1 || code=$?
    echo "exit code $code"
}

check() { # check CODE PROFILE PROGRAM...: which CODE is the reference's
    wanted=$1
    profile=$2
    shift 2
    expected=$(run "$reference" "$profile" "$cmyk")
    printed=$(run "$@" "$profile" "$cmyk")
    case $expected in
        *"exit code $wanted") ;;
        *) echo "$reference: $expected" && return 1 ;;
    esac
    [ "$printed" = "$expected" ] || {
        printf '%s\nprinted: %s\nand not: %s\n' "$*" "$printed" "$expected"
        return 1
    }
}

check 0 "$rgb" "$@"
check 1 "$0" "$@"
