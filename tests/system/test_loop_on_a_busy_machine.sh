#!/bin/bash
# The loop stays exact while the window is busy for two seconds and two other processes want all of the machine.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 8
set_marks 1 3
press l

# What the machine has to do besides counts as well, so that it is no busier than meant.
busy=$(awk '{ printf "%d", $1 + 0.5 }' /proc/loadavg)
spin() {
    bash -c 'while :; do :; done' &
    stage_pids+=($!)
}
keep_window_busy() { # every size is a new layout and a new picture
    local step
    for ((step = 0; step < 40; step++)); do
        xdotool windowsize "$player_window" $((990 + step % 20 * 10)) $((690 + step % 20 * 10))
        sleep 0.05
    done
}
for ((process = busy; process < 2; process++)); do
    spin
done
for ((attempt = 0; attempt < attempts; attempt++)); do
    press Home # to A
    keep_window_busy &
    busy_window=$!
    play_recorded 12
    wait "$busy_window"
    expect_exact_loop 88200
    [ "$(values "$joins" silent | total)" -ne 0 ] || break
done
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
expect "passes" "$(count_of "$runs")" -gt 5
expect "different first frames of the passes" "$(values "$runs" source | tail -n +2 | sort -u)" -eq 44100
quit_by_key
