#!/bin/bash
# The loop stays exact while the window is busy for two seconds and two other processes want all of the machine.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 8
set_marks 1 4
press l Home
start_recording "$stage/loop.raw"
press space
wait_for_sound

spin() {
    bash -c 'while :; do :; done' &
    stage_pids+=($!)
}
spin
spin
for ((step = 0; step < 40; step++)); do # every size is a new layout and a new picture
    xdotool windowsize "$player_window" $((990 + step * 5)) $((690 + step * 4))
    sleep 0.05
done
wait_recorded 15
press p
wait_for_silence
stop_recording
quit_by_key

analyse
expect "passes" "$(count_of "$joins")" -ge 4
expect "shortest period" "$(values "$joins" skipped | largest)" -eq -132300
expect "longest period" "$(values "$joins" skipped | smallest)" -eq -132300
expect "frames changed at the seams" "$(values "$joins" faded | total)" -eq 0
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
