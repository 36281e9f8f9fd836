#!/bin/bash
# A file whose name is no UTF-8, and one with a control character in its name, are opened, stay in the list over a
# restart, and play then. The names of all other files stand in the list as they are.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
latin=$stage/$(printf 'caf\351.wav')
bell=$stage/$(printf 'bell\007.wav')
plain=$stage/$(printf 'plain caf\303\251.wav')
measure make-coded "$latin" 10
cp "$latin" "$bell"
cp "$latin" "$plain"

start
wait_until "the player is on the bus" on_the_bus
remote_call Player.OpenUri "string:file://$stage/plain%20caf%C3%A9.wav"
wait_until "an ordinary file is loaded" loaded_file_is plain%20caf%C3%A9.wav
remote_call Player.OpenUri "string:file://$stage/bell%07.wav"
wait_until "a name with a bell is loaded" loaded_file_is bell%07.wav
remote_call Player.OpenUri "string:file://$stage/caf%E9.wav"
wait_until "a name in Latin-1 is loaded" loaded_file_is caf%E9.wav
quit_by_key
list=$support_folder/Quillmere.xml
expect_text "$list" "<string>file://$stage/caf%E9.wav</string>"
expect_text "$list" "<string>file://$stage/bell%07.wav</string>"
expect_text "$list" "<string>$plain</string>"
cp "$list" "$stage/first.xml"

start
for name in caf%E9.wav bell%07.wav plain%20caf%C3%A9.wav; do
    if [ "$name" = caf%E9.wav ]; then click 200 416; else press Down; fi
    start_recording "$stage/played.raw"
    press Return
    wait_for_sound
    wait_until "$name is loaded" loaded_file_is "$name"
    press p
    wait_for_silence
    stop_recording
done
quit_by_key
cmp "$list" "$stage/first.xml" || fail "the list has changed over the restart"
