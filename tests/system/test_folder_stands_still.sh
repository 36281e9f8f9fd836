#!/bin/bash
# A mounted folder stops answering while a track of it is played and others are opened: the window lives on, another
# track opens at once, the user is told, and every way to quit ends the program at once, with the play list written.
. "$(dirname "$0")/lib.sh"

mount_folder() {
    mkdir -p "$stage/behind" "$stage/mounted"
    cp "$stage/coded.wav" "$stage/behind/far.wav"
    "$programs/standing_folder" "$stage/behind" "$stage/mounted" >"$stage/mount.log" 2>&1 &
    mount_pid=$!
    stage_pids+=("$mount_pid")
    wait_until "the folder is mounted, or cannot be" mounted_or_not
    if ! grep -q mounted "$stage/mount.log"; then
        cannot_run "$(cat "$stage/mount.log")"
    fi
}

mounted_or_not() {
    grep -q . "$stage/mount.log"
}

folder_stands() {
    kill -USR1 "$mount_pid"
}

folder_goes_on() { # a new one in its place
    kill -TERM "$mount_pid"
    wait "$mount_pid" || true
    mount_folder
}

asked_more_than() { # the line that the program logs when it begins to open a file
    [ "$(grep -c '^loadFile: 2' "$player_log")" -gt "$1" ]
}

begin_to_open() { # the row with the keyboard
    local before
    before=$(grep -c '^loadFile: 2' "$player_log" || true)
    press Return
    wait_until "the file is being opened" asked_more_than "$before"
}

open_row() { # HOW...: what the user does to it
    local before
    before=$(opened_count)
    "$@"
    wait_until "the row's file is opened" opened_more_than "$before"
}

open_test
start_bus
measure make-coded "$stage/coded.wav" 60
mount_folder
start
add_track "$stage/coded.wav"
add_track "$stage/mounted/far.wav"
wait_until "the program is on the bus" on_the_bus

# It is played from there; the end of its track waits for the file, and nobody waits for that.
open_row double_click_first_row
wait_for_play
folder_stands
open_row press Down Return
wait_until "the near track is loaded" loaded_file_is coded.wav
wait_for_play

# It is opened there: whatever is asked for after it comes at once.
press Up
begin_to_open
open_row press Down Return
wait_until "the near track is loaded again" loaded_file_is coded.wav
wait_for_play

# Nothing is asked for after it: it cannot be read.
press Up
begin_to_open
wait_until "the log says that it does not answer" grep -q "far.wav: does not answer" "$player_log"
expect "status" "$(read_property PlaybackStatus)" = Stopped

# What the system keeps of a program whose file does not answer keeps nobody from starting it again.
start_beside_it() {
    local left_pid=$player_pid
    start
    quit_by_key
    player_pid=$left_pid
}

no_window() {
    ! window_is_shown .
}

for way in "press ctrl+q" "kill -TERM \$player_pid" close_main_window "remote_call Quit"; do
    begin_to_open
    rm -f "$support_folder/Quillmere.xml"
    eval "$way"
    wait_until "the windows are gone" no_window
    [ "$way" != "press ctrl+q" ] || start_beside_it
    folder_goes_on
    ends_at_once
    expect_text "$support_folder/Quillmere.xml" far.wav
    [ "$way" != "remote_call Quit" ] || break
    : >"$stage/player.log"
    start
    wait_until "the program is on the bus" on_the_bus
    xdotool mousemove 0 0 # a pointer that is where it is to go is waited for in vain
    open_row double_click_first_row
    folder_stands
done
