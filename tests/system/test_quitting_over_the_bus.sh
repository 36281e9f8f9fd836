#!/bin/bash
# Quit over the bus ends the program as its own Quit does, also while a panel is open, and the caller gets its answer. The
# program of another home has a name of its own; without a bus there is a line in the log and nothing else.
. "$(dirname "$0")/lib.sh"

names_are() {  # NAME...: the players on the bus, in this order
    bus_call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.ListNames |
        grep -o "$remote[.a-z0-9]*" | sort >"$stage/names"
    printf '%s\n' "$@" | cmp -s - "$stage/names"
}

quit_over_the_bus() {
    rm -r "$support_folder"
    sed -i /ToolbarOpen/d "$settings"
    remote_call Quit
    end_with_status_0
    expect_text "$settings" "ToolbarOpen=true"
    expect_file "$support_folder/Quillmere.xml"
    expect_file "$support_folder/windowposition"
}

open_test
start
wait_until "the log says that there is no bus" grep -q "No session bus" "$player_log"
quit_by_key

start_bus
start
wait_until "the first is on the bus" names_are "$remote"
first_pid=$player_pid
mkdir -m 700 "$stage/another_home"
HOME=$stage/another_home XDG_CONFIG_HOME=$stage/another_home/.config start
wait_until "the second has a name of its own" names_are "$remote" "$remote.instance$player_pid"
kill "$player_pid"  # no key: the first takes the keyboard when its window has faded in
end_with_status_0
wait_until "the second has left the bus" names_are "$remote"
player_pid=$first_pid
quit_over_the_bus

start
wait_until "the program is on the bus" names_are "$remote"
press ctrl+o
wait_until "the open panel is on the screen" another_window_has_focus
quit_over_the_bus
