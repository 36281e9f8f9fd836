#!/bin/bash
# quillmere-measure finds each change of a beacon where it was made: 0.1 s after the frame it is asked to look from.
# TEST.sh PROGRAMS
set -eu
export LC_ALL=C
programs=$1
work=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-measure.XXXXXX")
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# recorded NAME FILTER: two seconds and more of the beacon at half gain, as a recording.
recorded() {
    ffmpeg -v error -i "$work/beacon.wav" -af "volume=0.5,$2" -f f32le "$work/$1.raw"
}

# expect_change KIND BEFORE AFTER WITHIN: two seconds of one recording and then the other; WITHIN is in milliseconds.
expect_change() {
    local line
    { head -c $((88200 * 8)) "$work/$2.raw" && head -c $((88200 * 8)) "$work/$3.raw"; } >"$work/joined.raw"
    line=$("$programs/quillmere-measure" change "$work/joined.raw" "$1" $((88200 - 4410)))
    echo "$1 from $2 to $3: $line"
    awk -v off="$4" '$2 < 100 - off || $2 > 100 + off { exit 1 }' <<<"$line" || fail "$1 from $2 to $3: $line"
}

expect_none() { # KIND RECORDING
    ! "$programs/quillmere-measure" change "$work/$2.raw" "$1" $((88200 - 4410)) >/dev/null 2>&1 ||
        fail "$1 is found where nothing changes"
}

"$programs/quillmere-measure" make-beacon "$work/beacon.wav" 6
recorded normal anull
recorded later "atrim=start_sample=132300" # three seconds, so half a turn away
recorded backward "atrim=end=3,areverse"
recorded higher "asetrate=46722,aresample=44100"
recorded slow "asetrate=33075,aresample=44100"
recorded slower "asetrate=30870,aresample=44100"
head -c 1600000 /dev/zero >"$work/nothing.raw"

expect_change quieter normal nothing 0.1
expect_change louder nothing normal 0.1
expect_change jump normal later 2
expect_change turn normal backward 2
expect_change turn normal higher 2
expect_change speed slow slower 2 # two seconds of either are whole swells
for kind in quieter jump turn speed; do
    expect_none "$kind" normal
done
