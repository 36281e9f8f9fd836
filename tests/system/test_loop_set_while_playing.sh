#!/bin/bash
# Marks set by key while the sound plays give a loop whose every pass has the same number of frames, with no more than
# the short fade at the seam. After B the sound goes to A at once.
. "$(dirname "$0")/lib.sh"
open_test
start
add_coded_track 20
start_recording "$stage/loop.raw"
press space
wait_for_sound
wait_recorded 1.3
press bracketleft
press l
wait_recorded 2.2
press bracketright # the loop is on: B takes effect at once
wait_recorded 12
press p
wait_for_silence
stop_recording
quit_by_key

analyse
first_period=$(values "$joins" skipped | sed -n 2p)
expect "passes" "$(count_of "$joins")" -ge 4
expect "period" "$first_period" -lt -44100
expect "other periods" "$(values "$joins" skipped | tail -n +2 | sort -u)" -eq "$first_period"
expect "frames changed at a seam" "$(values "$joins" faded | largest)" -le 300
expect "silent frames" "$(values "$joins" silent | total)" -eq 0
# The first pass ends when the key is pressed, the later ones at the mark.
first_end=$(sed -n 1p <<<"$runs" | awk '{ print $5 + $7 }')
mark_b=$(sed -n 2p <<<"$runs" | awk '{ print $5 + $7 }')
echo "sound from behind B: $((first_end - mark_b)) frames"
expect "sound from behind B, frames" "$((first_end - mark_b))" -lt 13230
