#!/bin/bash
# Quitting while a recording runs asks nothing and loses nothing: the file holds every frame that was spoken.
. "$(dirname "$0")/lib.sh"
open_test
add_microphone
start
measure make-coded "$stage/spoken.wav" 3
open_recording_window
start_take
speak "$stage/spoken.wav"
quit_by_key
analyse_take "$take"
expect "frames missing or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "frames" "$(values "$runs" length | total)" -eq $((3 * 44100))
