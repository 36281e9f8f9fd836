#!/bin/bash
# A track that was added is on the disk a moment later, beside the play list's own file, which is written at the end. A
# program that was killed offers its list at the next start: the message's button brings it back, and it is kept when
# nobody presses it. A quit leaves nothing to offer.
. "$(dirname "$0")/lib.sh"
open_test
own_file=$support_folder/Quillmere.xml
copy=$support_folder/Quillmere.unsaved.xml
offers='did not end properly; its list of one track'

offers_made() {
    grep -c "$offers" "$player_log" || true
}

kill_with_a_track() {
    add_track "$stage/coded.wav"
    wait_until "the track is in the copy" grep -q "$stage/coded.wav" "$copy"
    kill -9 "$player_pid"
    wait "$player_pid" || true
}

list_is_offered() {
    [ "$(offers_made)" -eq "$1" ]
}

measure make-coded "$stage/coded.wav" 1
start
kill_with_a_track
expect_no_file "$own_file"
start
wait_until "the list is offered" list_is_offered 1
press F8
quit_by_key
expect_text "$own_file" "$stage/coded.wav"
expect_no_file "$copy"

rm "$own_file"
start
kill_with_a_track
start
wait_until "the list is offered" list_is_offered 2
quit_by_key
expect_no_text "$own_file" "$stage/coded.wav"
expect_no_file "$copy"
expect_text "$support_folder/Quillmere.unsaved (not brought back).xml" "$stage/coded.wav"

start
add_track "$stage/coded.wav"
wait_until "the track is in the copy" grep -q "$stage/coded.wav" "$copy"
quit_by_key
expect_text "$own_file" "$stage/coded.wav"
expect_no_file "$copy"
expect "lists offered" "$(offers_made)" -eq 2
