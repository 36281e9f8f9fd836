#!/bin/bash
# A new recording never takes the place of a finished one: that is set aside under the next free name. Discard throws away
# the new one only. The recorder's recordings outlive a kill in the support folder and are set aside there, and closing
# its window while it records asks where to keep it.
. "$(dirname "$0")/lib.sh"

recorder() {
    windows_named '^Recorder$' | grep .
}

open_recorder() {
    xdotool windowfocus --sync "$player_window"
    press ctrl+5
    wait_until "the recorder is on the screen" recorder
    recorder_window=$(recorder)
}

press_recorder_button() {
    xdotool mousemove --window "$recorder_window" 62 71 click 1
}

is_longer_than() { # FILE BYTES
    [ "$(stat -c %s "$1" 2>/dev/null || echo 0)" -gt "$2" ]
}

is_gone() {
    [ ! -e "$1" ]
}

sum_of() {
    sha256sum <"$1"
}

open_test
add_microphone
start
open_recording_window
take=$HOME/Desktop/Quillmere.mov
second="$HOME/Desktop/Quillmere 2.mov"
third="$HOME/Desktop/Quillmere 3.mov"
start_take
wait_until "the first recording has some sound" is_longer_than "$take" 40000
stop_take
first_sum=$(sum_of "$take")

xdotool windowfocus --sync "$player_window"
press ctrl+r
wait_until "the first recording is set aside" test -e "$second"
expect "the first recording" "$(sum_of "$second")" = "$first_sum"
wait_until "the second recording has some sound" is_longer_than "$take" 40000
stop_take
second_sum=$(sum_of "$take")

xdotool windowfocus --sync "$player_window"
press ctrl+r
wait_until "the second recording is set aside" test -e "$third"
wait_until "the third recording has some sound" is_longer_than "$take" 40000
press ctrl+r
wait_until "the panel is on the screen" find_save_panel
xdotool windowfocus --sync "$(find_save_panel)"
press Escape
wait_until "the panel is gone" no_save_panel
wait_until "the third recording is thrown away" is_gone "$take"
expect "the first recording" "$(sum_of "$second")" = "$first_sum"
expect "the second recording" "$(sum_of "$third")" = "$second_sum"

left="$support_folder/Quillmere.mov"
aside="$support_folder/Quillmere 2.mov"
open_recorder
press_recorder_button
wait_until "the recorder has written some sound" is_longer_than "$left" 400000
kill -9 "$player_pid"
wait "$player_pid" || true
plays "$left" 44100 || fail "the killed recording does not play"
left_sum=$(sum_of "$left")

start
open_recorder
expect "the recording that was left" "$(sum_of "$left")" = "$left_sum"
press_recorder_button
wait_until "the recording that was left is set aside" test -e "$aside"
expect "the recording that was left" "$(sum_of "$aside")" = "$left_sum"
wait_until "the recorder has written some sound" is_longer_than "$left" 40000
xdotool windowfocus --sync "$recorder_window"
press Escape
wait_until "the panel is on the screen" find_save_panel
mkdir -p "$HOME/Music"
xdotool windowfocus --sync "$(find_save_panel)"
type_text "$HOME/Music/solo \"slow\" take.mov"
press Return
wait_until "the panel is gone" no_save_panel
wait_until "the recording is kept" test -s "$HOME/Music/solo \"slow\" take.mov"
wait_until "the recording has left its first place" is_gone "$left"
give_keys_to_main_window
quit_by_key
