#!/bin/bash
# The program has no command line: options (the toolkit's own, too), files and nonsense are ignored.
. "$(dirname "$0")/lib.sh"
open_test
measure make-coded "$stage/coded.wav" 2
for arguments in "--help" "--version -rate 2" "$stage/coded.wav" "/nonexistent -- -x" \
    "-qwindowtitle Junk -platform offscreen"; do
    # shellcheck disable=SC2086 # several arguments
    start $arguments
    expect "lines on standard output" "$(wc -l <"$stage/player.out")" -eq 0
    close_main_window
    end_with_status_0
    expect_no_text "$player_log" "loadFile"
    expect_text "$support_folder/Quillmere.xml" "<array/>"
done
