#!/bin/bash
# Closing the main window saves the play list and the window's place and ends with status 0, also while a track plays;
# the toolbar's state is not stored. The next start shows the same list.
. "$(dirname "$0")/lib.sh"
open_test
start
expect_no_file "$support_folder/Quillmere.xml"
add_coded_track 5
press space
close_main_window
end_with_status_0

expect_file "$support_folder/Quillmere.xml"
expect_file "$support_folder/windowposition"
expect_text "$support_folder/Quillmere.xml" "<string>$coded</string>"
expect_text "$support_folder/Quillmere.xml" "<integer>220500</integer>"
expect_no_text "$settings" ToolbarOpen

start
close_main_window
end_with_status_0
expect "entries after the second start" "$(grep -c "<string>$coded</string>" "$support_folder/Quillmere.xml")" -eq 1
