#!/bin/bash
# The sound server is killed in the middle of a loop: time goes on in silence, inside the same marks, and when the server
# is back on the same socket the loop is heard again as it was, whether it came back after seconds or at once.
. "$(dirname "$0")/lib.sh"

# Every second of the coded sound begins and ends alike, so that a frame's place is told to a quarter of a second; that
# the period is exact to the frame says the rest.
# On a starved card a stretch may be too short to tell its place.
expect_the_loop() { # between the seconds 1 and 3
    runs=$(grep -v ' source -1 ' <<<"$runs")
    joins=$(grep ' known$' <<<"$joins")
    expect "first frame heard" "$(values "$runs" source | smallest)" -ge 33075
    expect "last frame heard" "$(awk '{ print $5 + $7 }' <<<"$runs" | largest)" -le 143325
    expect_exact_loop 88200 3
}

open_test
start
add_coded_track 8
set_marks 1 3
press l Home space

start_recording "$stage/before.raw"
wait_for_sound
wait_recorded 3
stop_recording

kill_sound_server
sleep 3 # for as long as a server takes that has to be started by hand
player_has_ended && fail "the program ended with the sound server"
start_sound_server
start_recording "$stage/after.raw"
wait_for_sound
wait_recorded 9
stop_recording
analyse
expect_the_loop

kill_sound_server
start_sound_server
start_recording "$stage/at_once.raw"
wait_for_sound
wait_recorded 9
press p
wait_for_silence
stop_recording
analyse
expect_the_loop
quit_by_key
