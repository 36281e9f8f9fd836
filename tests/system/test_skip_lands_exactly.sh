#!/bin/bash
# Skips while the sound plays, a second forward and a second back, go that far from the frame that was heard.
# While paused they are exact to the frame.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 30
press Right Right Right Left
start_recording "$stage/skips.raw"
press space
wait_for_sound
wait_recorded 1
press Right
wait_recorded 1
press Left
wait_recorded 1
press p
wait_for_silence
stop_recording
analyse
quit_by_key

echo "joins:" $(values "$joins" skipped)
# The target itself is whole; the few milliseconds that lead up to it fade in.
expect "first frame" "$(values "$runs" source | sed -n 1p)" -le 88200
expect "first frame" "$(values "$runs" source | sed -n 1p)" -ge $((88200 - 441))
skips=$(values "$(joins_of_the_program)" skipped | awk '$1 != 0')
expect "skips" "$(count_of "$skips")" -eq 2
# Between the key and the change the old place goes on sounding: the skip is shorter by that, forward and back.
forward=$(sed -n 1p <<<"$skips")
back=$(sed -n 2p <<<"$skips")
expect "skip forward" "$forward" -le 44100
expect "skip forward" "$forward" -gt $((44100 - 4410))
expect "skip back" "$back" -le -44100
expect "skip back" "$back" -gt $((-44100 - 4410))
