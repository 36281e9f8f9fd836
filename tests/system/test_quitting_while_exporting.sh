#!/bin/bash
# Quitting by key or by the window's close button while a movie is written asks first. Esc stays; "Finish the export, then
# quit" ends the program when the movie is whole; "Quit now" leaves nothing. Signals and the message bus ask nobody.
. "$(dirname "$0")/lib.sh"

# make_track FILE MINUTES: one whose export takes a while.
make_track() {
    local i
    for ((i = 0; i < $2; i++)); do echo "file '$stage/minute.mp3'"; done >"$stage/minutes"
    ffmpeg -v error -f concat -safe 0 -i "$stage/minutes" -c copy "$1"
}

something_is_written() {
    [ "$(find "$desktop" -name '.*' -type f -size +200k | wc -l)" -eq 1 ]
}

files_on_desktop() {
    find "$desktop" -type f | wc -l
}

export_panel() {
    windows_named '^Export$' | grep .
}

# export_track FILE: adds it and begins to write it.
export_track() {
    add_track "$1"
    press ctrl+e
    wait_until "the save panel is on the screen" another_window_has_focus
    press Return
    wait_until "something is written" something_is_written
    wait_until "the export's panel is on the screen" export_panel
    export_window=$(export_panel)
    xdotool windowfocus --sync "$player_window"
}

question() {
    another_window_has_focus && [ "$(xdotool getwindowfocus)" != "$export_window" ] &&
        xdotool getwindowgeometry --shell "$(xdotool getwindowfocus)" | grep -q '^WIDTH=420$' # and not the screen
}

quit_and_see_the_question() {
    "$@"
    wait_until "the question is on the screen" question
}

open_test
start_bus
desktop=$HOME/Desktop
mkdir "$desktop"
ffmpeg -v error -f lavfi -i sine=frequency=440:sample_rate=44100:duration=60 -c:a libmp3lame "$stage/minute.mp3"
make_track "$stage/short.mp3" 60
make_track "$stage/long.mp3" 180

start
export_track "$stage/long.mp3"
quit_and_see_the_question press ctrl+q
press Escape
wait_until "the question is gone" eval '! question'
export_panel >/dev/null || fail "the export was given up"
xdotool windowfocus --sync "$player_window"
quit_and_see_the_question close_main_window
[ -z "${QUILLMERE_QUESTION_PICTURE-}" ] || ffmpeg -hide_banner -loglevel error -y -f x11grab -draw_mouse 0 \
    -video_size 1280x1024 -i "$DISPLAY" -frames:v 1 "$QUILLMERE_QUESTION_PICTURE" </dev/null
press shift+Tab Return # to the one before the first
end_with_status_0
expect "files" "$(files_on_desktop)" -eq 0

start
export_track "$stage/long.mp3"
kill "$player_pid"
end_with_status_0
expect "files" "$(files_on_desktop)" -eq 0

start
export_track "$stage/long.mp3"
wait_until "the program is on the bus" on_the_bus
bus_call "$remote" /org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Quit || true
end_with_status_0
expect "files" "$(files_on_desktop)" -eq 0

start
export_track "$stage/short.mp3"
quit_and_see_the_question close_main_window
press Return
end_with_status_0
expect "files" "$(files_on_desktop)" -eq 1
length=$(ffprobe -v error -show_entries format=duration -of csv=p=0 "$desktop/short.mov")
expect "minutes of the movie" "$(awk -v s="$length" 'BEGIN { printf "%d", s / 60 + 0.5 }')" -eq 60
expect_text "$support_folder/Quillmere.xml" "<string>$stage/short.mp3</string>"
