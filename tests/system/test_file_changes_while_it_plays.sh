#!/bin/bash
# The file that plays is replaced by another: it is heard to its end as it was. The file is cut short under the program:
# what is gone is silence, time goes on, and the next track plays.
. "$(dirname "$0")/lib.sh"

open_test
start_bus
start
add_coded_track 60
wait_until "the program is on the bus" on_the_bus

start_recording "$stage/replaced.raw"
press space
wait_for_sound
measure make-tune "$stage/tune.wav" 3
mv "$stage/tune.wav" "$coded"
wait_recorded 2
press p Right Right Right Right Right Right Right Right Right Right Right Right Right Right Right Right Right Right space
wait_for_sound
wait_recorded 2
press p
wait_for_silence
stop_recording
analyse
expect "the last frame heard" "$(awk '{ print $5 + $7 }' <<<"$runs" | largest)" -ge $((18 * 44100))

measure make-coded "$stage/cut.wav" 60
add_track "$stage/cut.wav"
start_recording "$stage/cut.raw"
press Home space
wait_for_sound
truncate --size=1000000 "$stage/cut.wav"
wait_for_silence
wait_for_play
: >"$stage/cut.wav"
press Home
wait_for_play
add_track "$coded"
wait_until "the other file is loaded" loaded_file_is coded.wav
wait_for_play
stop_recording
quit_by_key
expect_text "$support_folder/Quillmere.xml" cut.wav
