#!/bin/bash
# However often and whenever the program is killed while it records: each recording plays, but for its last second.
# QUILLMERE_KILLS says how often.
. "$(dirname "$0")/lib.sh"

has_grown() {
    [ "$(stat -c %s "$take" 2>/dev/null || echo 0)" -ge "$1" ]
}

open_test
add_microphone
kills=${QUILLMERE_KILLS:-4}
RANDOM=${QUILLMERE_SEED:-1}
bytes_a_second=$((44100 * 4))
for ((kill = 1; kill <= kills; kill++)); do
    start
    open_recording_window
    start_take
    wait_until "the recording has grown" has_grown $((RANDOM * 12))
    kill -9 "$player_pid"
    wait "$player_pid" 2>/dev/null || true
    size=$(stat -c %s "$take")
    least=$(((size - bytes_a_second) / 4))
    plays "$take" $((least > 0 ? least : 0)) || fail "kill $kill: $size bytes do not play"
done
echo "$kills recordings were killed, and each plays"
