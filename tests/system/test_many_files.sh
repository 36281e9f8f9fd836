#!/bin/bash
# Four hundred files through the open panel: the message bus and the keys are answered while they are added, the line
# tells how far it is, the last one ends on top and loaded, and Cancel keeps what has been added.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
listen_to_line
start_window_manager
start
wait_until "the player is on the bus" on_the_bus
"$programs/accessible_tree" watch >"$stage/heard" &
stage_pids+=($!)
heard() {
    grep -qF -- "$1" "$stage/heard"
}
wait_until "the program is listened to" heard watching

mkdir "$stage/album"
measure make-coded "$stage/album/000.wav" 1
for ((i = 1; i < 400; i++)); do
    cp "$stage/album/000.wav" "$(printf '%s/album/%03d.wav' "$stage" "$i")"
done

# choose_all: every file of the folder, in the open panel.
choose_all() {
    local panel
    xdotool windowactivate --sync "$player_window"
    press ctrl+o
    wait_until "the open panel is on the screen" window_is_shown '^Open$'
    panel=$(windows_named '^Open$')
    xdotool windowfocus --sync "$panel"
    sleep 0.5
    type_text "$stage/album"
    press Return
    sleep 2  # the panel reads the folder
    eval "$(xdotool getwindowgeometry --shell "$panel")"
    xdotool mousemove --window "$panel" $((WIDTH * 6 / 10)) $((HEIGHT * 4 / 10)) click 1
    sleep 1  # the first click may have closed the list of names that the field offers
    xdotool click 1
    press ctrl+a Return
}

choose_all
wait_until "the first file is opened" opened_more_than 0
seen=
while [ "$(opened_count)" -lt 400 ]; do
    read_property PlaybackStatus >/dev/null
    seen="$seen$(opened_count)
"
done
answers=$(sort -un <<<"$seen" | awk '$1 > 0 && $1 < 400' | wc -l)
wait_until "the end is told" heard 'showing notification "Added 400 files"'
expect "moments between two files at which the bus was answered" "$answers" -ge 10
grep -qE 'showing notification "Adding [0-9]+ of 400 files"' "$stage/heard" || fail "the progress is not told"
expect "times that the progress came into view" "$(grep -c 'showing notification "Adding' "$stage/heard")" -le 4
expect "files opened" "$(opened_count)" -eq 400
loaded_file_is 399.wav || fail "the last file is not the loaded one"

choose_all
wait_until "more files are opened" opened_more_than 404
press F8
wait_until "it stops" grep -qE 'showing notification "Added [0-9]+ of 400 files"' "$stage/heard"
kept=$(opened_count)
expect "files that were added" "$kept" -lt 800
press Down
sleep 1
expect "files that were added" "$(opened_count)" -eq "$kept"
quit_by_key
tracks=$(grep -A 1 '<key>track</key>' "$support_folder/Quillmere.xml" | grep -o '[0-9]*\.wav')
expect "entries" "$(count_of "$tracks")" -eq "$kept"
expect "the first row below those of the second time" "$(sed -n "$((kept - 399))p" <<<"$tracks")" = 399.wav
expect "the last row" "$(tail -n 1 <<<"$tracks")" = 000.wav
