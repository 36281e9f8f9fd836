#!/bin/bash
# The record key alone records: it opens the recording window and its session first.
. "$(dirname "$0")/lib.sh"
open_test
add_microphone
start_window_manager
start
take=$HOME/Desktop/Quillmere.mov
press ctrl+r
wait_until "the recording window is on the screen" find_recording_window
wait_until "the recording has begun" test -s "$take"
xdotool windowactivate --sync "$player_window"
press ctrl+r
wait_until "the save panel is on the screen" find_save_panel
press Return
wait_until "the save panel is gone" no_save_panel
xdotool windowactivate --sync "$player_window"
quit_by_key
expect_file "$take"
