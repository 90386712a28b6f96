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

same() { # same PAGE LANGUAGE FILE...: the page's blocks in that language are the files
    page=$1
    sed -n "/^\`\`\`$2\$/,/^\`\`\`\$/p" "$page" | sed '/^```/d' >"$work/quoted"
    shift 2
    cat "$@" | sed '/^\/\/ SPDX/d' >"$work/example"
    diff "$work/quoted" "$work/example" || {
        echo "$page does not quote $*"
        status=1
    }
}

# Each block of the page in that language is a function of the file, with what stands above it.
parts() { # parts PAGE LANGUAGE FILE
    awk -v language="$2" '
        FNR == NR { file = file $0 "\n"; next }
        /^```/ && inside { inside = 0; blocks++; if (index(file, "\n\n" block) == 0) { bad = 1
            printf "%s, line %d: not in the example\n%s", FILENAME, FNR, block } next }
        $0 == "```" language { inside = 1; block = ""; next }
        inside { block = block $0 "\n" }
        END { exit bad || blocks == 0 }' "$3" "$1" || {
        echo "$1 does not quote $3"
        status=1
    }
}

same README.md cpp docs/example.cpp
parts docs/conversions.md cpp docs/example_conversions.cpp
same docs/windows.md c docs/example.c
same docs/windows.md csharp docs/lumoxa.cs docs/example.cs
exit "$status"
