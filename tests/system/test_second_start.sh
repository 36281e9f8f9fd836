#!/bin/bash
# A second start in the same home brings the first one's window to the front and ends with status 0, also without a bus.
# A killed program does not stand in the way, and one that hangs is not waited for.
. "$(dirname "$0")/lib.sh"

start_again() {
    again_status=0
    timeout 60 "$programs/quillmere" >"$stage/again.out" 2>"$stage/again.log" </dev/null || again_status=$?
}

main_window_is_hidden() {
    ! find_main_window
}

main_window_has_focus() {
    [ "$(xdotool getactivewindow)" = "$player_window" ]
}

open_test
start_window_manager
start
first_pid=$player_pid
wait_until "the window has faded in and has the focus" main_window_has_focus
xdotool windowminimize "$player_window"
wait_until "the window is minimised" main_window_is_hidden
start_again
expect "status of the second start" "$again_status" -eq 0
wait_until "the window is back" find_main_window
wait_until "the window has the focus" main_window_has_focus
expect "words of the second start" "$(wc -c <"$stage/again.log")" -eq 0

press ctrl+4
wait_until "another window has the focus" another_window_has_focus
start_again
expect "status of the third start" "$again_status" -eq 0
wait_until "the window has the focus again" main_window_has_focus

kill -STOP "$first_pid"
start_again
kill -CONT "$first_pid"
expect "status beside a program that hangs" "$again_status" -eq 1
expect_text "$stage/again.log" "does not answer"
start_again
expect "status when it goes on" "$again_status" -eq 0

kill -9 "$first_pid"
wait "$first_pid" || true
start
wait_until "the window has the focus" main_window_has_focus
quit_by_key
start
quit_by_key
