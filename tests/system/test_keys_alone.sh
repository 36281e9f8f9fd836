#!/bin/bash
# The whole job without the mouse: open a track, select and play it, slow it down, set A and B and loop between them; go
# to a control by Tab and use it; go through the menus; open and close a panel.
. "$(dirname "$0")/lib.sh"
meters_are_hidden() {
    ! window_is_shown '^Level Meters$'
}

open_test
start_bus
start
wait_until "the player is on the bus" on_the_bus
wait_until "the level meters are shown" window_is_shown '^Level Meters$'
press ctrl+1  # a desktop may give them the keyboard
wait_until "the level meters are hidden" meters_are_hidden
give_keys_to_main_window

coded=$stage/coded.wav
measure make-coded "$coded" 20
add_track "$coded"
start_recording "$stage/first.raw"
press Down Return
wait_for_sound
press p
wait_for_silence
press Home
stop_recording

press minus minus minus
wait_until "it is slower" property_is Rate 0.85
press 3
wait_until "the speed is normal" property_is Rate 1
set_marks 3 4
press l Home
play_recorded 4.5
expect_exact_loop 44100

# From the list by Tab: its two buttons, then the transport. Space plays whatever has the focus, Return presses it.
press Tab Tab Tab Tab Tab Tab
press space
wait_until "Space plays" property_is PlaybackStatus Playing
press Return
wait_until "Return presses the button with the focus" property_is PlaybackStatus Paused
press shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab shift+Tab

# A menu, by F10 and by its letter.
press F10 Down Return
wait_until "the first item of the first menu opens its panel" another_window_has_focus
press Escape
give_keys_to_main_window
press alt+s Down Return
wait_until "the second item of the Sound menu makes it faster" property_is Rate 1.05

# A panel closes by key, and its window's keys are the player's.
press F1
wait_until "the shortcuts are shown" window_is_shown '^Keyboard Shortcuts$'
focus_window "$(windows_named '^Keyboard Shortcuts$')"
press Escape
give_keys_to_main_window
quit_by_key
