#!/bin/bash
# What was done is told in words on the status line, and a screen reader is told of it as it comes into view: it hears
# of the mark that was set, and of nothing that has got the focus.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
listen_to_line

heard() {
    grep -qF -- "$1" "$stage/heard"
}

spoken_twice() {
    [ "$(grep -cF 'showing notification "Loop from 0 seconds to 1 second"' "$stage/heard")" -ge 2 ]
}

line_is_gone() {
    ! "$programs/accessible_tree" list | grep 'notification' | grep -q showing
}

start
measure make-coded "$stage/song.wav" 83
add_track "$stage/song.wav"
press Down ctrl+Return
"$programs/accessible_tree" watch >"$stage/heard" &
stage_pids+=($!)
wait_until "the program is listened to" heard watching

press bracketleft
wait_until "the first mark is spoken" heard 'showing notification "A at 0 seconds"'
line_says "A at 0 seconds" || fail "the line does not show the mark"
press Right bracketright
wait_until "the second mark is spoken" heard 'showing notification "B at 1 second"'
press l
wait_until "the loop is spoken" heard 'showing notification "Loop from 0 seconds to 1 second"'
press l l
wait_until "each is spoken, also what was spoken before" spoken_twice
press 2 minus
wait_until "the speed is spoken" heard 'showing notification "Speed 0.7 times, forward"'
expect_no_text "$stage/heard" focused
expect_no_text "$stage/heard" table
wait_until "the line goes by itself" line_is_gone
quit_by_key
