#!/bin/bash
# A file manager opens files with the program as it is installed: over the bus, which starts the program where none runs,
# and otherwise with the one that runs, whose window comes to the front, also when it is minimised. Names with spaces and
# such that are no text come along. What is not there or is no file leaves the track as it is.
. "$(dirname "$0")/lib.sh"

application=org.quillmere.Quillmere
installed=

# open_as_desktop URI...: the call that a file manager makes.
open_as_desktop() {
    local uris
    uris=$(printf ", '%s'" "$@")
    gdbus call --session --timeout 60 --dest "$application" --object-path /org/quillmere/Quillmere \
        --method org.freedesktop.Application.Open "[${uris#, }]" "{'activation-token': <'token_TIME0'>}" \
        >/dev/null
}

act_as_desktop() {  # METHOD ARGUMENTS...
    gdbus call --session --timeout 60 --dest "$application" --object-path /org/quillmere/Quillmere \
        --method "org.freedesktop.Application.$1" "${@:2}"
}

is_there() {
    bus_call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner "string:$application" |
        grep -q true
}

# The program that the bus has started, as if the test had.
take_started_program() {
    wait_until "the program is on the bus" is_there
    player_pid=$(bus_call org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.GetConnectionUnixProcessID "string:$application" | grep -o '[0-9]*$')
    stage_pids+=("$player_pid")
    player_log=$stage/bus.log
    wait_until "its window is on the screen" find_main_window
    player_window=$(find_main_window)
}

quit_started_program() {
    remote_call Quit
    wait_until "the program has ended" player_has_ended
    wait_until "its name is free" is_gone
}

is_gone() {
    ! is_there
}

main_window_has_focus() {
    [ "$(xdotool getactivewindow)" = "$player_window" ]
}

main_window_is_hidden() {
    ! find_main_window
}

programs_running() {
    bus_call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.ListNames | grep -o "$remote" | wc -l
}

open_test
cmake --install "$(dirname "$programs")" --prefix "$stage/installed" >"$stage/install.log"
installed=$stage/installed/share
export XDG_DATA_DIRS=$installed:/usr/share PATH=$stage/installed/bin:$PATH
desktop-file-validate "$installed/applications/$application.desktop" || fail "the desktop file is not right"
update-desktop-database "$installed/applications"
start_window_manager
start_bus
for name in one two "three with spaces" $'four caf\351'; do
    measure make-coded "$stage/$name.wav" 10
done
ffmpeg -hide_banner -loglevel error -i "$stage/one.wav" "$stage/five.flac" </dev/null

# None runs: the desktop finds the program by the kind of the file, and the bus starts it.
gio mime audio/x-wav >"$stage/kinds" 2>&1
expect_text "$stage/kinds" "$application.desktop"
gio open "$stage/one.wav"
take_started_program
expect "the program's file" "$(readlink "/proc/$player_pid/exe")" = "$stage/installed/bin/quillmere"
wait_until "the file is loaded" loaded_file_is one.wav
expect "rows" "$(read_property CanPlay)" = true
quit_started_program

# The same call, with a name that has spaces; then another while the window is not yet all there.
open_as_desktop "file://$stage/three%20with%20spaces.wav"
take_started_program
open_as_desktop "file://$stage/two.wav"
wait_until "the second file is loaded" loaded_file_is two.wav
wait_until "the window has the focus" main_window_has_focus
first_pid=$player_pid

# It runs, behind another window of its own, and minimised.
press ctrl+4
wait_until "another window has the focus" another_window_has_focus
open_as_desktop "file://$stage/four%20caf%E9.wav"
wait_until "a name that is no text is loaded" loaded_file_is four%20caf%E9.wav
wait_until "the window has the focus again" main_window_has_focus
xdotool windowminimize "$player_window"
wait_until "the window is minimised" main_window_is_hidden
gio open "$stage/three with spaces.wav"
wait_until "the file is loaded" loaded_file_is three%20with%20spaces.wav
wait_until "the window is back" find_main_window
wait_until "the window has the focus" main_window_has_focus
xdotool windowminimize "$player_window"
wait_until "the window is minimised" main_window_is_hidden
act_as_desktop Activate "{}" >/dev/null
wait_until "the window is back" find_main_window

# A kind that neither the open panel nor a drop takes.
gio mime audio/flac >"$stage/kinds" 2>&1
expect_text "$stage/kinds" "$application.desktop"
gio open "$stage/five.flac"
wait_until "the file is loaded" loaded_file_is five.flac

# Several at once come one after another; the last one is loaded, and plays.
open_as_desktop "file://$stage/two.wav" "file://$stage/one.wav"
wait_until "the last one is loaded" loaded_file_is one.wav
start_recording "$stage/played.raw"
remote_call Player.PlayPause
wait_for_sound
remote_call Player.PlayPause
wait_for_silence
stop_recording

# What cannot be opened changes nothing.
open_as_desktop "file://$stage/not%20there.wav" "file://$stage" "https://example.org/song.mp3"
wait_until "it is said in the log" grep -q 'not opened: https' "$player_log"
expect_text "$player_log" "not opened: file://$stage/not%20there.wav"
expect_text "$player_log" "not opened: file://$stage"
loaded_file_is one.wav || fail "another track is loaded"

# The action of the program's icon asks for files; another is refused.
act_as_desktop ActivateAction openFile "[]" "{}" >/dev/null
wait_until "the open panel is on the screen" another_window_has_focus
open_as_desktop "file://$stage/two.wav"  # waits for the answer
press Escape
wait_until "it is loaded after the answer" loaded_file_is two.wav
! act_as_desktop ActivateAction clearList "[]" "{}" 2>"$stage/refused" || fail "an action that is none was taken"
expect_text "$stage/refused" "no such action"

expect "one program" "$player_pid" -eq "$first_pid"
expect "players on the bus" "$(programs_running)" -eq 1
quit_started_program
expect "tracks in the list" "$(grep -cE "<string>(file://)?$stage/" "$support_folder/Quillmere.xml")" -eq 9

# Started by hand in the same moment: one program, which gets the file.
"$stage/installed/bin/quillmere" >"$stage/by_hand.out" 2>"$stage/by_hand.log" &
stage_pids+=($!)
open_as_desktop "file://$stage/two.wav"
take_started_program
wait_until "the file is loaded" loaded_file_is two.wav
expect "players on the bus" "$(programs_running)" -eq 1
quit_started_program
