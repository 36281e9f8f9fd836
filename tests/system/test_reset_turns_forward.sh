#!/bin/bash
# While a track plays backward at double speed, Reset All and the reset of the speed alone make it play forward from where
# it is, sample by sample, at the speed it was made for.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
start
wait_until "the player is on the bus" on_the_bus
add_coded_track 60

for key in ctrl+0 3; do
    press Home shift+Right shift+Right shift+Right
    start_recording "$stage/turned.raw"
    press 5 shift+space
    wait_until "it plays backward at double speed" property_is Rate -2
    wait_for_sound
    wait_recorded 1
    press $key
    wait_until "it plays at normal speed" property_is Rate 1
    wait_recorded 1.5
    expect "status" "$(read_property PlaybackStatus)" = Playing
    press p
    wait_for_silence
    stop_recording
    analyse
    forward=$(awk '$NF > longest { longest = $NF; run = $0 } END { print run }' <<<"$runs")
    expect "the frames heard forward" "$(values "$forward" length)" -gt 44100
    expect "the first frame heard forward" "$(values "$forward" source)" -lt $((29 * 44100))
done
quit_by_key
