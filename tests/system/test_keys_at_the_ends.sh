#!/bin/bash
# By keys alone, where a track and its loop begin and end: Home in a loop stands at A whichever way was played, play at
# an end begins at the other one, the knob follows after the end, a file that comes back is played, and after silence
# the next track is heard.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

shows() {  # what the window's position slider says
    "$programs/accessible_tree" say Position | grep -qx "$1 of 30 seconds"
}
stands_between() {  # microseconds
    local position
    position=$(read_property Position)
    [ "$position" -ge "$1" ] && [ "$position" -le "$2" ]
}
plays_between() {
    property_is PlaybackStatus Playing && stands_between "$@"
}

start
wait_until "the player is on the bus" on_the_bus
measure make-coded "$stage/other.wav" 30
measure make-coded "$stage/song.wav" 30
add_track "$stage/other.wav"
add_track "$stage/song.wav"
press Down ctrl+Return
wait_until "the song is loaded" loaded_file_is song.wav

# Backward from the start is backward from the end.
press shift+space
wait_until "it plays back from its end" plays_between 15000000 29900000
press p Home

# Home in a loop, after backward play.
set_marks 2 5
press l shift+space
wait_until "the loop plays backward" plays_between 2000000 4950000
press p
press Home
wait_until "the knob is at A" shows "2 seconds"
expect "position" "$(read_property Position)" -eq 2000000
press l

# Moved to its end while it stands still: the knob goes on, and play begins at the start.
press ctrl+Right
wait_until "the knob is at the end" shows "30 seconds"
press space
wait_until "it plays from its start" plays_between 0 15000000

# At the end of play: the knob follows where the keys go.
press ctrl+Right
wait_until "it has ended" property_is PlaybackStatus Paused
wait_until "the knob is at the end" shows "30 seconds"
press Home
wait_until "it plays on from its start" plays_between 0 15000000
wait_until "the knob goes with it" shows "[12]\?[1-9] seconds*"
press ctrl+Right
wait_until "it has ended" property_is PlaybackStatus Paused
press space
press space
wait_until "it plays once more" plays_between 0 15000000
press p

# Silence comes and goes, and after the reset the next track is heard.
press m
wait_until "it is silent" property_is Volume 0
press m
wait_until "it is as loud as before" property_is Volume 0.5
press m g
wait_until "the gain is at rest" property_is Volume 0.5
press Down ctrl+Return
wait_until "the other one is loaded" loaded_file_is other.wav
start_recording "$stage/other.raw"
press space
wait_for_sound
stop_recording
quit_by_key

# A file that is not there is tried again each time, and played when it is there.
mv "$stage/song.wav" "$stage/away.wav"
start
wait_until "the player is on the bus" on_the_bus
failures() {
    grep -c "Unable to open .*song.wav" "$player_log" || true
}
failed() {
    [ "$(failures)" -eq "$1" ]
}
press Down space
wait_until "the file is missed" failed 1
press space
wait_until "the file is missed again" failed 2
mv "$stage/away.wav" "$stage/song.wav"
press space
wait_until "the file is played" plays_between 0 29000000
quit_by_key
