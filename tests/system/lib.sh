# For the system tests: the stage, and what every test says of the program. Sourced by each test (bash).
# Called as: TEST.sh PROGRAMS, where PROGRAMS is the folder of the built programs.
set -eu
programs=$1
. "$(dirname "${BASH_SOURCE[0]}")/../../scripts/stage.sh"

gain=0.5  # what the program starts with

# cannot_run WHY: ends a test that this machine does not let run. Neither passed nor failed, and counted as such.
cannot_run() {
    echo "not run: $1"
    exit 77
}

open_test() {
    open_stage
    support_folder="$HOME/Library/Application Support/Quillmere"
    settings="$XDG_CONFIG_HOME/Quillmere/Quillmere.ini"
}

# A session bus of the test's own, for remote control and assistive tools. Before start.
start_bus() {
    dbus-daemon --session --nofork --nopidfile --address="unix:path=$stage/bus" --print-address=3 \
        3>"$stage/bus_address" >"$stage/bus.log" 2>&1 </dev/null &
    bus_pid=$!
    stage_pids+=("$bus_pid")
    wait_until "the session bus is up" test -s "$stage/bus_address"
    DBUS_SESSION_BUS_ADDRESS=$(cat "$stage/bus_address")
    export DBUS_SESSION_BUS_ADDRESS
}

# The status line as assistive tools find it. Before start: start_bus and listen_to_line.
listen_to_line() {
    export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
}

line_says() {
    "$programs/accessible_tree" list | grep -F "notification \"$1\"" | grep -q showing
}

# What the program's remote control says and does, by the names of the bus.
remote=org.mpris.MediaPlayer2.quillmere

bus_call() {  # DESTINATION PATH METHOD ARGUMENTS...
    dbus-send --print-reply=literal --reply-timeout=20000 --dest="$1" "$2" "$3" "${@:4}"
}

on_the_bus() {
    bus_call org.freedesktop.DBus /org/freedesktop/DBus org.freedesktop.DBus.NameHasOwner "string:$remote" | grep -q true
}

remote_call() {
    bus_call "$remote" /org/mpris/MediaPlayer2 "org.mpris.MediaPlayer2.$1" "${@:2}"
}

# read_property NAME [INTERFACE]: the last word of its value.
read_property() {
    bus_call "$remote" /org/mpris/MediaPlayer2 org.freedesktop.DBus.Properties.Get \
        "string:org.mpris.MediaPlayer2${2-.Player}" "string:$1" | awk '{ word = $NF } END { print word }'
}

property_is() {
    [ "$(read_property "$1")" = "$2" ]
}

write_property() {  # NAME NUMBER
    bus_call "$remote" /org/mpris/MediaPlayer2 org.freedesktop.DBus.Properties.Set \
        string:org.mpris.MediaPlayer2.Player "string:$1" "variant:double:$2"
}

metadata() {
    bus_call "$remote" /org/mpris/MediaPlayer2 org.freedesktop.DBus.Properties.Get \
        string:org.mpris.MediaPlayer2.Player string:Metadata
}

loaded_file_is() {
    metadata | grep -q "file://.*/$1"
}

track_id() {
    metadata | grep -o '/org/quillmere/track/[0-9]*'
}

start() {
    start_player "$programs/quillmere" "$@"
}

# A window manager, for the rest of the test; with further arguments of its own.
start_window_manager() {
    openbox --sm-disable "$@" >"$stage/window_manager.log" 2>&1 </dev/null &
    stage_pids+=($!)
    wait_until "the window manager is up" xdotool get_num_desktops
}

# What happens to windows from here on is in $stage/timeline; see window_timeline.
watch_windows() {
    [ -z "${timeline_pid-}" ] || end_process "$timeline_pid"
    "$programs/window_timeline" >"$stage/timeline" &
    timeline_pid=$!
    stage_pids+=("$timeline_pid")
    wait_until "the windows are watched" grep -q watching "$stage/timeline"
}

# drop FILE...: drags them from a window beside the main window to the height $drop_height of it.
drop_height=480  # in the list

drop() {
    local source_pid source
    "$programs/drag_source" 1100 800 "$@" &
    source_pid=$!
    stage_pids+=("$source_pid")
    wait_until "the drag source is on the screen" drag_source_is_shown "$source_pid"
    source=$(windows_of "$source_pid" '^drag source$')
    point "$source" 40 30
    xdotool mousedown 1
    point "$source" 20 20
    wait_until "the drag has begun" drag_has_begun
    point "$player_window" 400 600
    for x in 380 360 340 320 300; do # a hand is never quite still, and the target must answer before the release
        point "$player_window" "$x" "$drop_height"
        sleep 0.1
    done
    wait_until "the drag is answered" drag_is_answered
    xdotool mouseup 1
    wait_until "the drag has ended" has_ended "$source_pid"
    wait "$source_pid"
    focus_window "$player_window"
}

drag_source_is_shown() {
    windows_of "$1" '^drag source$' | grep .
}

has_ended() {
    ! kill -0 "$1"
}

# expect WHAT ACTUAL OPERATOR WANTED, with the operators of [ ].
expect() {
    [ "$2" "$3" "$4" ] || fail "$1: $2, expected $3 $4"
}

expect_file() {
    [ -f "$1" ] || fail "no file $1"
}

expect_no_file() {
    [ ! -e "$1" ] || fail "unexpected file $1"
}

expect_text() {  # FILE TEXT
    grep -qF -- "$2" "$1" || fail "$1 does not contain: $2"
}

expect_no_text() {  # FILE TEXT
    ! grep -qF -- "$2" "$1" 2>/dev/null || fail "$1 contains: $2"
}

