#!/bin/bash
# Quitting by key and being asked to end by the system store whether the toolbar is shown, then save both files.
. "$(dirname "$0")/lib.sh"
open_test
start
press ctrl+q
end_with_status_0
expect_text "$settings" "ToolbarOpen=true"
expect_file "$support_folder/Quillmere.xml"
expect_file "$support_folder/windowposition"

rm -r "$support_folder"
start
press ctrl+shift+t # hide the toolbar
kill -TERM "$player_pid"
end_with_status_0
expect_text "$settings" "ToolbarOpen=false"
expect_file "$support_folder/Quillmere.xml"
expect_file "$support_folder/windowposition"
