#!/bin/bash
# Installed, and moved to another place, the program is whole: it plays a track with the engine that was installed with it
# and asks the update server by the module that was.
. "$(dirname "$0")/lib.sh"
open_test
cmake --install "$(dirname "$programs")" --prefix "$stage/first" >"$stage/install.log"
mv "$stage/first" "$stage/moved"
installed=$stage/moved

finished_check() {
    grep -q 'Finished software update check' "$player_log"
}

measure make-coded "$stage/coded.wav" 5
start_player "$installed/bin/quillmere"
wait_until "the update server was asked" finished_check
add_track "$stage/coded.wav"
start_recording "$stage/sound.raw"
double_click_first_row
wait_for_sound
wait_for_silence
stop_recording
for module in engine network; do
    expect_text "/proc/$player_pid/maps" "$installed/lib/quillmere/quillmere-$module.so"
done
expect_no_text "/proc/$player_pid/maps" "$(dirname "$programs")/"
analyse
expect "the frames heard" "$(values "$runs" length | total)" -gt $((4 * 44100))
quit_by_key

"$installed/bin/quillmere-render" "$stage/coded.wav" "$stage/rendered.wav"
expect_file "$stage/rendered.wav"
for file in applications/org.quillmere.Quillmere.desktop metainfo/org.quillmere.Quillmere.metainfo.xml man/man1/quillmere.1 \
    man/man1/quillmere-render.1 doc/quillmere/copyright icons/hicolor/256x256/apps/quillmere.png; do
    expect_file "$installed/share/$file"
done
