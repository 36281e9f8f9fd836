#!/bin/bash
# Through the accessibility bus, as a screen reader sees it, every control of every window has a name and every slider
# says its value in words; what is done through the bus is done.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
tree() {
    "$programs/accessible_tree" "$@"
}
says() {
    [ "$(tree say "$1")" = "$2" ]
}

start
wait_until "the program is on the accessibility bus" tree check
measure make-coded "$stage/song.wav" 83
add_track "$stage/song.wav"
press Down ctrl+Return

# Every window that a key opens is looked at.
for key in ctrl+2 ctrl+4 ctrl+5 ctrl+comma F1; do
    press "$key"
    xdotool windowfocus --sync "$player_window"
done
wait_until "the windows are looked at" tree check
tree list >"$stage/tree"
tree check || fail "not every control says what it is"
grep -E '(frame|dialog|window) "' "$stage/tree"

# The list's rows, the buttons' states and the sliders' words.
expect_text "$stage/tree" '"song.wav, no artist, 1 minute 23 seconds"'
expect_text "$stage/tree" 'slider "Speed" "1 times, forward"'
tree set Pitch -200
wait_until "the pitch is told" says Pitch "minus 200 cents"
tree set Speed 0.75
wait_until "the speed is told" says Speed "0.75 times, forward"
tree set Position "$((44100 * 62))"
wait_until "the position is told" says Position "1 minute 2 seconds of 1 minute 23"
! tree is "Loop A to B" checked || fail "the loop is on before it was switched on"
tree press "Loop A to B"
wait_until "the loop is on" tree is "Loop A to B" checked
tree press "Set A"
wait_until "the mark's time is told" says "Set A" "on. 1 minute 2 seconds"
xdotool windowfocus --sync "$player_window"
quit_by_key
