#!/bin/bash
# Without a sound server the program starts and plays on a silent clock; when one appears the sound goes there, when the
# default device changes it follows, and when the server dies and comes back it is heard again.
. "$(dirname "$0")/lib.sh"
open_test
stop_sound_server
start
measure make-coded "$stage/coded.wav" 120
add_track "$stage/coded.wav"
double_click_first_row

start_sound_server
start_recording "$stage/appeared.raw"
wait_for_sound
wait_recorded 1
stop_recording
analyse
expect "first frame heard" "$(values "$runs" source | sed -n 1p)" -gt 0 # the clock did not wait for the device

add_sink qm_other
set_default_sink qm_other
recorded_sink=qm_other
start_recording "$stage/followed.raw"
wait_for_sound
wait_recorded 1
stop_recording
analyse
recorded_sink=qm_out

stop_sound_server
start_sound_server
start_recording "$stage/again.raw"
wait_for_sound
wait_recorded 1
press p
wait_for_silence
stop_recording
analyse
quit_by_key
