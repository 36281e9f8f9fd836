#!/bin/bash
# A passage of one second at half speed, forward and backward, repeats every two seconds; the pitch stays.
. "$(dirname "$0")/lib.sh"
open_test
start
measure make-tune "$stage/tune.wav" 20
add_track "$stage/tune.wav"
start_recording "$stage/first.raw"
double_click_first_row
wait_for_sound
press p
wait_for_silence
stop_recording
press Home
set_marks 3 4
press l Home

for direction in forward backward; do
    press 1 # half speed
    start_recording "$stage/$direction.raw"
    if [ "$direction" = forward ]; then press space; else press shift+space; fi
    wait_for_sound
    wait_recorded 25
    measured_frames=$(recorded_frames)
    press p
    wait_for_silence
    stop_recording

    head -c $((measured_frames * 8)) "$recording" >"$stage/heard.raw"
    # From the second pass on: the first begins wherever the position was.
    measure passes "$stage/heard.raw" 110250 44100 132300 >"$stage/measured"
    echo "$direction:" $(cat "$stage/measured")
    value() { awk -v name="$1" '$1 == name { print $2 }' "$stage/measured"; }
    expect "passes $direction" "$(value passes)" -ge 8
    # The stretcher places an attack to within some milliseconds; over the passes that evens out.
    awk -v p="$(value period_frames)" 'BEGIN { exit !(p > 88178 && p < 88222) }' ||
        fail "$direction: a period of $(value period_frames) frames, expected 88200"
    awk -v w="$(value worst_pass_frames)" 'BEGIN { exit !(w < 441) }' ||
        fail "$direction: a pass is $(value worst_pass_frames) frames off the others"
    awk -v c="$(value pitch_cents)" 'BEGIN { exit !(c > -1 && c < 1) }' ||
        fail "$direction: the pitch is $(value pitch_cents) cents off"
done
quit_by_key
