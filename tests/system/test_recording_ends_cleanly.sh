#!/bin/bash
# When the microphone vanishes, and when the disk takes no more, the recording ends where it is: what was heard until
# then is kept, the log says why, and the program goes on.
. "$(dirname "$0")/lib.sh"

recording_has_ended() {
    grep -q '^recording ended' "$player_log"
}

open_test
measure make-coded "$stage/spoken.wav" 6
add_microphone
start
open_recording_window
start_take
speak "$stage/spoken.wav"
take_microphone_away
wait_until "the recording has ended" recording_has_ended
expect_text "$player_log" "recording ended: the sound input has vanished"
stop_take
analyse_take "$take"
expect "frames before the microphone vanished" "$(values "$runs" length | total)" -eq $((6 * 44100))
xdotool windowfocus --sync "$player_window"
quit_by_key
rm "$take" "$player_log"

plug_microphone_in
start_player bash -c 'ulimit -f 600; exec "$0"' "$programs/quillmere"
open_recording_window
start_take
speak "$stage/spoken.wav"
wait_until "the recording has ended" recording_has_ended
expect_text "$player_log" "recording ended: File too large"
stop_take
expect "bytes" "$(stat -c %s "$take")" -le $((600 * 1024))
analyse_take "$take"
expect "frames missing or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
expect "frames that fitted" "$(values "$runs" length | total)" -gt $((44100 / 2))
xdotool windowfocus --sync "$player_window"
quit_by_key
