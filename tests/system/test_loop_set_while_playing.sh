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
analyse
quit_by_key

joins=$(joins_of_the_program)
seams=$(values "$joins" skipped | awk '$1 != 0')
to_a=$(sed -n 1p <<<"$seams")
period=$(sed -n 2p <<<"$seams")
expect "passes" "$(count_of "$seams")" -ge 4
expect "loop, negative" "$period" -lt -88200
expect "different periods" "$(tail -n +2 <<<"$seams" | sort -u | wc -l)" -eq 1
expect "frames changed at a seam" "$(values "$joins" faded | largest)" -le 300
# The first pass went on behind the mark until the key had taken effect.
behind_b=$((period - to_a))
echo "sound from behind B: $behind_b frames"
expect "frames of sound from behind B" "$behind_b" -ge 0
expect "frames of sound from behind B" "$behind_b" -lt 4410