# Asks the main window to close, as its frame's close button does.
close_main_window() {
    close_window "$player_window"
}

quit_by_key() {
    press ctrl+q
    end_with_status_0
}

end_with_status_0() {
    wait_for_player
    expect "exit status" "$player_status" -eq 0
}

# The program ends with status 0 while something that it uses does not answer. It has a second for it; what a busy
# machine takes longer is granted.
ends_at_once() {
    local tries
    for ((tries = 0; tries < 60; tries++)); do
        player_has_ended && break
        sleep 0.05
    done
    player_has_ended || fail "the program does not end while something does not answer"
    end_with_status_0
}

# The sound moves on, as the remote control tells it.
wait_for_play() {
    local position
    position=$(read_property Position)
    wait_until "the position moves on" position_is_not "$position"
}

position_is_not() {
    [ "$(read_property Position)" != "$1" ]
}

# add_coded_track SECONDS: makes the coded sound, adds it and plays it by a double click on its row; then pauses it and
# goes back to its first frame.
add_coded_track() {
    coded=$stage/coded.wav
    measure make-coded "$coded" "$1"
    add_track "$coded"
    start_recording "$stage/first.raw"
    double_click_first_row
    wait_for_sound
    press p
    wait_for_silence
    press Home
    stop_recording
}

double_click_first_row() {
    click 200 416 2
}

# set_marks A B: at whole seconds, while paused at the start.
set_marks() {
    local second
    for ((second = 0; second <= $2; second++)); do
        [ "$second" -ne "$1" ] || press bracketleft
        [ "$second" -ne "$2" ] || press bracketright
        [ "$second" -eq "$2" ] || press Right
    done
}

# analyse: the runs of the recording, and the joins between them, in $runs and $joins; see quillmere-measure.
analyse() {
    measure runs "$recording" "$gain" >"$stage/runs.txt" || fail "no coded sound in the recording"
    runs=$(grep '^run ' "$stage/runs.txt")
    joins=$(grep '^join ' "$stage/runs.txt" || true)
}

# play_recorded SECONDS: plays so long from where the position is, pauses, and analyses the recording.
play_recorded() {
    start_recording "$stage/played.raw"
    press space
    wait_for_sound
    wait_recorded "$1"
    press p
    wait_for_silence
    stop_recording
    analyse
}

# Of $joins, those that the program answers for: all of them, or without the breaks, which are shorter than a pause,
# where the server itself loses what is late.
joins_of_the_program() {
    if server_loses_what_is_late; then
        awk '$8 == "known" && ($7 == 0 || $7 > 4410)' <<<"$joins"
    else
        echo "$joins"
    fi
}

# A sound card may be starved by whatever else the machine does; what the program plays is right all the same. So what
# was heard has to be right each time, and free of silence once in five.
attempts=5

# expect_exact_loop PERIOD: between whole seconds, where the seam needs no fade, so that nothing may be touched
# there. What was silent is not looked at here.
expect_exact_loop() {
    local own seams
    own=$(joins_of_the_program)
    seams=$(values "$own" skipped | awk '$1 != 0')
    expect "seams" "$(count_of "$seams")" -ge 1
    expect "shortest period, negative" "$(largest <<<"$seams")" -eq "-$1"
    expect "longest period, negative" "$(smallest <<<"$seams")" -eq "-$1"
    expect "frames changed" "$(values "$own" faded | total)" -eq 0
}

# open_recording_window: by its key, with capture set up.
open_recording_window() {
    press ctrl+4
    wait_until "the recording window is on the screen" find_recording_window
    focus_window "$(find_recording_window)"
}

find_recording_window() {
    windows_named '^Recording$' | grep .
}

# start_take: begins to record to $take.
start_take() {
    take=$HOME/Desktop/Quillmere.mov
    rm -f "$take"
    press ctrl+r
    wait_until "the recording has begun" test -s "$take"
}

# stop_take: ends the recording and keeps it under the suggested name.
stop_take() {
    press ctrl+r
    wait_until "the save panel is on the screen" find_save_panel
    focus_window "$(find_save_panel)"
    press Return
    wait_until "the save panel is gone" no_save_panel
}

find_save_panel() {
    windows_named '^Keep the recording[?]$' | grep .
}

no_save_panel() {
    ! find_save_panel
}

# plays FILE.mov FRAMES: another program reads it to its end without a complaint, and finds at least so many frames.
plays() {
    local said frames
    said=$(ffmpeg -hide_banner -v error -i "$1" -f s16le -ac 2 - 2>&1 >"$stage/played.raw" </dev/null) || return 1
    frames=$(($(stat -c %s "$stage/played.raw") / 4))
    [ -z "$said" ] && [ "$frames" -ge "$2" ]
}

# analyse_take FILE.mov: as analyse, of the sound that another program finds in the file.
analyse_take() {
    recording=$stage/take.raw
    ffmpeg -hide_banner -loglevel error -y -i "$1" -f f32le -ac 2 -ar 44100 "$recording" </dev/null ||
        fail "the recording cannot be read"
    measure runs "$recording" 1 >"$stage/runs.txt" || fail "no coded sound in the recording"
    runs=$(grep '^run ' "$stage/runs.txt")
    joins=$(grep '^join ' "$stage/runs.txt" || true)
}

# The values of one field of $joins, or of $runs, one a line: values JOINS skipped
values() {
    awk -v field="$2" '{ for (i = 1; i < NF; i++) if ($i == field) print $(i + 1) }' <<<"$1"
}

smallest() { sort -n | head -n 1; }
largest() { sort -n | tail -n 1; }
total() { awk '{ sum += $1 } END { print sum + 0 }'; }
count_of() { [ -z "$1" ] && echo 0 || wc -l <<<"$1"; }
