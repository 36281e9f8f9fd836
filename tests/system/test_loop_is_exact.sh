#!/bin/bash
# A loop of two seconds at normal speed repeats every 88200 frames, bit for bit, without silence or repetition.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 8
set_marks 1 3
press l
for ((attempt = 0; attempt < attempts; attempt++)); do
    press Home # to A
    play_recorded 14
    expect_exact_loop 88200
    [ "$(values "$joins" silent | total)" -ne 0 ] || break
done
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
expect "passes" "$(count_of "$runs")" -gt 6
expect "different first frames of the passes" "$(values "$runs" source | tail -n +2 | sort -u)" -eq 44100
quit_by_key
