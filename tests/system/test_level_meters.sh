#!/bin/bash
# The meters panel is there from the start; its bars move while a track plays and are empty in a pause. The main window's
# keys work in it, Escape hides it, and a start without meters has no panel.
. "$(dirname "$0")/lib.sh"

panel_shown() {
    panel=$(xdotool search --onlyvisible --all --pid "$player_pid" --name '^Level Meters$')
}

panel_hidden() {
    ! panel_shown
}

# The panel's picture has a lit cell, of the colour 2C B9 CA.
panel_is_lit() {
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$panel" | grep -E '^(X|Y|WIDTH|HEIGHT)=[0-9]+$')"
    ffmpeg -hide_banner -loglevel error -y -f x11grab -draw_mouse 0 -video_size "${WIDTH}x$HEIGHT" \
        -i "$DISPLAY+$X,$Y" -frames:v 1 -pix_fmt rgb24 -f rawvideo "$stage/panel.rgb" </dev/null
    LC_ALL=C grep -qaP '\x2c\xb9\xca' "$stage/panel.rgb"
}

panel_is_dark() {
    ! panel_is_lit
}

open_test
start
wait_until "the panel is on the screen" panel_shown
panel_is_dark || fail "the bars are lit before anything plays"
measure make-tune "$stage/tune.wav" 20
add_track "$stage/tune.wav"
start_recording "$stage/sound.raw"
double_click_first_row
wait_for_sound
wait_until "the bars are lit" panel_is_lit

xdotool windowfocus --sync "$panel"
press p
wait_for_silence
wait_until "the bars are dark in the pause" panel_is_dark
press ctrl+1
wait_until "the panel is hidden by the main window's key" panel_hidden

xdotool windowfocus --sync "$player_window"
press ctrl+1
wait_until "the panel is back" panel_shown
xdotool windowfocus --sync "$panel"
press Escape
wait_until "the panel is hidden by Escape" panel_hidden
xdotool windowfocus --sync "$player_window"
stop_recording
quit_by_key

sed -i 's/^AudioLevels=.*/AudioLevels=false/' "$settings"
start
panel_hidden || fail "the panel is shown although the meters are not wanted"
quit_by_key
