#!/bin/bash
# Files dragged onto the window: of several only the first in order is added, and the others are offered; a file of another
# kind is refused, and with it the others, and says so while it hovers. A double click plays the added track from its
# first frame.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
listen_to_line
start

measure make-coded "$stage/b.wav" 3
measure make-coded "$stage/A.WAV" 4
echo text >"$stage/a.txt"

drop "$stage/a.txt" "$stage/b.wav"
expect_no_text "$player_log" "loadFile"
wait_until "the reason is told" line_says "Text files are not played: a.txt"
drop_height=100  # in the head of the window
drop "$stage/b.wav" "$stage/A.WAV"
wait_until "the file is opened" opened_more_than 0
wait_until "what was added is told" line_says "Only A.WAV was added, the first of 2"

start_recording "$stage/dropped.raw"
double_click_first_row
wait_for_sound
wait_recorded 1
press p
wait_for_silence
stop_recording
press F8
wait_until "the other one is opened" opened_more_than 2
quit_by_key

expect "entries" "$(grep -c '<key>track</key>' "$support_folder/Quillmere.xml")" -eq 2
expect_text "$support_folder/Quillmere.xml" "<string>$stage/b.wav</string>"
expect_text "$support_folder/Quillmere.xml" "<string>$stage/A.WAV</string>"
analyse
expect "first frame" "$(values "$runs" source | sed -n 1p)" -eq 0
expect "seconds heard" "$(values "$runs" length | total)" -ge 44100
