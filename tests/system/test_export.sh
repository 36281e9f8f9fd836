#!/bin/bash
# Ctrl+E and the save panel by keys: the movie holds every sample and the speed, and plays when its source is gone. The
# track goes on playing meanwhile. A long export is cancelled by Esc and by closing the window, and nothing is left.
. "$(dirname "$0")/lib.sh"
open_test
start
mkdir "$HOME/Desktop"

# export_to PATH: through the save panel, with the path typed.
export_to() {
    press ctrl+e
    wait_until "the save panel is on the screen" another_window_has_focus
    type_text "$1"
    press Return
    give_keys_to_main_window
}

decoded() { # FILE: the samples that another player decodes
    ffmpeg -v error -i "$1" -f s16le - | sha256sum
}

stated_rate() { # FILE: the preferred rate in the movie's header, as signed 16.16
    local at
    at=$(grep -obaF mvhd "$1" | tail -n 1 | cut -d: -f1)
    od -An -td4 --endian=big -j $((at + 24)) -N 4 "$1" | tr -d ' '
}

hidden_files() {
    find "$HOME/Desktop" -name '.*' -type f | grep .
}

add_coded_track 8
press 1 # half speed
before=$(decoded "$coded")

press ctrl+e
wait_until "the save panel is on the screen" another_window_has_focus
press Return # where and as it is proposed
give_keys_to_main_window
wait_until "the proposed file is written" test -s "$HOME/Desktop/coded.mov"
expect "rate" "$(stated_rate "$HOME/Desktop/coded.mov")" -eq 32768
expect "samples" "$(decoded "$HOME/Desktop/coded.mov")" = "$before"

press 3 # normal speed
start_recording "$stage/playing.raw"
press space
wait_for_sound
export_to "$stage/played.mov"
wait_until "the file is written" test -s "$stage/played.mov"
wait_recorded 1
press p
wait_for_silence
stop_recording
analyse
expect "jumps while exporting" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "rate" "$(stated_rate "$stage/played.mov")" -eq 65536

press Home ctrl+e
wait_until "the save panel is on the screen" another_window_has_focus
type_text "$coded" # the file that is open
press Return
wait_until "a question is asked" window_named_is_there '^Save$'
sleep 0.5
press alt+y
give_keys_to_main_window
wait_until "the open file is replaced" is_a_movie "$coded"
expect "samples" "$(decoded "$coded")" = "$before"
play_recorded 1
expect "first frame from the file that was replaced" "$(values "$runs" source | sed -n 1p)" -eq 0

export_to "/nowhere/at/all.mov"
sleep 0.5
give_keys_to_main_window
