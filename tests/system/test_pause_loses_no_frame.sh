#!/bin/bash
# Pausing and resuming, five times: the frame after the pause is the one that follows the last one heard before it.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 20
start_recording "$stage/pauses.raw"
for ((pause = 0; pause < 5; pause++)); do
    press space
    wait_for_sound
    wait_recorded 0.5
    press space
    wait_for_silence
done
stop_recording
quit_by_key

analyse
# Joins inside a stretch of play are those of a starved sound card: nothing is lost there either.
joins=$(joins_of_the_program)
echo "frames lost (+) or repeated (-):" $(values "$joins" skipped)
expect "pauses" "$(count_of "$joins")" -ge 4
# Where a fade touches nothing at all a frame counts as silent: a few at each end.
expect "most frames lost" "$(values "$joins" skipped | largest)" -le 8
expect "most frames repeated" "$(values "$joins" skipped | smallest)" -ge -8
expect "frames faded" "$(values "$joins" faded | largest)" -le 4410
