#!/bin/bash
# Standard error is a pipe that is full and that nobody reads, or one whose reader has gone, or all three standard
# streams are closed: the program does all that it does otherwise, and ends with status 0.
. "$(dirname "$0")/lib.sh"

# use_it: adds a track and plays it, without a look at the log.
use_it() {
    rm -f "$support_folder/Quillmere.xml"
    wait_until "the program is on the bus" on_the_bus
    press ctrl+o
    wait_until "the open panel is on the screen" another_window_has_focus
    type_text "$stage/coded.wav"
    press Return
    wait_until "the track is loaded" loaded_file_is coded.wav
    give_keys_to_main_window
    double_click_first_row
    wait_for_play
    quit_by_key
    expect_text "$support_folder/Quillmere.xml" coded.wav
}

# start_with REDIRECTIONS: the program as a shell would start it.
start_with() {
    start_player bash -c "exec \"\$0\" $1" "$programs/quillmere"
}

stream() { # NUMBER: what stands there in the program
    readlink "/proc/$player_pid/fd/$1"
}

open_test
start_bus
measure make-coded "$stage/coded.wav" 8

mkfifo "$stage/full"
exec 7<>"$stage/full"
timeout 0.5 cat /dev/zero >&7 || true
start_with "2>'$stage/full'"
use_it
exec 7>&-

start_with "2> >(:)"
use_it

start_with "<&- >&- 2>&-"
for number in 0 1 2; do
    expect "descriptor $number" "$(stream $number)" = /dev/null
done
use_it
