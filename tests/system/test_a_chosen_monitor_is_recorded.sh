#!/bin/bash
# A default input that the user has chosen is recorded, also when it is what the sound card plays itself.
. "$(dirname "$0")/lib.sh"
open_test
add_microphone
set_default_source qm_out.monitor
start
measure make-coded "$stage/spoken.wav" 3
open_recording_window
expect_no_text "$player_log" "Unable to open audio device"
start_take
paplay --device=qm_out --latency-msec=100 "$stage/spoken.wav"
stop_take
analyse_take "$take"
expect "frames missing or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "frames" "$(values "$runs" length | total)" -eq $((3 * 44100))
xdotool windowfocus --sync "$player_window"
quit_by_key
