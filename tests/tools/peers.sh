#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
#
# Usage: peers.sh LUMOXA SRGB_PROFILE OTHER_RGB_PROFILE CMYK_PROFILE
#
# Other colour software opens what the tool writes, reads the same texts and curves, and converts
# through its device links to the same values within one step of 255: Little CMS' transicc, and
# iccdump, icclu and xicclu of Argyll, run as programs. What is not installed is left out; with none
# of them the test is skipped (exit code 77).
set -eu
export LC_ALL=C
lumoxa=$1
srgb=$2
other_rgb=$3
cmyk=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0

has() { command -v "$1" >/dev/null; }
has transicc || has iccdump || has icclu || exit 77

fail() {
    echo "$*" >&2
    status=1
}

# Each line of numbers in one file lies within LIMIT of the same line of the other.
close() { # close WHAT LIMIT OURS THEIRS
    [ -s "$3" ] || fail "$1: no values"
    paste -d ' ' "$3" "$4" | awk -v limit="$2" -v what="$1" '
        NF == 0 || NF % 2 != 0 { print what ": line " NR " is not whole: " $0; bad = 1 }
        { for (i = 1; i <= NF / 2; ++i) {
            d = $i - $(i + NF / 2)
            if (d > limit || d < -limit) { ++far; if (far <= 5) print what ": " $0; break }
        } }
        END { if (far > 5) print what ": " far " of " NR " colours"; exit bad || far > 0 }' >&2 || status=1
}

# Colours of N channels, 8 bits: every corner and a coarse grid.
colours() { # colours N
    awk -v n="$1" 'BEGIN {
        for (i = 0; i < 5 ^ n; ++i) {
            rest = i; line = ""
            for (c = 0; c < n; ++c) { line = line (c ? "," : "") int(rest % 5 * 63.75); rest = int(rest / 5) }
            print line
        }
    }'
}

check_link() { # check_link NAME CHANNELS LINK_ARGUMENT...
    name=$1
    channels=$2
    shift 2
    link=$work/$name.icc
    "$lumoxa" link "$@" -o "$link" -q
    colours "$channels" >"$work/colours"
    "$lumoxa" values --link "$link" <"$work/colours" | tr ',' ' ' >"$work/ours"
    tr ',' ' ' <"$work/colours" >"$work/spaced"
    if has transicc; then
        # It takes inks in percent, whatever it prints.
        awk -v scale="$([ "$channels" -eq 4 ] && echo 2.55 || echo 1)" \
            '{ for (i = 1; i <= NF; ++i) $i /= scale; print }' OFMT='%.9g' CONVFMT='%.9g' \
            "$work/spaced" >"$work/scaled"
        transicc -n -e "-l$link" <"$work/scaled" 2>"$work/complaints" |
            sed 's/[^0-9.e -]//g' | grep '[0-9]' >"$work/theirs" || fail "$name: transicc fails"
        close "$name, transicc" 1 "$work/ours" "$work/theirs"
    fi
    if has icclu; then
        icclu -ff -s255 "$link" <"$work/spaced" | sed -n 's/.*-> *\([^[]*\)\[.*/\1/p' >"$work/theirs" ||
            fail "$name: icclu fails"
        close "$name, icclu" 1 "$work/ours" "$work/theirs"
    fi
    check_text "$link" "link $name"
}

check_text() { # check_text PROFILE TEXT: Argyll reads it as the description
    has iccdump || return 0
    iccdump -v2 -t desc "$1" >"$work/dump" 2>&1 || fail "$1: iccdump: $(cat "$work/dump")"
    grep -qF ": $2" "$work/dump" || fail "$1: iccdump reads another description"
    iccdump -v3 "$1" >"$work/dump" 2>&1 || fail "$1: iccdump: $(tail -n 3 "$work/dump")"
    if grep -iE 'error|warning|corrupt' "$work/dump" >&2; then fail "$1: iccdump complains"; fi
}

check_display() {
    display=$work/display.icc
    "$lumoxa" make-display --primaries 0.64,0.33,0.30,0.60,0.15,0.06 --white 0.3127,0.3290 \
        --trc gamma:2.19921875 --description 'A display' -o "$display" -q
    "$lumoxa" edit "$display" -o "$display" --description 'An edited display' --copyright 'Nobody' -q
    check_text "$display" 'An edited display'
    # D50 white, its half by the gamma, and the red of these primaries seen under D50.
    printf '%s\n' '96.42 100 82.49' '21.172 21.958 18.113' '43.604 22.249 1.392' >"$work/expected"
    printf '%s\n' '255 255 255' '128 128 128' '255 0 0' >"$work/spaced"
    if has transicc; then
        transicc -n "-i$display" '-o*XYZ' -t1 <"$work/spaced" 2>/dev/null | grep '[0-9]' >"$work/theirs"
        close 'display, transicc' 0.02 "$work/expected" "$work/theirs"
    fi
    if has xicclu; then
        xicclu -ff -s255 -px "$display" <"$work/spaced" | sed -n 's/.*-> *\([^[]*\)\[.*/\1/p' |
            awk '{ print $1 * 100, $2 * 100, $3 * 100 }' >"$work/theirs"
        close 'display, xicclu' 0.02 "$work/expected" "$work/theirs"
    fi
}

check_link press 3 "$srgb" "$cmyk" --description 'link press'
check_link press8 3 "$srgb" "$cmyk" --lut8 --description 'link press8'
check_link proof 3 "$srgb" "$cmyk" "$other_rgb" --intent perceptual --description 'link proof'
check_link preview 4 "$cmyk" "$srgb" --description 'link preview'
check_link rgb 3 "$srgb" "$other_rgb" --description 'link rgb'
check_display
exit "$status"
