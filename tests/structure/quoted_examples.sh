#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: quoted_examples.sh SOURCE_DIR
#
# The examples that pages quote are the files of docs/ that tests compile and run; so what newcomers
# copy works.
set -eu
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

same() { # same PAGE LANGUAGE FILE: the page's one block in that language is the file
    sed -n "/^\`\`\`$2\$/,/^\`\`\`\$/p" "$1" | sed '/^```/d' >"$work/quoted"
    sed '/^\/\/ SPDX/d' "$3" >"$work/example"
    diff "$work/quoted" "$work/example" || {
        echo "$1 does not quote $3"
        status=1
    }
}

same README.md cpp docs/example.cpp
same docs/windows.md c docs/example.c
same docs/windows.md csharp docs/example.cs
exit "$status"
