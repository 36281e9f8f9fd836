#!/bin/bash
# A path with quotation marks that is typed opens its file, and its movie is exported under the name that is proposed. Del
# in the open panel removes nothing.
. "$(dirname "$0")/lib.sh"
open_test
start
music=$HOME/music
mkdir -p "$HOME/Desktop" "$music/inner"
echo precious >"$music/inner/file"
name='Blue Monday (12" mix)'
measure make-coded "$music/$name.wav" 2
add_track "$music/$name.wav"
press ctrl+e
wait_until "the save panel is on the screen" another_window_has_focus
press Return
give_keys_to_main_window
wait_until "the movie is there under its name" test -s "$HOME/Desktop/$name.mov"
expect "files on the desktop" "$(find "$HOME/Desktop" -type f | wc -l)" -eq 1

press ctrl+o
wait_until "the open panel is on the screen" another_window_has_focus
press shift+Tab Home Delete # in the list, where the folder is first
press alt+y                 # should anything be asked
press Delete alt+y
press Escape Escape
give_keys_to_main_window
expect_file "$music/inner/file"
expect_file "$music/$name.wav"
quit_by_key
