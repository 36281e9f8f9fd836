#!/bin/bash
# A start that hears of a newer release says so in a panel, from which the web site is one button away; the download keeps
# the window drawn but hears nobody, and puts the whole image on the desktop. With the check switched off a start asks no
# server; the menu's command does each time, with a panel of its own. A program that is ended in the middle of a download
# ends, and leaves nothing of it.
. "$(dirname "$0")/lib.sh"

help_x=347 menu_y=13  # the Help menu in the menu bar

# serve MAJOR MINOR BUILD
serve() {
    server_folder=$stage/server
    rm -rf "$server_folder"
    mkdir "$server_folder"
    head -c 3000000 /dev/urandom >"$server_folder/Quillmere.dmg"
    "$programs/update_server" "$server_folder" "$@" &
    server_pid=$!
    stage_pids+=("$server_pid")
    wait_until "the server listens" test -s "$server_folder/address"
    QUILLMERE_UPDATE_SERVER=$(cat "$server_folder/address")
    export QUILLMERE_UPDATE_SERVER
}

panel_shown() {
    panel=$(windows_named '^Software Update$' | head -n 1)
    [ -n "$panel" ]
}

panels_are() {  # COUNT
    [ "$(windows_named '^Software Update$' | grep -c .)" -eq "$1" ]
}

# A browser that only writes down what it is to open.
make_browser() {
    mkdir "$stage/browser"
    printf '#!/bin/sh\necho "$1" >>%s\n' "$stage/visited" >"$stage/browser/xdg-open"
    chmod +x "$stage/browser/xdg-open"
    PATH=$stage/browser:$PATH
}

check_by_menu() {
    xdotool windowfocus --sync "$player_window"
    click $help_x $menu_y
    press Down Down Down Return  # the third of its items
}

panel_has_keys() {
    panel_shown && [ "$(xdotool getwindowfocus)" = "$panel" ]
}

panel_hidden() {
    ! panel_shown
}

escape_closes() {
    xdotool windowfocus "$panel"
    press Escape
    panel_hidden
}

was_asked_for() {
    grep -qxF "$1" "$server_folder/requests"
}

checks_finished() {  # COUNT
    [ "$(grep -cxF 'Finished software update check for Quillmere.' "$player_log")" -eq "$1" ]
}

# The panel's picture, as bytes, in a file.
panel_picture() {
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$panel" | grep -E '^(X|Y|WIDTH|HEIGHT)=[0-9]+$')"
    ffmpeg -hide_banner -loglevel error -y -f x11grab -draw_mouse 0 -video_size "${WIDTH}x$HEIGHT" \
        -i "$DISPLAY+$X,$Y" -frames:v 1 -pix_fmt rgb24 -f rawvideo "$1" </dev/null
}

picture_changes() {
    panel_picture "$stage/later.rgb"
    ! cmp -s "$stage/first.rgb" "$stage/later.rgb"
}

open_test
make_browser
image=$HOME/Desktop/Quillmere.dmg
serve 5 92 0
start
wait_until "the newer release is announced" panel_has_keys
expect_text "$player_log" "Starting software update check for Quillmere."
press Tab Tab Return
wait_until "the web site is opened" test -s "$stage/visited"
expect "what is opened" "$(cat "$stage/visited")" = "$QUILLMERE_UPDATE_SERVER/quillmere/"
press shift+Tab shift+Tab Return
wait_until "the image is asked for" was_asked_for /Download/Quillmere.dmg
panel_picture "$stage/first.rgb"
wait_until "the bar moves" picture_changes
expect_no_file "$image"
press ctrl+q Escape
panel_picture "$stage/first.rgb"
wait_until "the bar moves on" picture_changes
touch "$server_folder/go"
wait_until "the image is on the desktop" test -e "$image"
cmp "$image" "$server_folder/Quillmere.dmg" || fail "the image is not what the server sent"
expect "files on the desktop" "$(find "$HOME/Desktop" -type f | wc -l)" -eq 1
panel_shown || fail "the panel is gone though nobody could close it"
wait_until "keys are heard again" escape_closes
xdotool windowfocus --sync "$player_window"
quit_by_key

sed -i '/^SoftwareUpdateCheck=/d; /^\[General\]/a SoftwareUpdateCheck=false' "$settings"
rm "$server_folder/requests"
start
expect_no_text "/proc/$player_pid/maps" libQt6Network  # the start does not pay for what it may not need
check_by_menu
wait_until "the check that was asked for is finished" checks_finished 2
wait_until "its result is shown" panel_has_keys
check_by_menu
wait_until "the second check is finished" checks_finished 3
wait_until "each has a panel" panels_are 2
press Escape
wait_until "Escape closes one of them" panels_are 1
wait_until "Escape closes the other one" escape_closes
xdotool windowfocus --sync "$player_window"
quit_by_key
expect "requests" "$(wc -l <"$server_folder/requests")" -eq 2
checks_finished 3 || fail "a check that was switched off ran"

sed -i 's/^SoftwareUpdateCheck=.*/SoftwareUpdateCheck=true/' "$settings"
rm "$image" "$server_folder/go" "$server_folder/requests"
start
wait_until "the newer release is announced" panel_has_keys
press Return
wait_until "the image is asked for" was_asked_for /Download/Quillmere.dmg
kill "$player_pid"
end_with_status_0
expect "files on the desktop" "$(find "$HOME/Desktop" -type f | wc -l)" -eq 0
