#!/bin/bash
# quillmere-render from the outside: what it writes, what it refuses and with which status. TEST.sh PROGRAMS
set -eu
export LC_ALL=C
programs=$1
work=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-render.XXXXXX")
trap 'rm -rf "$work"' EXIT

render() { "$programs/quillmere-render" "$@"; }
fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# A sound whose every sample can be told from its neighbours: 16-bit stereo at 44100, two seconds.
awk 'BEGIN {
    frames = 88200; bytes = frames * 4
    printf "RIFF"; le(bytes + 36, 4); printf "WAVEfmt "; le(16, 4); le(1, 2); le(2, 2); le(44100, 4); le(176400, 4)
    le(4, 2); le(16, 2); printf "data"; le(bytes, 4)
    for (n = 0; n < frames; n++) { le(n % 30000 + 1, 2); le(65536 - (n % 29000 + 1), 2) }
}
function le(value, count) { while (count-- > 0) { printf "%c", value % 256; value = int(value / 256) } }' |
    cat >"$work/coded.wav"
[ "$(stat -c %s "$work/coded.wav")" -eq 352844 ] || fail "the test sound is malformed: awk prints characters, not bytes"

payload() { tail -c +57 "$1"; } # behind the header: RIFF 12, fmt 24, fact 12, data 8

frames_of() { # FILE: the left sample of every frame as a whole number
    payload "$1" | od -An -v -t f4 -w8 | awk '{ printf "%.0f\n", $1 * 32768 }'
}

expect_status() { # STATUS ARGUMENTS...
    local wanted=$1 status=0
    shift
    render "$@" >"$work/stdout" 2>"$work/stderr" || status=$?
    [ "$status" -eq "$wanted" ] || fail "status $status instead of $wanted: $*"
    [ "$wanted" -eq 0 ] || [ "$(wc -l <"$work/stderr")" -eq 1 ] || fail "not one line on standard error: $*"
}

expect_status 0 "$work/coded.wav" "$work/neutral.wav"
[ "$(frames_of "$work/neutral.wav" | awk '$1 != (NR - 1) % 30000 + 1' | wc -l)" -eq 0 ] || fail "neutral is not the source"
[ "$(frames_of "$work/neutral.wav" | wc -l)" -eq 88200 ] || fail "neutral has another length"

expect_status 0 --rate -1 "$work/coded.wav" "$work/reverse.wav"
frames_of "$work/neutral.wav" | tac | cmp - <(frames_of "$work/reverse.wav") || fail "backward is not the reverse"

expect_status 0 --from 12345f --to 12445f "$work/coded.wav" "$work/part.wav"
[ "$(frames_of "$work/part.wav" | head -n 1)" -eq 12346 ] || fail "a part starts elsewhere"
[ "$(frames_of "$work/part.wav" | wc -l)" -eq 100 ] || fail "a part has another length"

expect_status 0 --from 0.5 --to 1 "$work/coded.wav" "$work/seconds.wav"
[ "$(frames_of "$work/seconds.wav" | head -n 1)" -eq 22051 ] || fail "seconds are not frames times the rate"

expect_status 0 --loop 1000f:1777f --passes 100 --seam off "$work/coded.wav" "$work/loop.wav"
[ "$(frames_of "$work/loop.wav" | awk '$1 != 1001 + (NR - 1) % 777' | wc -l)" -eq 0 ] || fail "the loop jumps elsewhere"
[ "$(frames_of "$work/loop.wav" | wc -l)" -eq 77700 ] || fail "one hundred passes have another length"

expect_status 0 --rate 0.5 --stats --null "$work/coded.wav"
grep -q '"frames_out": 176400.*"sample_rate": 44100' "$work/stdout" || fail "the statistics are wrong: $(cat "$work/stdout")"

# The own stretcher, and the attacks it knows: half a second of silence, then a burst that dies away, twice.
awk 'BEGIN {
    frames = 88200; bytes = frames * 4; srand(1)
    printf "RIFF"; le(bytes + 36, 4); printf "WAVEfmt "; le(16, 4); le(1, 2); le(2, 2); le(44100, 4); le(176400, 4)
    le(4, 2); le(16, 2); printf "data"; le(bytes, 4)
    for (n = 0; n < frames; n++) {
        since = n % 44100 - 22050
        v = since < 0 ? 0 : int(20000 * exp(-since / 1000) * (rand() - 0.5))
        le(v < 0 ? v + 65536 : v, 2); le(v < 0 ? v + 65536 : v, 2)
    }
}
function le(value, count) { while (count-- > 0) { printf "%c", value % 256; value = int(value / 256) } }' |
    cat >"$work/bursts.wav"
expect_status 0 --attacks 0:2 "$work/bursts.wav"
awk '{ if ($2 != "high" || $1 < 0.498 + NR - 1 || $1 > 0.502 + NR - 1) exit 1 } END { if (NR != 2) exit 1 }' "$work/stdout" ||
    fail "the attacks are not where they are: $(cat "$work/stdout")"
expect_status 0 --attacks 0.6:1.4 "$work/bursts.wav"
[ ! -s "$work/stdout" ] || fail "an attack where there is none: $(cat "$work/stdout")"
expect_status 0 --stretcher own --rate 0.5 "$work/bursts.wav" "$work/own.wav"
[ "$(frames_of "$work/own.wav" | wc -l)" -eq 176400 ] || fail "the own stretcher renders another length"
expect_status 0 --stretcher library --rate 0.5 "$work/bursts.wav" "$work/library.wav"
! cmp -s "$work/own.wav" "$work/library.wav" || fail "the stretcher cannot be chosen"
expect_status 0 --rate 0.5 "$work/bursts.wav" "$work/usual.wav"
cmp -s "$work/usual.wav" "$work/library.wav" || fail "the library is not the usual stretcher"

