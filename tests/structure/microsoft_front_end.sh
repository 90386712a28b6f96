#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: microsoft_front_end.sh SOURCE_DIR
#
# What can be told, without Microsoft's compiler, of what it would say to the library at /W4: Clang
# reads the sources in its Microsoft mode, as code for 64-bit Windows, and warns of what is alike. The
# standard library's headers are MinGW-w64's, so what only Microsoft's headers do isn't seen.
set -eu
cd "$1"
gcc=x86_64-w64-mingw32-g++-posix
status=0

library=
for folder in include base profile gray lut xform eval combine convert inspect make capi; do
    [ ! -d "$folder" ] || library="$library $folder"
done

# Names with two underscores belong to compilers: attributes, builtins, types and macros of one of
# them. Only the platform header and what reaches a processor's own instructions may name them. (Operators that are words, and other extensions, are
# Clang's to find.)
# shellcheck disable=SC2086  # a list of folders
if grep -rnE '(^|[^A-Za-z0-9_"])__[A-Za-z]|# *pragma +(GCC|clang)|\[\[[a-z]+::' $library |
    grep -vE '^(include/lumoxa/export\.h|base/lanes_[a-z0-9]+\.h|base/instruction_set\.cpp):|\b__cplusplus\b'; then
    echo 'the lines above belong into include/lumoxa/export.h, or are for one compiler only'
    status=1
fi

# -fgnuc-version, -U_MSC_VER, -D__STRICT_ANSI__: for MinGW's headers, which know GNU's compilers only.
microsoft='--target=x86_64-w64-windows-gnu -fsyntax-only -fms-extensions -fms-compatibility
    -fms-compatibility-version=19.29 -fgnuc-version=12.2 -U_MSC_VER -D__STRICT_ANSI__
    -fno-operator-names'
# Conversions, shadowed and unused names, unreachable code; then what isn't C++ at all.
warnings='-Werror -Wall -Wextra -Wconversion -Wsign-conversion -Wshorten-64-to-32 -Wshadow-all
    -Wunused -Wunused-macros -Wunreachable-code-aggressive -Wcovered-switch-default
    -Wpedantic -Wgnu -Wmicrosoft -Wreserved-identifier -Wextra-semi -Wnonportable-include-path
    -Wnonportable-system-include-path'
headers="-nostdlibinc -isystem $($gcc -print-file-name=include/c++)
    -isystem $($gcc -print-file-name=include/c++/x86_64-w64-mingw32)
    -isystem /usr/x86_64-w64-mingw32/include -I. -Iinclude"
definitions='-DNOMINMAX -DWIN32_LEAN_AND_MEAN -DLUMOXA_BUILDING'
read_sources() { # read_sources [OPTION...]: those that stand on the input
    # shellcheck disable=SC2086  # lists of options
    xargs -0 -P "$(nproc)" -n 4 clang++ -std=c++20 $microsoft $warnings $headers $definitions \
        '-DLUMOXA_VERSION="0"' "$@"
}
# shellcheck disable=SC2086  # a list of folders
{
    find $library -name '*.cpp' ! -name '*_avx2.cpp' -print0 | read_sources || status=1
    find $library -name '*_avx2.cpp' -print0 | read_sources -mavx2 -DLUMOXA_FORM_AVX2 || status=1
    # Microsoft's compiler has no vectors of GNU's kind.
    find $library -name '*_kernels_portable.cpp' -print0 | read_sources -DLUMOXA_PLAIN_LANES || status=1
}

# Programs often have Windows' header first, with its macros. MinGW's leaves out three of Microsoft's,
# which its own standard library can't stand: what our headers use of that comes before them.
windows='#include <windows.h>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <vector>
#undef min
#undef max
#undef small
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))
#define small char'
for header in include/lumoxa/*.h include/lumoxa/*.hpp; do
    printf '%s\n#include "%s"\n' "$windows" "$header" |
        $gcc -std=c++17 -Wall -Wextra -pedantic -Werror -fsyntax-only -I. -Iinclude -x c++ - || {
        echo "$header doesn't compile after windows.h"
        status=1
    }
done

# The C interface needs none of the library's headers, so it is read for Microsoft's own target.
for language in C P; do
    clang --driver-mode=cl --target=x86_64-pc-windows-msvc /Zs /W4 /WX /T$language include/lumoxa/lmx.h \
        -Iinclude -Xclang -ffreestanding -Wno-pragma-once-outside-header || status=1
done
exit "$status"
