#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: exports.sh [--update] LIBRARY HEADER_DIR NM [NM_OPTION...]
#
# The library exports each function that the public headers declare, in all its overloads, and
# nothing else: those listed, with their types, in exports.txt, the same on every platform. With
# --update, that list is written anew from the library. It writes no messages and ends no process: the
# program that loads it has its own ways for both. For a DLL, give its import library.
set -eu
export LC_ALL=C
list=$(dirname "$0")/exports.txt
update=
if [ "$1" = --update ]; then
    update=yes
    shift
fi
library=$1
headers=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

# Names of declared functions, once an overload: the word before the bracket after LUMOXA_API (or
# another word that ends so).
cat "$headers"/*.h | sed -e 's|//.*||' -e '/^ *#/d' | tr '\n' ' ' |
    sed -E 's#/[*]([^*]|[*]+[^*/])*[*]+/##g' |
    grep -oE '\b[A-Z]+_API [^(;]*\(' | sed -E 's/.*[ *]([A-Za-z_0-9]+) *\($/\1/' |
    sort >"$work/declared"

# What a DLL exports, functions or data, has an import slot (__imp_...) in its import library.
"$@" --defined-only "$library" | sed -nE 's/^[0-9a-f]* [A-Za-z] //p' >"$work/symbols"
if grep -q '^__imp_' "$work/symbols"; then
    sed -n 's/^__imp_//p' "$work/symbols" >"$work/mangled"
else
    mv "$work/symbols" "$work/mangled"
fi
# Two types are other ones elsewhere: that of 64 bits, and the structure behind FILE.
c++filt <"$work/mangled" |
    sed -E 's/long long/long/g; s/unsigned long/size_t/g; s/\b(_IO_FILE|_iobuf)\b/FILE/g' |
    sort >"$work/signatures"
sed -E 's/\(.*//' "$work/signatures" | sort >"$work/exported"

[ -s "$work/declared" ] || { echo "no declarations found in $headers"; status=1; }
if ! diff "$work/declared" "$work/exported" >"$work/difference"; then
    sed -n -e 's/^< /declared but not exported: /p' -e 's/^> /exported but not declared: /p' \
        "$work/difference"
    status=1
fi
if [ -n "$update" ]; then
    cp "$work/signatures" "$list"
elif ! diff "$list" "$work/signatures" >"$work/difference"; then
    sed -n -e 's/^< /listed but not exported: /p' -e 's/^> /exported but not listed: /p' \
        "$work/difference"
    echo "If that is wanted, write the list anew: sh $0 --update $library $headers $*"
    status=1
fi

# Undefined symbols that print or end the process. Formatting into memory (snprintf) is fine. One
# line goes to the standard error stream, for which stderr and the functions that fputs becomes
# (fputs, fwrite) have to be let through: an inversion of a tone curve that finds no result says so.
# No other file may name stderr.
"$@" --undefined-only "$library" | sed -E 's/^ *[A-Za-z] //; s/@.*//' >"$work/imported"
if grep -xE '_?(v?f?printf|__v?f?printf_chk|puts|f?putc|putchar|perror|stdout|syslog|abort|_?exit|quick_exit|__assert_fail|_ZSt4(cout|cerr|clog))' \
    "$work/imported" >"$work/talk"; then
    sed 's/^/prints or ends the process: /' "$work/talk"
    status=1
fi
# Functions whose last bits differ between C libraries; base/power.h has the same bits everywhere.
if grep -xE '(__)?(pow|cbrt|exp|exp2|expm1|log|log2|log10|log1p|sin|cos|tan|atan2?|hypot)[fl]?(_finite)?' \
    "$work/imported" >"$work/inexact"; then
    sed 's/^/differs between C libraries: /' "$work/inexact"
    status=1
fi
sources=$headers/../..
if grep -lE '\b(stderr|fputs)\b' "$sources"/base/* "$sources"/profile/* "$sources"/gray/* \
    "$sources"/lut/* "$sources"/xform/* "$sources"/eval/* "$sources"/combine/* \
    "$sources"/convert/* "$sources"/inspect/* "$sources"/make/* "$sources"/capi/* |
    grep -vxF "$sources/gray/inverse_lut.cpp"; then
    echo 'the files above name stderr'
    status=1
fi
exit "$status"
