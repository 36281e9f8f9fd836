#!/bin/bash
# The main window is on the screen from the start, but transparent. It becomes visible step by step, each step on the
# screen when it is taken, and the keyboard is its own only when all of it is there: without a window manager, and with
# one, which gives it to every new window.
. "$(dirname "$0")/lib.sh"

timeline_of_main_window() {
    awk -v window="$player_window" '$1 == window' "$stage/timeline"
}

has_the_keys() {
    timeline_of_main_window | grep -q keys
}

# Different values that the screen server was told at least 30 ms after the one before.
steps_apart() {
    awk '$2 == "opacity" && $3 != value && (count == 0 || $5 - last >= 30) { count++; last = $5; value = $3 }
         END { print count + 0 }' "$stage/fade"
}

fade_in() {
    watch_windows
    launch_player "$programs/quillmere"
    wait_until "the main window has the keyboard" has_the_keys
    timeline_of_main_window >"$stage/fade"
    expect "the steps before the keyboard" "$(sed '/keys/,$d' "$stage/fade" | grep -c opacity)" -ge 20
    expect "the steps after the keyboard" "$(sed '1,/keys/d' "$stage/fade" | grep -c opacity)" -eq 0
    expect "steps one after the other" "$(steps_apart)" -ge 10
    expect "the last step" "$(awk '$2 == "opacity" { print $3 }' "$stage/fade" | tail -n 1)" = 1.00
    quit_by_key
}

open_test
fade_in
start_window_manager
fade_in
