#!/bin/bash
# The sound server stops answering while a track plays: the user is told, other tracks open, everything can be pressed,
# and every way to quit ends the program at once, with the play list written. When it goes on, so does the sound.
. "$(dirname "$0")/lib.sh"

# server_stands: and the user is told so, once more than before.
server_stands() {
    local before
    before=$(told_count)
    hold_sound_server
    wait_until "the user is told" told_more_than "$before"
}

told_count() {
    grep -c 'The sound output does not answer' "$player_log" || true
}

told_more_than() {
    [ "$(told_count)" -gt "$1" ]
}

play_again() { # a double click on the row, which closes the track that hangs
    local before
    before=$(opened_count)
    xdotool mousemove 0 0 # a pointer that is where it is to go is waited for in vain
    double_click_first_row
    wait_until "the track is opened once more" opened_more_than "$before"
}

open_test
start_bus
start
add_coded_track 8
press space
wait_for_play
server_stands
play_again
play_again
expect "times that the user is told" "$(told_count)" -eq 1
expect_no_text "$player_log" "Sound is back"
press p space Home l Right bracketleft
press ctrl+4 # the recorder, which asks for a microphone
wait_until "the recording window is on the screen" find_recording_window
wait_until "the log says why there is no recording" grep -q "sound input: the sound system does not answer" "$player_log"
xdotool windowfocus --sync "$player_window"
wait_until "the remote control answers" property_is PlaybackStatus Playing
release_sound_server
wait_until "the user is told that sound is back" grep -q 'Sound is back' "$player_log"
start_recording "$stage/back.raw"
wait_for_sound
stop_recording
server_stands
rm -f "$support_folder/Quillmere.xml"
press ctrl+q
ends_at_once
expect_text "$support_folder/Quillmere.xml" coded.wav
release_sound_server

for way in "kill -TERM \$player_pid" close_main_window "remote_call Quit"; do
    : >"$stage/player.log"
    start
    wait_until "the program is on the bus" on_the_bus
    play_again
    wait_for_play
    server_stands
    play_again
    rm -f "$support_folder/Quillmere.xml"
    eval "$way"
    ends_at_once
    expect_text "$support_folder/Quillmere.xml" coded.wav
    release_sound_server
done
