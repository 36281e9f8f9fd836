# Wayland in place of X on the stage: a compositor whose screen is the virtual screen, so that keys and clicks come from
# the same hand, and what it shows can be seen. What a Wayland client may not know of its windows, the compositor tells.
# Sourced by scripts/stage.sh, whose functions of the same names these replace.
#
# A window is named by its process and its surface: 4711.16. Its place is that of its contents, without the frame that the toolkit draws.

start_screen() {
    start_x_screen
    export QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=wayland-stage
    settle_compositor
    weston --backend=x11-backend.so --use-pixman --width=1280 --height=1024 --debug \
        --socket="$WAYLAND_DISPLAY" --config="$stage/weston.ini" >"$stage/weston.log" 2>&1 </dev/null &
    screen_pid=$!
    stage_pids+=("$screen_pid")
    wait_until "the compositor is up" test -S "$XDG_RUNTIME_DIR/$WAYLAND_DISPLAY"
    wait_until "the compositor's screen is there" grep -q 'x11 output .*, window id' "$stage/weston.log"
    weston-debug proto 2>/dev/null | grep --line-buffered -E \
        'ev wl_keyboard@[0-9]+[.](enter|leave)|[.]start_drag|ev wl_data_source@[0-9]+[.]target[(]"[a-z]' \
        >"$stage/messages" &
    stage_pids+=($!)
}

# Nothing but the windows. The compositor's own client, which paints the background, is one that does nothing: the hand
# would get hold of its pointer's picture instead of the window below.
settle_compositor() {
    printf '%s\n' '#!/bin/bash' 'exec cat <&"$WAYLAND_SOCKET" >/dev/null' >"$stage/shell-client"
    chmod +x "$stage/shell-client"
    printf '%s\n' '[core]' 'idle-time=0' '[shell]' "client=$stage/shell-client" 'locking=false' 'animation=none' \
        'startup-animation=none' 'close-animation=none' 'focus-animation=none' '[input-method]' 'path=' \
        >"$stage/weston.ini"
}

# One line for each window, the uppermost first: PROCESS WINDOW LEFT TOP RIGHT BOTTOM of the whole window, the same four
# of its contents, and its title.
windows_on_screen() {
    timeout 20 weston-debug scene-graph | awk '
        function line() { if (title != "") print process, process "." surface, whole, inside == "" ? whole : inside, title }
        function numbers() { sub(/->/, ""); gsub(/[^-0-9 ]/, ""); $1 = $1; return $0 }
        function number_after(word) {
            match($0, word " [0-9]+")
            return substr($0, RSTART + length(word) + 1, RLENGTH - length(word) - 1)
        }
        /^\tView / { line(); title = inside = "" }
        /role xdg_toplevel/ { process = number_after("PID"); surface = number_after("surface ID")
                              match($0, /top-level window \047.*\047 of /)
                              title = substr($0, RSTART + 18, RLENGTH - 23) }
        /^\t\tposition:/ { whole = numbers() }
        /^\t\t\[opaque:/ { inside = numbers() }
        END { line() }'
}

windows_of() {  # PROCESS TITLE
    local process window title
    while read -r process window _ _ _ _ _ _ _ _ title; do
        [ "$process" != "$1" ] || ! grep -qE -- "$2" <<<"$title" || echo "$window"
    done < <(windows_on_screen) | sort -u
}

find_main_window() {
    windows_named '^Quillmere$' | grep .
}

# Keys are lost while the keyboard goes from the main window to the panel that comes with it.
start_player() {
    launch_player "$@"
    wait_until "the keyboard stays where it is" keyboard_rests
    focus_window "$player_window"
}

keyboard_rests() {
    local before
    before=$(wc -l <"$stage/messages")
    sleep 1
    [ "$before" -gt 0 ] && [ "$(wc -l <"$stage/messages")" -eq "$before" ]
}

# The surface that the compositor last gave the keyboard to, none after it has been taken away.
focused_surface() {
    grep wl_keyboard "$stage/messages" | sed -n '$s/.*[.]enter([0-9]*, wl_surface@\([0-9]*\),.*/\1/p'
}

window_has_focus() {
    [ "$(focused_surface)" = "${1#*.}" ]
}

# The level meters have it when they are shown, whatever the program asks for.
another_window_has_focus() {
    local focus meters
    focus=$(focused_surface)
    meters=$(windows_named '^Level Meters$')
    [ -n "$focus" ] && [ "$focus" != "${player_window#*.}" ] && [ "$focus" != "${meters#*.}" ]
}

# focus_window WINDOW: by a click at the left or right edge of its contents, where no other window covers it. On a title a
# click is the beginning of a move. While a window has panels this compositor gives the keyboard to the newest of them.
focus_window() {
    local place
    window_has_focus "$1" && return
    [ "$1" != "$player_window" ] || [ "$(windows_named .)" = "$1" ] || return 0
    place=$(windows_on_screen | awk -v window="$1" '
        function isCovered(x, y,   i) {
            for (i = 1; i <= above; ++i)
                if (x >= left[i] && x <= right[i] && y >= top[i] && y <= bottom[i]) return 1
            return 0
        }
        $2 == window { for (side = 1; side <= 2; ++side)
                           for (y = $10 - 4; y > $8; y -= 4) {
                               x = side == 1 ? $7 + 3 : $9 - 4
                               if (!isCovered(x, y)) { print x, y; exit } } }
        { ++above; left[above] = $3; top[above] = $4; right[above] = $5; bottom[above] = $6 }')
    [ -n "$place" ] || fail "no part of the edge of window $1 can be clicked"
    click_on_screen $place
    wait_until "the window $1 has the keyboard" window_has_focus "$1"
}

# close_window WINDOW: by the button in its frame.
close_window() {
    click_on_screen $(windows_on_screen | awk -v window="$1" '$2 == window { print $5 - 17, $4 + 15 }')
}

# click_on_screen X Y: comes to rest there first.
click_on_screen() {
    xdotool mousemove $(($1 - 2)) $(($2 - 1)) sleep 0.05 mousemove "$1" "$2" sleep 0.1 click 1
}

drag_has_begun() {
    what_is_dragged | grep -q .
}

drag_is_answered() {
    what_is_dragged | grep -q answered
}

# After a drag somebody gets the keyboard again.
what_is_dragged() {
    awk '/start_drag/ { state = "begun" } /target/ { state = "answered" } /keyboard.*enter/ { state = "" }
         END { print state }' "$stage/messages"
}

window_place() {
    windows_on_screen | awk -v window="$1" '$2 == window { print $7, $8, $9 - $7, $10 - $8 }'
}

# click X Y [COUNT]: at a place of the main window's contents.
click() {
    point "$player_window" "$1" "$2"
    xdotool click --repeat "${3:-1}" --delay 60 1
}
