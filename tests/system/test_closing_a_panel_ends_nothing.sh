#!/bin/bash
# A panel's close button closes that panel: nothing is saved and nothing ends. The main window's ends the program.
. "$(dirname "$0")/lib.sh"

panel_is_gone() {
    ! window_is_shown "^$1\$"
}

# close_panel KEY NAME: opens a panel by its key and closes it by its frame.
close_panel() {
    press "$1"
    wait_until "$2 is on the screen" window_is_shown "^$2\$"
    close_window "$(windows_named "^$2\$")"
    wait_until "$2 is closed" panel_is_gone "$2"
    wait_until "the main window is alone" only_the_main_window
    focus_window "$player_window"
}

open_test
start
wait_until "the level meters are shown" window_is_shown '^Level Meters$'
add_coded_track 2
press ctrl+1
wait_until "the level meters are hidden" panel_is_gone 'Level Meters'
close_panel ctrl+1 'Level Meters'
close_panel ctrl+i 'Track Information'
close_panel ctrl+comma Preferences
close_panel ctrl+4 Recording
close_panel ctrl+5 Recorder
close_panel F1 'Keyboard Shortcuts'
expect_no_file "$support_folder/Quillmere.xml"
expect_no_text "$settings" ToolbarOpen
close_main_window
end_with_status_0
expect_file "$support_folder/Quillmere.xml"
