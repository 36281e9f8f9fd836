#!/bin/bash
# A file that the desktop opens with the program and that it cannot play, or that is not there, is told of by its name
# on the status line, and a screen reader hears it; the window comes to the front for it.
. "$(dirname "$0")/lib.sh"
open_test
start_window_manager
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1

open_as_desktop() {
    gdbus call --session --timeout 60 --dest org.quillmere.Quillmere --object-path /org/quillmere/Quillmere \
        --method org.freedesktop.Application.Open "['$1']" "{}" >/dev/null
}

heard() {
    grep -q "showing notification \".*$1" "$stage/heard"
}

main_window_is_hidden() {
    ! find_main_window
}

start
wait_until "the player is on the bus" on_the_bus
"$programs/accessible_tree" watch >"$stage/heard" &
stage_pids+=($!)
wait_until "the program is listened to" grep -q watching "$stage/heard"
touch "$stage/a song.flac"
xdotool windowminimize "$player_window"
wait_until "the window is minimised" main_window_is_hidden
open_as_desktop "file://$stage/a%20song.flac"
wait_until "the window is back" find_main_window
wait_until "what is wrong is told of" heard 'a song.flac is damaged'
open_as_desktop "file://$stage/not%20there.wav"
wait_until "the missing file is told of" heard 'not there.wav'
open_as_desktop "https://example.org/song.mp3"
wait_until "the address is told of" heard 'example.org'
quit_by_key
