#!/bin/bash
# Every window comes to the screen with something drawn in it, closes by Esc and leaves the keyboard to the player, and
# the desktop is asked for nothing that it cannot do: standard error holds the program's own words only. The pictures
# stay beside the stage's other files.
. "$(dirname "$0")/lib.sh"

panel_is_gone() {
    ! window_is_shown "^$1\$"
}

# has_contents FILE.png: dark and light, which an empty window has not.
has_contents() {
    ffprobe -v error -f lavfi -i "movie=$1,signalstats" -show_entries frame_tags=lavfi.signalstats.YLOW,lavfi.signalstats.YMIN,lavfi.signalstats.YMAX \
        -of default=noprint_wrappers=1:nokey=0 |
        awk -F = '/YMIN/ { least = $2 } /YMAX/ { most = $2 } END { exit !(most - least >= 80) }'
}

is_drawn() {  # TITLE FILE.png
    picture "$2" "$(windows_named "^$1\$")" && has_contents "$2"
}

# see TITLE: the window has come, and is not empty.
see() {
    wait_until "the window $1 is on the screen" window_is_shown "^$1\$"
    wait_until "something is drawn in the window $1" is_drawn "$1" "$stage/${1//[^A-Za-z]/-}.png"
}

# see_panel TITLE KEY...: opens it, sees it and closes it.
see_panel() {
    press "${@:2}"
    see "$1"
    close_panel "$1"
}

close_panel() {  # TITLE
    focus_window "$(windows_named "^$1\$")"
    press Escape
    wait_until "the window $1 is gone" panel_is_gone "$1"
    wait_until "the main window is alone" only_the_main_window
    focus_window "$player_window"
}

make_film() {
    ffmpeg -v error -y -f lavfi -i "testsrc=size=320x180:rate=25:duration=4" -f lavfi -i "sine=duration=4" \
        -c:v mpeg4 -q:v 4 -c:a aac "$1" </dev/null
}

# What the program has not written itself.
foreign_words() {
    grep -vE '^(loadFile: [0-9]+|No session bus: |Starting software update check|checkForUpdate: |Finished software update check|sound output: )' \
        "$player_log"
}

open_test
add_microphone
make_film "$stage/film.mp4"
start
see Quillmere
see 'Level Meters'
press ctrl+1
wait_until "the level meters are hidden" panel_is_gone 'Level Meters'
see_panel 'Open' ctrl+o
see_panel Preferences ctrl+comma
see_panel 'Keyboard Shortcuts' F1
see_panel 'About Quillmere' alt+h Up Return
see_panel Recording ctrl+4
see_panel Recorder ctrl+5

press ctrl+o
wait_until "the open panel has the keyboard" another_window_has_focus
type_text "$stage/film.mp4"
press Return
see Video
close_panel Video
press Down ctrl+Return
see Video
close_panel Video
see_panel 'Track Information' ctrl+i
see_panel Save ctrl+e
quit_by_key
expect "words of others on standard error" "$(foreign_words)" = ""
