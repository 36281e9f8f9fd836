#!/bin/bash
# A tagged file names itself in the play list, and its information is shown and hidden by key.
. "$(dirname "$0")/lib.sh"
open_test
song="$stage/song with a name.m4a"
ffmpeg -v error -f lavfi -i sine=duration=2 -metadata track=7 -metadata artist='Björk & Ella' -metadata album='Café «Ö»' \
    -metadata copyright='© 2019 Süd' "$song"
start
add_track "$song"

panel_is_shown() {
    xdotool search --onlyvisible --name '^Track Information$'
}

panel_is_hidden() {
    ! panel_is_shown
}

double_click_first_row
press p ctrl+i
wait_until "the information is shown" panel_is_shown
press ctrl+2
wait_until "the information is hidden" panel_is_hidden
press ctrl+shift+f
quit_by_key

expect_text "$support_folder/Quillmere.xml" "<string>Björk &amp; Ella</string>"
expect_text "$support_folder/Quillmere.xml" "<string>Café «Ö»</string>"
expect_no_text "$support_folder/Quillmere.xml" "<string>7</string>"
