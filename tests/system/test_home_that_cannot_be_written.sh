#!/bin/bash
# A home where nothing can be created: the program plays, says nothing on the screen, logs, and ends with status 0.
. "$(dirname "$0")/lib.sh"
open_test
: >"$HOME/Library" # a file: no folder can be made below it, not even by root
start
add_coded_track 3
close_main_window
end_with_status_0
expect "the file in the way" "$(wc -c <"$HOME/Library")" -eq 0
expect "lines in the log about the play list" "$(grep -ciE 'play ?list|Quillmere\.xml' "$player_log")" -ge 1
