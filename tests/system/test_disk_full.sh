#!/bin/bash
# A disk that is full: the user is told what cannot be kept, the former list stays whole, a recording ends where the room
# ends and plays, an export leaves nothing behind. When there is room again everything is kept.
. "$(dirname "$0")/lib.sh"

if [ -z "${QUILLMERE_SMALL_DISK-}" ]; then  # mounts of its own, so that nobody else sees the small disk
    unshare --mount --map-root-user true 2>/dev/null || cannot_run "nothing can be mounted here"
    disk=$(mktemp -d)
    status=0
    QUILLMERE_SMALL_DISK=$disk unshare --mount --map-root-user bash "$0" "$@" || status=$?
    rmdir "$disk"
    exit "$status"
fi

fill_disk() {
    dd if=/dev/zero of="$HOME/filler" bs=4k 2>/dev/null || true
    [ "$(df --output=avail "$HOME" | tail -n 1)" -eq 0 ] || fail "the disk is not full"
}

make_room() {  # KIBIBYTES
    truncate -s "-${1}K" "$HOME/filler"
}

line_says() {
    "$programs/accessible_tree" list | grep 'notification "' | grep -q "$1"
}

list_holds() {  # FILE COUNT
    [ "$(grep -c "/song[0-9].wav</string>" "$1")" -eq "$2" ]
}

load_first_row() {
    local before
    before=$(opened_count)
    press Home Down ctrl+Return
    wait_until "the track is loaded" opened_more_than "$before"
}

recording_has_ended() {
    grep -q '^recording ended: No space left on device' "$player_log"
}

open_test
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
mount -t tmpfs -o size=6m small "$QUILLMERE_SMALL_DISK"
export HOME=$QUILLMERE_SMALL_DISK
export XDG_CONFIG_HOME=$HOME/.config XDG_CACHE_HOME=$HOME/.cache XDG_DATA_HOME=$HOME/.local
support_folder="$HOME/Library/Application Support/Quillmere"
for number in 1 2 3; do measure make-coded "$stage/song$number.wav" 10; done
measure make-coded "$stage/spoken.wav" 12
add_microphone
copy="$support_folder/Quillmere.unsaved.xml"
list="$support_folder/Quillmere.xml"

start
add_track "$stage/song1.wav"
quit_by_key
list_holds "$list" 1 || fail "the list is not saved"
cp "$list" "$stage/list.before"

start
add_track "$stage/song2.wav"
wait_until "the copy holds the new track" list_holds "$copy" 2
load_first_row
fill_disk
press Right bracketleft
wait_until "it is told that the copy cannot be kept" line_says 'Changes of the play list cannot be kept: '
quit_by_key
expect_text "$player_log" "savePlayList: "
cmp "$list" "$stage/list.before" || fail "the former list is not whole"
list_holds "$copy" 2 || fail "the copy is not whole"

start
wait_until "the list with the new track is offered" line_says 'its last list of 2 tracks can be brought back'
load_first_row
mkdir -p "$HOME/Desktop"
fill_disk
press ctrl+e
wait_until "the save panel is on the screen" another_window_has_focus
press Return
wait_until "it is told that the movie could not be written" \
    line_says '“song1.mov” could not be written: .*No space left on device'
expect "files of the export" "$(find "$HOME/Desktop" -type f | wc -l)" -eq 0
give_keys_to_main_window

make_room 2000
add_track "$stage/song3.wav"
wait_until "the copy can be kept again" grep -q song3.wav "$copy"

fill_disk
make_room 900
open_recording_window
start_take
speak "$stage/spoken.wav"
wait_until "the recording has ended" recording_has_ended
stop_take
analyse_take "$take"
expect "frames missing or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "frames that fitted" "$(values "$runs" length | total)" -gt $((44100 / 2))
rm "$take"
xdotool windowfocus --sync "$player_window"
quit_by_key
list_holds "$list" 2 || fail "the list is not saved where there is room again"
