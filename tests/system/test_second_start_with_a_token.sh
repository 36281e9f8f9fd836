#!/bin/bash
# On Wayland no window comes to the front by itself. A second start by the desktop hands the leave that the desktop gave
# it, a token, to the first program, whose window then gets the keyboard. A second start without one ends with status 0
# as well, and the keyboard stays where it is.
. "$(dirname "$0")/lib.sh"

# A compositor that knows tokens. It refuses to run as root, so root runs it under another number.
start_compositor() {
    local as_user=()
    [ "$(id -u)" -ne 0 ] || as_user=(unshare --user --map-user=1000 --map-group=1000)
    "${as_user[@]}" true || cannot_run "root may not become another user here"
    printf '%s\n' 'xwayland disable' 'focus_on_window_activation focus' >"$stage/sway.config"
    WLR_BACKENDS=x11 WLR_RENDERER=pixman "${as_user[@]}" sway -c "$stage/sway.config" >"$stage/sway.log" 2>&1 </dev/null &
    stage_pids+=($!)
    wait_until "the compositor is up" find_compositor
    export QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY SWAYSOCK
}

find_compositor() {
    SWAYSOCK=$(find "$XDG_RUNTIME_DIR" -name 'sway-ipc.*.sock' | grep .) &&
        WAYLAND_DISPLAY=$(find "$XDG_RUNTIME_DIR" -name 'wayland-[0-9]' -printf '%f\n' | grep .) &&
        SWAYSOCK=$SWAYSOCK swaymsg -t get_outputs | grep -q current_mode
}

has_the_keys() {  # TITLE
    swaymsg -t get_tree | awk -F '"' -v title="$1" '
        /"focused":/ { focused = /true/ }
        /"name":/ && focused && $4 == title { found = 1 }
        END { exit !found }'
}

is_there() {  # TITLE
    swaymsg -t get_tree | grep -qF "\"name\": \"$1\""
}

give_keys() {  # TITLE
    swaymsg "[title=\"^$1\$\"] focus" >/dev/null
    wait_until "$1 has the keyboard" has_the_keys "$1"
}

# start_again [TOKEN]: ends with status 0 and says nothing.
start_again() {
    local status=0
    XDG_ACTIVATION_TOKEN=${1-} "$programs/quillmere" 2>"$stage/again.log" || status=$?
    expect "status of a second start" "$status" -eq 0
    expect "its words" "$(wc -c <"$stage/again.log")" -eq 0
}

open_test
start_compositor
player_log=$stage/player.log
"$programs/quillmere" 2>"$player_log" &
player_pid=$!
stage_pids+=("$player_pid")
wait_until "the level meters are shown" is_there 'Level Meters'
give_keys Quillmere

"$programs/drag_source" 0 0 &
stage_pids+=($!)
wait_until "another program has the keyboard" has_the_keys 'drag source'
start_again
sleep 0.5
has_the_keys 'drag source' || fail "the window came to the front without a token"
start_again not-a-token
sleep 0.5
has_the_keys 'drag source' || fail "the window came to the front with a token of nobody"
start_again "$("$programs/activation_token")"
wait_until "the window has the keyboard" has_the_keys Quillmere
press ctrl+q
end_with_status_0
