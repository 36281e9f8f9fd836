#!/bin/bash
# A damaged play list gives the entries before the damage and is kept beside the new one; a position file of nonsense and
# a folder in the place of a file are ignored; a track that is gone or is no sound is not opened, and nothing crashes.
. "$(dirname "$0")/lib.sh"
open_test
mkdir -p "$support_folder"
entry() { # PATH
    cat <<XML
<dict><key>album</key><string> </string><key>artist</key><string> </string><key>bass</key><integer>128</integer>
<key>displayName</key><string>a track</string><key>duration</key><integer>88200</integer><key>timescale</key>
<integer>44100</integer><key>track</key><string>$1</string><key>treble</key><integer>128</integer></dict>
XML
}
echo "this is no sound" >"$stage/text.wav"
: >"$stage/empty.mp3"
{
    echo '<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array>'
    entry "$stage/gone.wav"
    entry "$stage/text.wav"
    echo '<dict><key>track</key><string>/cut/sho'
} >"$support_folder/Quillmere.xml"
cp "$support_folder/Quillmere.xml" "$stage/damaged.xml"
printf 'abc \377\376 nonsense' >"$support_folder/windowposition"

start
click 200 416 2 # the first entry: the file is gone
press Down Return # the second: no sound
press space l bracketleft bracketright Home Right minus p
wait_until "the program answers" find_main_window
close_main_window
end_with_status_0
expect_text "$support_folder/Quillmere.xml" "<string>$stage/gone.wav</string>"
expect_text "$support_folder/Quillmere.xml" "<string>$stage/text.wav</string>"
expect_no_text "$support_folder/Quillmere.xml" "/cut/sho"
kept=0
for file in "$support_folder"/*; do
    ! cmp -s "$file" "$stage/damaged.xml" || kept=$((kept + 1))
done
expect "copies of the damaged play list" "$kept" -eq 1

# Folders where files are expected: nothing can be read or written.
rm -r "$support_folder"
mkdir -p "$support_folder/Quillmere.xml" "$support_folder/windowposition"
start
press ctrl+o
wait_until "the open panel is on the screen" another_window_has_focus
type_text "$stage/empty.mp3"
press Return
wait_until "the file is refused" grep -q "loadFile: 2" "$player_log"
give_keys_to_main_window
close_main_window
end_with_status_0
