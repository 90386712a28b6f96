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
profile: lumoxa profile
gray: lumoxa profile gray
lut: lumoxa profile lut
xform: lumoxa profile gray lut xform
eval: lumoxa profile gray lut xform eval
combine: lumoxa profile gray lut xform eval combine
capi: lumoxa
tools: lumoxa tools
docs: lumoxa
'

check() { # check FOLDER ALLOWED...
    folder=$1
    shift
    find "$folder" \( -name '*.h' -o -name '*.c' -o -name '*.cpp' -o -name '*.inc' \) -exec awk -v allowed="$*" '
        BEGIN { split(allowed, list); for (i in list) ok[list[i]] = 1 }
        /^[ \t]*#[ \t]*include[ \t]*[<"]/ {
            path = $0
            sub(/^[^<"]*[<"]/, "", path); sub(/[>"].*$/, "", path)
            angled = $0 ~ /include[ \t]*</
            room = path; sub(/\/.*$/, "", room)
            if (angled && room != "lumoxa") next      # the standard library, or a package
            if (path !~ /\//) reason = "names no folder"
            else if (path ~ /\.\./) reason = "climbs out of its folder"
            else if (FILENAME == "eval/fan_out.h") reason = "is used by every floor: <standard> only"
            else if (path == "eval/fan_out.h" && "profile" in ok) next   # ground level
            else if (!(room in ok)) reason = "points up"
            else next
            printf "%s:%d: \"%s\" %s\n", FILENAME, FNR, path, reason
            bad = 1
        }
        END { exit bad }' {} + || status=1
}

status=0
for floor in include profile gray lut xform eval combine capi tools docs; do
    [ -d "$floor" ] || continue
    # shellcheck disable=SC2046  # the allowed folders are separate words
    check "$floor" $(printf '%s' "$floors" | sed -n "s/^$floor: //p")
done

# A run that reads nothing proves nothing.
[ -f include/lumoxa/lumoxa.h ] || { echo "include/lumoxa/lumoxa.h is not there" >&2; exit 1; }
exit "$status"
