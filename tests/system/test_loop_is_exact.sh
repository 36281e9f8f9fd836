#!/bin/bash
# A loop of three seconds at normal speed repeats every 132300 frames, bit for bit, without silence or repetition.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 8
set_marks 1 4
press l Home # the loop is on; the start is A now
start_recording "$stage/loop.raw"
press space
wait_for_sound
wait_recorded 33
press p
wait_for_silence
stop_recording
quit_by_key

analyse
# Whole seconds sound alike, so the seam needs no fade: nothing may be touched there.
expect "passes" "$(count_of "$joins")" -ge 10
expect "shortest period" "$(values "$joins" skipped | largest)" -eq -132300
expect "longest period" "$(values "$joins" skipped | smallest)" -eq -132300
expect "frames changed at the seams" "$(values "$joins" faded | total)" -eq 0
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
expect "last frame of a pass" "$(values "$runs" source | sed -n 2p)" -eq 44100
