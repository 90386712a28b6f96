#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: wine.sh start|stop
#
# Starts Wine in the prefix WINEPREFIX, made where there is none, for programs run one after the
# other; stops it.
set -eu
[ -n "${WINEPREFIX:-}" ] || {
    echo "set WINEPREFIX: the user's own Wine is left alone" >&2
    exit 2
}
mkdir -p "$WINEPREFIX"

case $1 in
    start)
        # A server that still runs would refuse a second. The new one outlives what starts it by half
        # a minute, so it writes to a file: a pipe would be waited for.
        wineserver -k || true
        {
            wineserver -p30
            wine wineboot --init
        } </dev/null >"$WINEPREFIX/start.log" 2>&1 || {
            cat "$WINEPREFIX/start.log" >&2
            exit 1
        }
        ;;
    stop) wineserver -k ;;
esac
