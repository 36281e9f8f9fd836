#!/bin/bash
# Skips while the sound plays: three seconds forward and back again, each one second from the frame that was heard.
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
quit_by_key

analyse
echo "joins:" $(values "$joins" skipped)
first=$(sed -n 1p <<<"$runs" | awk '{ print $5 }')
expect "first clean frame" "$first" -ge 88200
expect "first clean frame" "$first" -le $((88200 + 2205)) # behind the fade-in
expect "joins" "$(count_of "$joins")" -eq 2
forward=$(values "$joins" skipped | sed -n 1p)
back=$(values "$joins" skipped | sed -n 2p)
# Between the key and the change the old place goes on sounding: the skip is shorter by that, forward and back.
expect "skip forward" "$forward" -le 44100
expect "skip forward" "$forward" -gt $((44100 - 8820))
expect "skip back" "$back" -le -44100
expect "skip back" "$back" -gt $((-44100 - 8820))
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
