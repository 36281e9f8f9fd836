#!/bin/bash
# A removed track comes back by Ctrl+Z and by the message's button. The keys that remove do so only in the list.
. "$(dirname "$0")/lib.sh"
open_test
copy=$support_folder/Quillmere.unsaved.xml

track_is_in_list() {
    grep -q "$stage/coded.wav" "$copy"
}

list_is_empty() {
    grep -q '<array/>' "$copy"
}

start
measure make-coded "$stage/coded.wav" 1
add_track "$stage/coded.wav"
wait_until "the track is in the list" track_is_in_list
press Down Delete
wait_until "the track is removed" list_is_empty
press ctrl+z
wait_until "the track is back" track_is_in_list
press BackSpace
wait_until "the track is removed again" list_is_empty
press F8
wait_until "the message's button brings it back" track_is_in_list

press Tab Delete BackSpace
quit_by_key
expect_text "$support_folder/Quillmere.xml" "$stage/coded.wav"
