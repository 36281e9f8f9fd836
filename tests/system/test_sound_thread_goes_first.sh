#!/bin/bash
# The thread that the sound card waits for goes before all others, where the system grants precedence at all. The window's
# thread never does, not even after it has started a recording: whatever it is busy with would hold up the whole desktop.
. "$(dirname "$0")/lib.sh"

# Each thread's name and its real-time priority, 0 for none.
thread_priorities() {
    local task
    for task in "/proc/$player_pid/task"/*; do
        sed 's/.*(\(.*\)) /\1|/' "$task/stat" | awk -F'|' '{ split($2, field, " "); gsub(" ", "_", $1); print $1, field[38] }'
    done
}

open_test
add_microphone
start
measure make-tune "$stage/tune.wav" 20
add_track "$stage/tune.wav"
start_recording "$stage/sound.raw"
double_click_first_row
wait_for_sound
thread_priorities >"$stage/priorities"
card=$(awk '$1 == "threaded-ml" { print $2 }' "$stage/priorities")
[ -n "$card" ] || fail "the sound card's thread is not there: $(cat "$stage/priorities")"
most=$(awk '$1 != "threaded-ml" && $2 > most { most = $2 } END { print most + 0 }' "$stage/priorities")
[ "$most" -eq 0 ] || [ "$card" -gt "$most" ] || fail "the sound card's thread has $card, another one $most"

window_priority() {
    awk '{ sub(/.*\) /, ""); print $38 }' "/proc/$player_pid/task/$player_pid/stat"
}
open_recording_window
start_take
expect "the window's thread's priority while recording" "$(window_priority)" -eq 0
stop_take
expect "the window's thread's priority after a recording" "$(window_priority)" -eq 0
