#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: explained_members.sh PAGE PROGRAM [ARGUMENT...]
#
# PROGRAM ends its output with what explain() answers; PAGE tells about every member of it. The program
# is started by $LAUNCHER where that is set.
set -eu
page=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

${LAUNCHER:-} "$@" | tr -d '\r' >"$work/output"
sed -n 's/^ *"\([A-Za-z0-9]*\)":.*/\1/p' "$work/output" | sort -u >"$work/members"
grep -qx plan "$work/members" || { echo "no JSON in the output of $1"; status=1; }
while read -r member; do
    grep -qF "\`$member\`" "$page" || { echo "$page doesn't tell what '$member' is"; status=1; }
done <"$work/members"
exit "$status"
