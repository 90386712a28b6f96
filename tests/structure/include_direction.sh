#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: include_direction.sh SOURCE_DIR
#
# The folders are floors: a file includes from its own folder and from those below it, never from
# one above, so that each floor can be read and tested without the next. Fails on any other include
# and on a project include that does not name its folder.
set -eu
cd "$1"

# folder: where it may include from; public headers are named lumoxa/...
floors='
include: lumoxa
base: lumoxa base
profile: lumoxa base profile
gray: lumoxa base profile gray
lut: lumoxa base profile lut
xform: lumoxa base profile gray lut xform
eval: lumoxa base profile gray lut xform eval
combine: lumoxa base profile gray lut xform eval combine
convert: lumoxa base profile gray lut xform eval combine convert
inspect: lumoxa base profile gray lut xform eval combine convert inspect
make: lumoxa base profile gray lut xform eval combine convert make
capi: lumoxa base profile gray lut xform eval combine convert inspect make capi
tools: lumoxa tools
docs: lumoxa
'

check() { # check FOLDER ALLOWED...
    folder=$1
    shift
    find "$folder" \( -name '*.h' -o -name '*.hpp' -o -name '*.c' -o -name '*.cpp' -o -name '*.inc' \) -exec awk -v allowed="$*" '
        BEGIN { split(allowed, list); for (i in list) ok[list[i]] = 1 }
        /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
            path = $0
            sub(/^[^<"]*[<"]/, "", path); sub(/[>"].*$/, "", path)
            angled = $0 ~ /include[ \t]*</
            room = path; sub(/\/.*$/, "", room)
            if (angled && room != "lumoxa") next      # the standard library, or a package
            if (path !~ /\//) reason = "names no folder"
            else if (path ~ /\.\./) reason = "climbs out of its folder"
            else if (!(room in ok)) reason = "points up"
            else if (FILENAME ~ /(_kernels_body|base\/lanes[a-z0-9_]*)\.h$/ &&
                     path !~ /^base\/lanes|_kernels\.h$/)
                reason = "may hold inline functions, compiled for processors of another kind here"
            else next
            printf "%s:%d: \"%s\" %s\n", FILENAME, FNR, path, reason
            bad = 1
        }
        END { exit bad }' {} + || status=1
}

status=0
for floor in include base profile gray lut xform eval combine convert inspect make capi tools docs; do
    [ -d "$floor" ] || continue
    # shellcheck disable=SC2046  # the allowed folders are separate words
    check "$floor" $(printf '%s' "$floors" | sed -n "s/^$floor: //p")
done

# A run that reads nothing proves nothing.
[ -f include/lumoxa/lumoxa.h ] || { echo "include/lumoxa/lumoxa.h is not there" >&2; exit 1; }
exit "$status"
