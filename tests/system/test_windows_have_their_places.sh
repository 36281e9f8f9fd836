#!/bin/bash
# Under a window manager with frames the main window and every panel stand wholly on the screen when they are first
# shown, at every size and sharpness of it, and cover no control; a film fills the screen and comes back.
. "$(dirname "$0")/lib.sh"

# place_of WINDOW: "left top right bottom" on the screen, in pixels, of what the program draws; frame_of: of its frame.
place_of() {
    xwininfo -id "$1" | awk '
        /Absolute upper-left X/ { x = $NF } /Absolute upper-left Y/ { y = $NF } /Width:/ { w = $NF }
        /Height:/ { print x, y, x + w, y + $NF }'
}

frame_of() {
    {
        place_of "$1"
        xprop -id "$1" _NET_FRAME_EXTENTS | sed -n 's/.*= //; s/,//gp'
    } | awk 'NR == 1 { split($0, p) } NR == 2 { split($0, f) }
        END { print p[1] - f[1], p[2] - f[3], p[3] + f[2], p[4] + f[4] }'
}

# Without end it would wait for a window that the window manager gives no focus.
focus() {  # WINDOW
    timeout 5 xdotool windowfocus --sync "$1" || true
}

stands_still() {  # WINDOW
    local before
    before=$(frame_of "$1")
    sleep 0.2
    [ "$(frame_of "$1")" = "$before" ]
}

# expect_on_screen WHAT WINDOW
expect_on_screen() {
    local left top right bottom
    read -r left top right bottom < <(frame_of "$2")
    expect "$1 on $screen: left edge" "$left" -ge 0
    expect "$1 on $screen: upper edge" "$top" -ge 0
    expect "$1 on $screen: right edge" "$right" -le "${screen%x*}"
    expect "$1 on $screen: lower edge" "$bottom" -le "${screen#*x}"
}

# covers FRAME X Y WIDTH HEIGHT: whether the frame lies over that part of the main window, in its own logical pixels.
covers() {
    awk -v frame="$1" -v x="$2" -v y="$3" -v w="$4" -v h="$5" -v scale="$scale" -v main="$(place_of "$player_window")" '
    BEGIN {
        split(frame, f, " ")
        split(main, m, " ")
        from = m[1] + x * scale; to = from + w * scale; above = m[2] + y * scale; below = above + h * scale
        exit !(f[1] < to && f[3] > from && f[2] < below && f[4] > above)
    }'
}

# The areas of the main window at its first size: hero, transport, loop, speed, pitch, tone, record bar.
controls=("16 78 632 168" "16 246 350 120" "378 246 270 120" "660 78 304 138" "660 228 304 138" "660 378 304 194"
    "660 584 304 54")

expect_no_control_covered() {  # WHAT WINDOW
    local frame area
    frame=$(frame_of "$2")
    for area in "${controls[@]}"; do
        ! covers "$frame" $area || fail "$1 on $screen at $scale covers the controls at $area"
    done
}

window_of() {
    windows_named "^$1\$" | head -n 1
}

# look_at TITLE [FREE]: once it has come; FREE if there is room for it beside the controls.
look_at() {
    local window
    wait_until "$1 is on the screen" window_is_shown "^$1\$"
    window=$(window_of "$1")
    wait_until "$1 stands still" stands_still "$window"
    expect_on_screen "$1" "$window"
    [ -z "${2-}" ] || expect_no_control_covered "$1" "$window"
}

# look_by_key KEY TITLE [FREE]
look_by_key() {
    focus "$player_window"
    press "$1"
    look_at "$2" "${3-}"
    focus "$(window_of "$2")"
    press Escape
    wait_until "$2 is gone" is_gone "$2"
}

is_gone() {
    ! window_is_shown "^$1\$"
}

has_the_keys() {
    [ "$(xdotool getwindowfocus)" = "$player_window" ]
}

