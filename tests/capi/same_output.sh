#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: same_output.sh CMYK_PROFILE RGB_PROFILE REFERENCE PROGRAM [ARGUMENT...]
#
# PROGRAM prints the inks that REFERENCE prints, and the same sentence where it fails: over a file
# that is no profile, and over an RGB profile where inks are wanted. Both are started by $LAUNCHER
# where that is set.
set -eu
cmyk=$1
rgb=$2
reference=$3
shift 3

run() { # run COMMAND...: what it prints and its exit code
    code=0
    ${LAUNCHER:-} "$@" 2>&1 || code=$?
    echo "exit code $code"
}

check() { # check CODE TEXT PROFILE PROGRAM...: CODE is the reference's, TEXT is in what it prints
    wanted=$1
    text=$2
    profile=$3
    shift 3
    expected=$(run "$reference" "$profile")
    printed=$(run "$@" "$profile")
    case $expected in
        *"$text"*"exit code $wanted") ;;
        *) echo "$reference: $expected" && return 1 ;;
    esac
    [ "$printed" = "$expected" ] || {
        printf '%s\nprinted: %s\nand not: %s\n' "$*" "$printed" "$expected"
        return 1
    }
}

check 0 '0 0 0 0' "$cmyk" "$@"  # paper stays white
check 1 "there is no 'acsp'" "$0" "$@"
check 1 'the conversion takes 3 and gives 3' "$rgb" "$@"
