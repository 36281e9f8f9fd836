#!/bin/bash
# The sound server is held up twice, for longer than what it has been given lasts: from then on it is given more, and no
# frame of the track is lost or repeated over it. A server that itself loses what it is late for waits for the program
# instead.
. "$(dirname "$0")/lib.sh"

hold_up_the_server() {
    if server_loses_what_is_late; then
        kill -STOP "$player_pid"
        sleep 0.2
        kill -CONT "$player_pid"
        return
    fi
    hold_sound_server
    sleep 0.2
    release_sound_server
}

open_test
start
add_coded_track 60
start_recording "$stage/held_up.raw"
press space
wait_for_sound
wait_recorded 2
for ((time = 0; time < 8; time++)); do
    ! grep -q "the device ran dry" "$player_log" || break
    hold_up_the_server
    wait_recorded 2
done
expect_text "$player_log" "the device ran dry"
wait_recorded 2
press space
wait_for_silence
stop_recording
quit_by_key

analyse
echo "frames lost (+) or repeated (-):" $(values "$joins" skipped)
expect "joins with a frame lost or repeated" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