# begin SIZE SCALE: the program, for the first time, on a screen of that size.
begin() {
    screen=$1 scale=$2
    rm -f "$stage/display"
    start_screen "$screen"
    start_window_manager
    rm -rf "$support_folder" "$settings"
    export QT_SCALE_FACTOR=$scale
    launch_player "$programs/quillmere"
    wait_until "the window has the keyboard" has_the_keys
    wait_until "the main window stands still" stands_still "$player_window"
    expect_on_screen "the main window" "$player_window"
}

end() {
    kill "$player_pid"
    end_with_status_0
    end_process "${stage_pids[-2]}"  # the window manager goes before its screen
    end_process "$screen_pid"
}

look_at_panels() {
    look_by_key ctrl+4 "Recording" free
    look_by_key ctrl+5 "Recorder" free
    focus "$player_window"
    press Down  # the information is of the selected row
    look_by_key ctrl+2 "Track Information" free
    look_by_key ctrl+comma "Preferences"
    look_by_key F1 "Keyboard Shortcuts"
}

maximise() {
    focus "$player_window"
    click $((300 * ${scale%.*})) -8 2
    wait_until "the window fills the screen" fills_the_screen
}

fills_the_screen() {
    local left top right bottom
    read -r left top right bottom < <(frame_of "$player_window")
    [ "$left" -le 0 ] && [ "$right" -ge "${screen%x*}" ]
}

# Above the play list of a window that fills 1280 x 800, and at its right, there are controls.
leaves_controls_alone() {  # WINDOW
    ! covers "$(frame_of "$1")" 0 0 1280 412 && ! covers "$(frame_of "$1")" 887 0 390 800
}

frame_is() {  # WINDOW FRAME
    [ "$(frame_of "$1")" = "$2" ]
}

look_at_film() {
    local window frame whole="0 0 ${screen/x/ }"
    focus "$player_window"
    press ctrl+o
    wait_until "the open panel is on the screen" another_window_has_focus
    type_text "$stage/film.mp4"
    press Return
    look_at "Video" free
    window=$(window_of "Video")
    frame=$(frame_of "$window")
    focus "$player_window"
    press F11
    wait_until "the film fills the screen" frame_is "$window" "$whole"
    press Escape
    wait_until "Esc brings the film back" frame_is "$window" "$frame"
    timeout 5 xdotool mousemove --window "$window" 60 60 click --repeat 2 --delay 60 1
    wait_until "a double click lets the film fill the screen" frame_is "$window" "$whole"
    xdotool click --repeat 2 --delay 60 1
    wait_until "a double click brings the film back" frame_is "$window" "$frame"
    press Escape
    wait_until "the film's window is closed" is_gone "Video"
}

open_test
ffmpeg -hide_banner -loglevel error -y -f lavfi -i testsrc=size=320x180:rate=25:duration=2 \
    -f lavfi -i sine=440:duration=2 -c:v mpeg4 -c:a aac "$stage/film.mp4" </dev/null

for size in "1280x800 1" "1366x768 1" "1920x1080 1.5" "2560x1600 2"; do
    begin ${size% *} ${size#* }
    look_at "Level Meters" free
    ! covers "$(frame_of "$(window_of "Level Meters")")" 0 0 980 650 || fail "the meters cover the main window on $screen"
    look_at_film
    look_at_panels
    end
done

# Over a window that is maximised the meters leave the controls alone, and stand beside it again afterwards.
begin 1280x800 1
look_at "Level Meters" free
meters=$(window_of "Level Meters")
before=$(frame_of "$meters")
maximise
wait_until "the meters make room for the controls of a full window" leaves_controls_alone "$meters"
expect_on_screen "the meters over a full window" "$meters"
click 300 -8 2
wait_until "the meters stand beside the window again" frame_is "$meters" "$before"
end

# A screen that is smaller than the main window: it is filled.
begin 1366x768 1.5
wait_until "the window fills the small screen" fills_the_screen
look_at "Level Meters"
end
