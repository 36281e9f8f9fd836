#!/bin/bash
# Without a microphone, with nothing but what plays itself to listen to, the recording window says so, the log has a
# line, and the record key does nothing.
. "$(dirname "$0")/lib.sh"
open_test
start
open_recording_window
expect_text "$player_log" "audioRecordOpen: Unable to open audio device."
press ctrl+r
press ctrl+4
xdotool windowfocus --sync "$player_window"
quit_by_key
expect_no_file "$HOME/Desktop/Quillmere.mov"
expect "set-ups" "$(grep -c 'Unable to open audio device' "$player_log")" -eq 1
