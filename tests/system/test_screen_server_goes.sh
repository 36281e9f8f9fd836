#!/bin/bash
# The screen's server is killed under the running program, which then cannot go on: the play list is written all the
# same, and a recording is a whole file.
. "$(dirname "$0")/lib.sh"
open_test
add_microphone
start
add_coded_track 8
open_recording_window
start_take
press space
sleep 1
expect_no_file "$support_folder/Quillmere.xml"
kill -9 "$screen_pid"
wait_for_player
expect "exit status" "$player_status" -ne 0
expect_text "$support_folder/Quillmere.xml" coded.wav
grep -qE 'X11|Wayland' "$player_log" || fail "the log does not say that the screen has gone"
ffmpeg -hide_banner -loglevel error -i "$take" -f null - </dev/null || fail "the recording cannot be read"
