#!/bin/bash
# The first minute: each act that comes to nothing says why on the status line, which screen readers read, and its button
# or key does something about it. Play without a selected row selects what there is to play; Record opens its session.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
listen_to_line
start_window_manager
start
wait_until "the player is on the bus" on_the_bus

no_file_panel() {
    ! window_is_shown '^Open$'
}

give_window_the_keys() {
    xdotool windowactivate --sync "$player_window"
}

# Nothing there yet.
empty="The play list is empty: drop a file on it, or open one"
press space
wait_until "play says that the list is empty" line_says "$empty"
press F8
wait_until "its button asks for a file" window_is_shown '^Open$'
press Escape
wait_until "the panel is gone" no_file_panel
give_window_the_keys
press Home
wait_until "so does a key that goes to the start" line_says "$empty"

# A track that is listed and not loaded, and one that was moved away.
measure make-coded "$stage/song.wav" 20
measure make-coded "$stage/moved.wav" 5
for file in moved song; do
    before=$(opened_count)
    press ctrl+o
    wait_until "the open panel is on the screen" window_is_shown '^Open$'
    sleep 0.3
    type_text "$stage/$file.wav"
    press Return
    wait_until "$file is opened" opened_more_than "$before"
    wait_until "the panel is gone" no_file_panel
    give_window_the_keys
done
mv "$stage/moved.wav" "$stage/elsewhere.wav"
press Down Down ctrl+Return
wait_until "a file that is gone is told, and where it was" line_says "moved.wav cannot be found in $stage"
"$programs/accessible_tree" list | grep -q 'moved.*file not found' || fail "the row does not say that its file is gone"
press ctrl+e
wait_until "an export without a track says why" line_says "No track is loaded"
mv "$stage/elsewhere.wav" "$stage/moved.wav"
press ctrl+Return
wait_until "the file is found again" loaded_file_is moved.wav
! "$programs/accessible_tree" list | grep -q 'moved.*file not found' || fail "the row still says that its file is gone"

# A click below the rows leaves the selection, and Space plays.
click 300 560
start_recording "$stage/space.raw"
press space
wait_for_sound
press p
wait_for_silence
stop_recording
expect "what plays" "$(metadata | grep -c moved)" -ge 1

# Del where no list is.
press Tab Tab Tab BackSpace
wait_until "Del says where it works" line_says "Del removes a track when the play list has the keyboard"
press F8 Delete
wait_until "the button leads there, and Del removes" line_says "Removed moved.wav"

# No microphone: the window opens, and what cannot be done is told.
give_window_the_keys
press ctrl+r
wait_until "Record opens the recording window" find_recording_window
wait_until "it says that there is no input" line_says "There is no sound input: connect one, then start Quillmere again"
expect_no_file "$HOME/Desktop/Quillmere.mov"
give_window_the_keys
quit_by_key
