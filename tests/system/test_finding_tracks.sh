#!/bin/bash
# From track to track and to a track by its name, with the keyboard alone: next and previous, the find field, letters in
# the list, and the menu at the selected row.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
tree() {
    "$programs/accessible_tree" "$@"
}

line_says() {
    tree list | grep "notification \"$1\"" | grep -q showing
}

names_of_list() {
    grep -o '<string>/[^<]*\.wav</string>' "$support_folder/Quillmere.xml"
}

start
wait_until "the player is on the bus" on_the_bus
for name in Zephyr Blau Autumn; do
    measure make-coded "$stage/$name.wav" 20
    add_track "$stage/$name.wav"
done

press Home
press period
wait_until "the next track is loaded" loaded_file_is Blau.wav
wait_until "it plays" property_is PlaybackStatus Playing
press ctrl+Down
wait_until "the last one is loaded" loaded_file_is Zephyr.wav
press period
wait_until "the end is told" line_says "This is the last track"
press comma
wait_until "the one before is loaded" loaded_file_is Blau.wav

# The field: letters that are keys of the player are text there.
press ctrl+f
type_text "aut"
wait_until "the count is told" line_says "1 of 3 tracks found"
press Return
wait_until "Return plays what was found" loaded_file_is Autumn.wav
press Escape

# Letters lead to titles once F6 led to the list; then they are the player's again.
press F6 z Return
wait_until "a letter leads to a title, Return plays it" loaded_file_is Zephyr.wav
press 2
wait_until "a digit is the speed again" property_is Rate 0.75

# The menu of the selected row, whose last item removes it.
press shift+F10 Up Return
press Down
press Menu Up Return
quit_by_key
expect "tracks in the list" "$(names_of_list | wc -l)" -eq 1
names_of_list | grep -q Blau || fail "the menus removed other rows than the selected ones"
