#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: prints.sh EXPECTED PROGRAM [ARGUMENT...]
#
# PROGRAM, started by $LAUNCHER where that is set, prints the file EXPECTED.
set -eu
expected=$1
shift
printed=$(${LAUNCHER:-} "$@" | tr -d '\r')
[ "$printed" = "$(cat "$expected")" ] || {
    printf '%s\nprinted:\n%s\nand not what is in %s\n' "$*" "$printed" "$expected"
    exit 1
}