# The sound's identity: the same for a copy, none for what holds no sound.
expect_status 0 --identity "$work/bursts.wav"
grep -Eqx 'q1-[0-9a-f]{32}' "$work/stdout" || fail "this is no identity: $(cat "$work/stdout")"
cp "$work/stdout" "$work/identity"
cp "$work/bursts.wav" "$work/renamed.mp3"
expect_status 0 --identity "$work/renamed.mp3"
cmp -s "$work/stdout" "$work/identity" || fail "a copy has another identity"
expect_status 0 --identity "$work/coded.wav"
! cmp -s "$work/stdout" "$work/identity" || fail "another sound has the same identity"

for refused in "--stretcher mine" "--attacks 3" "--rate 0.2" "--rate 3" "--rate x" "--cents 1300" "--gain 2" "--balance -2" "--bass 300" "--from -1" \
    "--loop 5" "--loop 5:4" "--passes 3" "--seam maybe" "--unknown" "--from 1.5f"; do
    # shellcheck disable=SC2086
    expect_status 2 $refused "$work/coded.wav" "$work/refused.wav"
    [ ! -e "$work/refused.wav" ] || fail "a file in spite of $refused"
done
expect_status 2 "$work/coded.wav"
expect_status 2 --rate

echo "no sound at all" >"$work/text.mp3"
for unreadable in "$work/text.mp3" "$work/absent.wav" "$work" /dev/null; do
    expect_status 1 "$unreadable" "$work/refused.wav"
    [ ! -e "$work/refused.wav" ] || fail "a file in spite of $unreadable"
done
expect_status 1 "$work/coded.wav" "$work/no/such/folder.wav"

# What is not to be replaced stays as it is, and nothing is left beside it.
nothing_beside() { # FOLDER NAMES...: the folder holds these and nothing else
    [ "$(ls -A "$1")" = "$(printf '%s\n' "${@:2}" | sort)" ] || fail "left in $1: $(ls -A "$1")"
}
mkdir "$work/kept"
cp "$work/coded.wav" "$work/kept/in.wav"
ln -s in.wav "$work/kept/in-link.wav"
ln "$work/kept/in.wav" "$work/kept/in-hard.wav"
ln -s elsewhere.wav "$work/kept/dangling.wav"
echo other >"$work/kept/other"
ln -s other "$work/kept/link.wav"
mkfifo "$work/kept/pipe.wav"
kept=(dangling.wav in-hard.wav in-link.wav in.wav link.wav other pipe.wav)
for out in "${kept[@]}"; do
    [ "$out" != other ] || continue
    expect_status 2 "$work/kept/in.wav" "$work/kept/$out"
    grep -q "$out: " "$work/stderr" || fail "the message does not name $out"
done
expect_status 2 "$work/kept/in-link.wav" "$work/kept/in.wav"
expect_status 2 "$work/kept/in.wav" "$work/kept/../kept/in.wav"
expect_status 2 "$work/kept/in.wav" "$work/kept"
expect_status 2 "$work/kept/in.wav" /dev/null
[ -c /dev/null ] || fail "the device is gone"
cmp "$work/coded.wav" "$work/kept/in.wav" || fail "the source has changed"
[ "$(cat "$work/kept/other")" = other ] || fail "a link's file has changed"
[ -L "$work/kept/link.wav" ] && [ -L "$work/kept/dangling.wav" ] && [ -p "$work/kept/pipe.wav" ] ||
    fail "a link or a pipe was replaced"
nothing_beside "$work/kept" "${kept[@]}"

# Its own temporary name: neither a neighbour called OUT.part nor the former file is touched before the end.
mkdir "$work/own"
echo mine >"$work/own/out.wav.part"
echo former >"$work/own/out.wav"
expect_status 0 "$work/coded.wav" "$work/own/out.wav"
[ "$(cat "$work/own/out.wav.part")" = mine ] || fail "OUT.part was overwritten"
cmp -s "$work/own/out.wav" "$work/neutral.wav" || fail "an ordinary file is not replaced"
nothing_beside "$work/own" out.wav out.wav.part

# Ended by a signal, or without room, it leaves nothing behind and the former file as it was.
mkdir "$work/ended"
for signal in INT TERM HUP; do
    echo former >"$work/ended/out.wav"
    env --default-signal="$signal" "$programs/quillmere-render" --rate 0.36 --loop 0:2 --passes 1000000 "$work/coded.wav" "$work/ended/out.wav" \
        2>"$work/stderr" &
    pid=$!
    until [ "$(ls -A "$work/ended" | wc -l)" -eq 2 ]; do sleep 0.05; done
    sleep 0.2
    kill -"$signal" "$pid"
    status=0
    wait "$pid" || status=$?
    [ "$status" -eq $((128 + $(kill -l "$signal"))) ] || fail "status $status after SIG$signal"
    [ "$(cat "$work/ended/out.wav")" = former ] || fail "SIG$signal: the former file has changed"
    nothing_beside "$work/ended" out.wav
done
(
    trap '' XFSZ
    ulimit -f 100
    expect_status 1 "$work/coded.wav" "$work/ended/out.wav"
)
[ "$(cat "$work/ended/out.wav")" = former ] || fail "without room the former file has changed"
nothing_beside "$work/ended" out.wav
