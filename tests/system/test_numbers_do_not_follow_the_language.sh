#!/bin/bash
# Under a language that writes numbers with a comma, files and settings keep the point, and a stored gain of 0.25 is
# heard as 0.25.
. "$(dirname "$0")/lib.sh"
open_test
localedef -i de_DE -f UTF-8 "$stage/de_DE.UTF-8"
export LOCPATH=$stage LC_ALL=de_DE.UTF-8 LANG=de_DE.UTF-8
expect "the language's decimal point" "$(locale decimal_point)" = ,
mkdir -p "$(dirname "$settings")"
printf '[General]\nDefaultAudioLevel=0.25\n' >"$settings"

start
gain=0.25
add_coded_track 4
start_recording "$stage/quiet.raw"
press space
wait_for_sound
wait_recorded 1
press p
wait_for_silence
stop_recording
quit_by_key

analyse
expect "frames heard at a quarter" "$(values "$runs" length | largest)" -gt 22050
expect_text "$settings" "DefaultAudioLevel=0.25"
expect_text "$support_folder/Quillmere.xml" "<integer>176400</integer>"
expect_text "$support_folder/windowposition" " "
expect_no_text "$support_folder/windowposition" ","
