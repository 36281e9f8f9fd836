#!/bin/bash
# A preference that was changed by a click is on the disk by the time the click can be seen: the program may be killed
# at once and comes back with it.
. "$(dirname "$0")/lib.sh"
box="27 79" orange_tile="300 190" orange_dot="252 189" # places in the preferences window

open_preferences() {
    press ctrl+comma
    wait_until "the preferences window is on the screen" preferences_window
    preferences=$(preferences_window)
    xdotool windowmove --sync "$preferences" 400 690 # below the main window, which comes to the front as it has faded in
    xdotool mousemove --window "$preferences" 300 20 # off the controls, whose colours change under it
}

preferences_window() { windows_named '^Preferences$' | grep .; }
level_meters_are_shown() { windows_named '^Level Meters$' | grep -q .; }

click_preferences() { # X Y
    xdotool mousemove --window "$preferences" "$1" "$2" click 1
}

colour_at() { # X Y, in the preferences window: red, green and blue in six digits
    local X=0 Y=0
    eval "$(xdotool getwindowgeometry --shell "$preferences" | grep -E '^(X|Y)=-?[0-9]+$')"
    ffmpeg -hide_banner -loglevel error -f x11grab -draw_mouse 0 -video_size 2x2 -i "$DISPLAY+$((X + $1)),$((Y + $2))" \
        -frames:v 1 -f rawvideo -pix_fmt rgb24 - </dev/null | od -An -tx1 -N3 | tr -d ' \n'
}

is_aqua() { [ "$(colour_at "$1" "$2")" = 3fd2e2 ]; }

# Dark, but drawn: a box that is on or being pressed has far more green.
is_dark() {
    local colour
    colour=$(colour_at "$1" "$2")
    [ "$colour" != 000000 ] && [[ ${colour:2:2} < 60 ]]
}

kill_at_once() {
    kill -9 "$player_pid"
    wait "$player_pid" || true
}

open_test
start
wait_until "the level meters are shown" level_meters_are_shown
open_preferences
wait_until "the box is on" is_aqua $box
click_preferences $box
wait_until "the box is off" is_dark $box
kill_at_once
expect_text "$settings" "AudioLevels=false"

start
open_preferences
wait_until "the box is off again" is_dark $box
! level_meters_are_shown || fail "the level meters are shown again"
wait_until "the orange tile is not chosen" is_dark $orange_dot
click_preferences $orange_tile
wait_until "the orange tile is chosen" is_aqua $orange_dot
kill_at_once
expect_text "$settings" "TextColor=2"

start
open_preferences
wait_until "the orange tile is chosen again" is_aqua $orange_dot
expect "keys in the settings" "$(grep -c = "$settings")" -eq 2
xdotool windowfocus --sync "$preferences"
press Escape
give_keys_to_main_window
quit_by_key
