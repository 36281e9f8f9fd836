#!/bin/bash
# Music in a kind that the open panel and a drop do not take: a dropped FLAC file is refused with a button that plays it
# all the same, and the panel for any sound opens what is chosen there, passes over what is no sound, and says where all
# of it is none.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
listen_to_line

measure make-coded "$stage/coded.wav" 4
for sound in "$stage/dropped.flac" "$HOME/a.opus" "$HOME/b.FLAC"; do
    ffmpeg -hide_banner -loglevel error -i "$stage/coded.wav" "$sound" </dev/null
done
echo text >"$HOME/notes.txt"
start

# open_any_sound TEXT: types it into the panel's field.
open_any_sound() {
    press ctrl+shift+o
    wait_until "the panel for any sound is on the screen" window_is_shown '^Open Any Sound$'
    focus_window "$(windows_named '^Open Any Sound$')"
    type_text "$1"
    press Return
    give_keys_to_main_window
}

drop "$stage/dropped.flac"
expect_no_text "$player_log" "loadFile"
wait_until "the reason is told" line_says "FLAC files are not taken by dropping: dropped.flac"
press F8
wait_until "it is opened all the same" opened_more_than 0
start_recording "$stage/dropped.raw"
double_click_first_row
wait_for_sound
wait_recorded 1
press p
wait_for_silence
stop_recording
analyse
expect "first frame" "$(values "$runs" source | sed -n 1p)" -eq 0

open_any_sound '"a.opus" "notes.txt" "b.FLAC"'
wait_until "two more are opened" opened_more_than 3
wait_until "what was passed over is told" line_says "Added 2 of 3 files; notes.txt cannot be opened"
expect_text "$player_log" "Unable to open $HOME/notes.txt"
open_any_sound notes.txt
wait_until "it is told that there is nothing" line_says "Nothing in these files can be played."
quit_by_key

expect "entries" "$(grep -c '<key>track</key>' "$support_folder/Quillmere.xml")" -eq 3
expect "the last chosen is on top" \
    "$(grep -o '<string>/.*</string>' "$support_folder/Quillmere.xml" | head -n 1)" = "<string>$HOME/b.FLAC</string>"
