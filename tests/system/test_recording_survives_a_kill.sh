#!/bin/bash
# A program that is killed while it records leaves a movie in which nothing is missing but the last second.
. "$(dirname "$0")/lib.sh"

open_test
add_microphone
start
measure make-coded "$stage/spoken.wav" 20
open_recording_window
start_take
recorded_sink=qm_mic_feed
start_recording "$stage/control.raw"
speak "$stage/spoken.wav" &
stage_pids+=($!)
wait_for_sound
wait_recorded 5.7
kill -9 "$player_pid"
stop_recording
wait "$player_pid" || true
measure runs "$stage/control.raw" 1 >"$stage/control.txt" || fail "nothing was spoken before the kill"
spoken=$(values "$(grep '^run ' "$stage/control.txt")" length | total)
analyse_take "$take"
expect "frames missing or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "first frame" "$(values "$runs" source | sed -n 1p)" -eq 0
expect "frames" "$(values "$runs" length | total)" -gt $((spoken - 44100))
