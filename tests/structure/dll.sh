#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: dll.sh OBJDUMP DLL [no-kernels]
#
# The DLL loads on a bare Windows, so it imports from Windows' own DLLs alone, and its only resource
# is its manifest (type 24, number 2). Its stacks are aligned to 16 bytes, so no 32-byte register
# moves by an instruction that asks for more.
set -eu
export LC_ALL=C
objdump=$1
dll=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

"$objdump" -p "$dll" >"$work/dump"

sed -n 's/^[[:space:]]*DLL Name: //p' "$work/dump" | sort -u >"$work/imports"
[ -s "$work/imports" ] || { echo "no imports found in $dll"; status=1; }
if grep -vixE '(kernel32|user32|msvcrt)\.dll' "$work/imports" >"$work/foreign"; then
    sed 's/^/imports from a DLL that may be missing: /' "$work/foreign"
    status=1
fi

# Levels of the resource tree (type, then number) differ in their indentation.
awk '/The \.rsrc Resource Directory/ { inside = 1 }
     inside && /^[0-9a-f]+   Entry:/ { type = $0 }
     inside && /^[0-9a-f]+     Entry:/ { print type, $0 }' "$work/dump" |
    sed -E 's/^[^:]*: ([^,]*),[^:]*:.*Entry: ([^,]*),.*/\1 \2/' >"$work/tree"
grep -xE 'ID: 0x0*18 ID: 0x0*2' "$work/tree" >/dev/null || { echo 'no manifest'; status=1; }
if grep -vxE 'ID: 0x0*18 ID: 0x0*2' "$work/tree" >"$work/others"; then
    sed 's/^/resource beside the manifest, type and number: /' "$work/others"
    status=1
fi

"$objdump" -d --no-show-raw-insn "$dll" | grep '%ymm' >"$work/wide" || true
[ -s "$work/wide" ] || [ "${3-}" = no-kernels ] || { echo 'no AVX2 kernels'; status=1; }
if grep -E 'vmov(dqa|aps|apd|ntdq|ntps).*\(' "$work/wide" >"$work/aligned"; then
    sed 's/^/move that asks for 32-byte alignment: /' "$work/aligned" | head
    status=1
fi
exit "$status"
