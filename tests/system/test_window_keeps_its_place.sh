#!/bin/bash
# Under a window manager with frames the main window comes back where it was, and as large as it was, however often the
# program ends: as it stands, maximised, minimised.
. "$(dirname "$0")/lib.sh"

saved_place() {
    cut -d' ' -f1-4 "$support_folder/windowposition"
}

place_on_screen() {
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$player_window" | grep -E '^(X|Y|WIDTH|HEIGHT)=[0-9]+$')"
    echo "$X $Y $WIDTH $HEIGHT"
}

is_where_it_was() {
    [ "$(place_on_screen)" = "$place" ]
}

has_the_keys() {
    [ "$(xdotool getwindowfocus)" = "$player_window" ]
}

fills_the_screen() {
    [ "$(place_on_screen | cut -d' ' -f3)" = 1280 ]
}

# As a hand does: a double click on the title bar, in the frame above the window.
maximise() {
    click 300 -8 2
    wait_until "the window fills the screen" fills_the_screen
}

minimise() {
    xdotool windowminimize "$player_window"
    wait_until "the window is minimised" no_main_window
}

no_main_window() {
    ! find_main_window
}

stay() {
    :
}

# end_after DEED: once more; started, then that is done to the window, then the program is ended.
end_after() {
    launch_player "$programs/quillmere"
    wait_until "the window has the keyboard" has_the_keys
    wait_until "the window is back in its place" is_where_it_was
    "$1"
    sleep 0.3  # for the program to hear of it
    kill "$player_pid"
    end_with_status_0
    expect "the place after: $1" "$(saved_place)" = "$saved"
}

open_test
start_window_manager
launch_player "$programs/quillmere"
wait_until "the window has the keyboard" has_the_keys
xdotool windowmove --sync "$player_window" 120 90
xdotool windowsize --sync "$player_window" 1010 700
place=$(place_on_screen)
kill "$player_pid"
end_with_status_0
saved=$(saved_place)
for deed in stay maximise minimise; do
    for ((ends = 0; ends < ${QUILLMERE_ENDS:-2}; ends++)); do
        end_after "$deed"
    done
done
