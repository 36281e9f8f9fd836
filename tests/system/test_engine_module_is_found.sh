#!/bin/bash
# The program finds its engine from wherever it is started, also through a link in another folder; without it, as after
# a broken installation, a file cannot be opened, the log says why, and nothing else is different.
. "$(dirname "$0")/lib.sh"
open_test
measure make-coded "$stage/coded.wav" 2
cd "$stage"

ln -s "$programs/quillmere" elsewhere
start_player ./elsewhere
add_track "$stage/coded.wav"
expect_no_text "$player_log" "the media engine cannot be loaded"
close_main_window
end_with_status_0

mkdir lonely
cp "$programs/quillmere" lonely/
start_player lonely/quillmere
press ctrl+o
wait_until "the open panel is on the screen" another_window_has_focus
type_text "$stage/coded.wav"
press Return
wait_until "the file is refused" grep -q "loadFile: 2" "$player_log"
expect_text "$player_log" "the media engine cannot be loaded: "
give_keys_to_main_window
close_main_window
end_with_status_0
expect_text "$support_folder/Quillmere.xml" "<string>$stage/coded.wav</string>"
