#!/bin/bash
# The main window comes back as large as it was, also where a program cannot place its windows; and what is kept of its
# place is what was kept before, however often the program ends.
. "$(dirname "$0")/lib.sh"

has_its_size() {
    local X Y WIDTH HEIGHT
    read -r X Y WIDTH HEIGHT <<<"$(window_place "$player_window")"
    [ "$WIDTH $HEIGHT" = "1010 700" ]
}

open_test
mkdir -p "$support_folder"
printf '120 140 1010 700 0 0 1280 1024 ' >"$support_folder/windowposition"
for ((ends = 0; ends < 3; ends++)); do
    start
    wait_until "the window has its size" has_its_size
    sleep 0.3  # for the program to hear of its place
    quit_by_key
    expect "the place" "$(cut -d' ' -f1-4 "$support_folder/windowposition")" = "120 140 1010 700"
done
