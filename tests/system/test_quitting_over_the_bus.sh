#!/bin/bash
# Quit over the bus ends the program as its own Quit does; a second instance has a name of its own; without a bus there
# is a line in the log and nothing else.
. "$(dirname "$0")/lib.sh"
open_test
start
wait_until "the log says that there is no bus" grep -q "No session bus" "$player_log"
quit_by_key

start_bus
names() {
    dbus-send --print-reply=literal --dest=org.freedesktop.DBus /org/freedesktop/DBus \
        org.freedesktop.DBus.ListNames | grep -o 'org.mpris.MediaPlayer2.quillmere[.a-z0-9]*' | sort
}
names_are() {
    [ "$(names | wc -l)" -eq "$1" ]
}
start
wait_until "the first is on the bus" names_are 1
first_pid=$player_pid
start
wait_until "the second is on the bus" names_are 2
expect "the second's name" "$(names | tail -n 1)" = "org.mpris.MediaPlayer2.quillmere.instance$player_pid"
quit_by_key
player_pid=$first_pid
dbus-send --dest=org.mpris.MediaPlayer2.quillmere /org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Quit
end_with_status_0
expect_file "$settings"
