#!/bin/bash
# Choosing a pane makes the preferences window as high as that pane and leaves its top left corner, in the time of a
# short movement, or at once when the desktop asks for no motion: without a window manager and with one. The command that
# opens the window closes it again.
. "$(dirname "$0")/lib.sh"

place() {
    xdotool getwindowgeometry --shell "$preferences" | grep -E '^(X|Y|WIDTH|HEIGHT)=' | cut -d = -f 2 | tr '\n' ' '
}

open_preferences() {
    press ctrl+comma
    wait_until "the preferences are on the screen" window_is_shown '^Preferences$'
    preferences=$(windows_named '^Preferences$')
    xdotool windowfocus --sync "$preferences"
    corner=$(place | cut -d ' ' -f 1,2)
}

place_is() {
    [ "$(place)" = "$corner 480 $1 " ]
}

sizes() {
    grep "^$preferences size" "$stage/timeline" || true
}

# choose_pane KEY HEIGHT: presses the key, and counts the different sizes that the window has from then on.
choose_pane() {
    local before
    before=$(sizes | wc -l)
    press "$1"
    wait_until "the window is $2 high" place_is "$2"
    different_sizes=$(sizes | tail -n +$((before + 1)) | sort -u | wc -l)
}

walk_through_panes() {
    watch_windows
    launch_player "$programs/quillmere"
    wait_until "the main window has the keyboard" main_window_has_focus
    open_preferences
    wait_until "the general pane is shown" place_is 320
    press Tab
    choose_pane Right 202
    choose_pane Right 240
    expect "different sizes" "$different_sizes" -ge "$1"
    expect "different sizes" "$different_sizes" -le "$2"
    choose_pane Left 202
    choose_pane Left 320
    press ctrl+comma
    give_keys_to_main_window
    quit_by_key
}

main_window_has_focus() {
    [ "$(xdotool getwindowfocus)" = "$player_window" ]
}

open_test
walk_through_panes 3 1000
start_window_manager
walk_through_panes 3 1000
start_bus
mkfifo "$stage/changes"
"$programs/desktop_settings" off <"$stage/changes" >"$stage/portal" &
stage_pids+=($!)
exec 5>"$stage/changes"
wait_until "the desktop's settings can be asked for" grep -q ready "$stage/portal"
walk_through_panes 1 1
echo on >&5
wait_until "the setting is changed" grep -q changed "$stage/portal"
walk_through_panes 3 1000
