#!/bin/bash
# Ctrl+E and the save panel by keys: the movie holds every sample and the speed, and replaces even the open file. The
# track goes on playing meanwhile. A long export that is cancelled by Esc leaves nothing.
. "$(dirname "$0")/lib.sh"
open_test
start
desktop=$HOME/Desktop
mkdir "$desktop"

ask_where_to_export() {
    press ctrl+e
    wait_until "the save panel is on the screen" another_window_has_focus
}

# export_to PATH: through the save panel, with the path typed.
export_to() {
    ask_where_to_export
    type_text "$1"
    press Return
    give_keys_to_main_window
}

panel() { # TITLE: its window
    windows_named "^$1\$" | grep .
}

no_panel() { # TITLE
    ! panel "$1"
}

two_panels() { # TITLE
    [ "$(panel "$1" | wc -l)" -eq 2 ]
}

decoded() { # FILE: the samples that another player decodes
    ffmpeg -v error -i "$1" -f s16le - | sha256sum
}

is_movie_of() { # FILE SAMPLES
    [ "$(head -c 8 "$1" | tail -c 4)" = ftyp ] && [ "$(decoded "$1")" = "$2" ]
}

stated_rate() { # FILE: the preferred rate in the movie's header, in units of 1/65536
    local at
    at=$(grep -obaF mvhd "$1" | tail -n 1 | cut -d: -f1)
    od -An -td4 --endian=big -j $((at + 24)) -N 4 "$1" | tr -d ' '
}

files_on_desktop() {
    find "$desktop" -type f | wc -l
}

something_is_written() {
    [ "$(find "$desktop" -name '.*' -type f -size +1M | wc -l)" -eq 1 ]
}

# A sound of three hours that cannot be copied, so that its export takes a while.
make_long_track() {
    local i
    ffmpeg -v error -f lavfi -i sine=frequency=440:sample_rate=44100:duration=60 -c:a libmp3lame "$stage/minute.mp3"
    for ((i = 0; i < 180; i++)); do echo "file '$stage/minute.mp3'"; done >"$stage/minutes"
    ffmpeg -v error -f concat -safe 0 -i "$stage/minutes" -c copy "$1"
}

add_coded_track 8
press 1 # half speed
samples=$(decoded "$coded")

ask_where_to_export
press Return # where and as it is proposed
give_keys_to_main_window
wait_until "the proposed file is there" is_movie_of "$desktop/coded.mov" "$samples"
expect "rate" "$(stated_rate "$desktop/coded.mov")" -eq 32768

press 3 # normal speed
start_recording "$stage/playing.raw"
press space
wait_for_sound
export_to "$desktop/played.mov"
wait_until "the file is there" is_movie_of "$desktop/played.mov" "$samples"
wait_recorded 1
press p
wait_for_silence
stop_recording
analyse
expect "jumps while exporting" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "rate" "$(stated_rate "$desktop/played.mov")" -eq 65536

ask_where_to_export
type_text "$coded" # the file that is open
press Return
wait_until "a question is asked" two_panels Save
press alt+y
give_keys_to_main_window
wait_until "the open file is replaced" is_movie_of "$coded" "$samples"
press Home
play_recorded 1
expect "first frame after that" "$(values "$runs" source | sed -n 1p)" -eq 0

make_long_track "$stage/long.mp3"
add_track "$stage/long.mp3"
export_to "$desktop/long.mov"
wait_until "the export's panel is on the screen" panel Export
xdotool windowfocus --sync "$(panel Export)"
start_recording "$stage/meanwhile.raw"
press space # the player's keys work meanwhile
wait_for_sound
stop_recording
wait_until "something is written" something_is_written
press Escape
wait_until "the panel is gone" no_panel Export
expect "files" "$(files_on_desktop)" -eq 2
give_keys_to_main_window

quit_by_key
expect_text "$support_folder/Quillmere.xml" "<string>$stage/long.mp3</string>"
