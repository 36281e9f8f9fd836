#!/bin/bash
# However a program is killed while it saves, each list on the disk is whole, and the old one or the new one. Killed at a
# random moment, in turn after the copy of the changed list was begun and while the program quits. QUILLMERE_KILLS: how often.
. "$(dirname "$0")/lib.sh"
kills=${QUILLMERE_KILLS:-10} tracks=20000
seed=${QUILLMERE_SEED:-$RANDOM}
RANDOM=$seed
open_test
own_file=$support_folder/Quillmere.xml
copy=$support_folder/Quillmere.unsaved.xml

write_list() {
    echo '<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array>'
    awk -v count="$tracks" 'BEGIN {
        for (i = 0; i < count; i++)
            print "<dict><key>album</key><string>An Album</string><key>artist</key><string>An Artist</string>" \
                "<key>bass</key><integer>128</integer><key>displayName</key><string>Track " i "</string>" \
                "<key>duration</key><integer>88200</integer><key>timescale</key><integer>44100</integer>" \
                "<key>track</key><string>/music/" i ".wav</string><key>treble</key><integer>128</integer></dict>"
    }'
    echo '</array></plist>'
}

# tracks_in FILE: of a list that is whole to its end.
tracks_in() {
    tail -n 1 "$1" | grep -q '</plist>$' || fail "$1 is not whole (seed $seed)"
    grep -c '<key>track</key>' "$1"
}

# While a list is written the program holds a file open that has no name before it is whole.
list_is_written() {
    readlink "/proc/$player_pid/fd/"* | grep -F "$support_folder/"
}

copy_is_begun() {
    [ -e "$copy" ] || list_is_written
}

kill_at_random() {  # MILLISECONDS, at most
    sleep "$(awk -v most="$1" -v part="$RANDOM" 'BEGIN { printf "%.3f", most / 1000 * part / 32768 }')"
    ! list_is_written >/dev/null 2>&1 || halves=$((halves + 1))
    kill -9 "$player_pid" 2>/dev/null || true
    killed=0
    wait "$player_pid" || killed=$?
}

write_list >"$stage/list.xml"
previous=$support_folder/Quillmere.previous.xml
old=0 new=0 in_time=0 copies=0 halves=0
for ((i = 0; i < kills; i++)); do
    rm -rf "$support_folder"
    mkdir -p "$support_folder"
    cp "$stage/list.xml" "$own_file"
    start
    press Down Delete
    if ((i % 2 == 0)); then
        wait_until "the copy is begun" copy_is_begun
        kill_at_random 120
    else
        kill -TERM "$player_pid"
        kill_at_random 120
    fi
    [ "$killed" -ne 137 ] || in_time=$((in_time + 1))
    case $(tracks_in "$own_file") in
    "$tracks") old=$((old + 1)) ;;
    "$((tracks - 1))") new=$((new + 1)) ;;
    *) fail "the list holds other tracks (seed $seed)" ;;
    esac
    if [ -e "$copy" ]; then
        expect "tracks in the copy" "$(tracks_in "$copy")" -eq "$((tracks - 1))"
        copies=$((copies + 1))
    fi
    [ ! -e "$previous" ] || expect "tracks in the list before" "$(tracks_in "$previous")" -eq "$tracks"
done
echo "$kills kills by seed $seed, $in_time of them in time, $halves within a write:" \
    "$old old lists, $new new ones, $copies copies, all whole"
expect "kills in time" "$in_time" -ge "$((kills / 2))"
