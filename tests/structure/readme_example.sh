#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: readme_example.sh SOURCE_DIR
#
# The C++ example in the README is docs/example.cpp, which the installed package's test compiles and
# runs; so what newcomers copy works.
set -eu
cd "$1"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# shellcheck disable=SC2016  # the backticks are README.md's own
sed -n '/^```cpp$/,/^```$/p' README.md | sed '/^```/d' >"$work/readme"
sed '/^\/\/ SPDX/d' docs/example.cpp >"$work/example"
diff "$work/readme" "$work/example"
