# A stage for the program where there is no desktop: a virtual screen, a private sound server whose output is recorded,
# a scratch home, and real keys and clicks. Sourced by scripts/demo.sh and tests/system/lib.sh (bash, set -eu).
#
# Everything started here is ended by its own process id in close_stage. Sound is told by what was recorded, never by
# the clock: waiting means waiting until something can be seen, and fails only when it is not seen for three minutes.

stage=                 # folder of everything below
stage_pids=()          # processes to end, the oldest first
player_pid=            # the program, while it runs
player_window=         # its main window
player_log=            # what it wrote on standard error
sound_server_pid=
recorder_pid=
witness_pids=()        # a plain player and what records it
microphone=            # the sound server's module
recorded_sink=qm_out
recording=             # raw 32-bit float stereo, 44100 frames a second

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

# wait_until WHAT COMMAND...: until COMMAND succeeds.
wait_until() {
    local what=$1 tries
    shift
    for ((tries = 0; tries < 3600; tries++)); do
        if "$@" >/dev/null 2>&1; then
            return 0
        fi
        sleep 0.05
    done
    fail "waited in vain until $what"
}

open_stage() {
    stage=$(mktemp -d "${TMPDIR:-/tmp}/quillmere-stage.XXXXXX")
    trap close_stage EXIT
    mkdir -m 700 "$stage/home" "$stage/sound" "$stage/runtime"
    export HOME=$stage/home XDG_CONFIG_HOME=$stage/home/.config XDG_CACHE_HOME=$stage/home/.cache
    export XDG_DATA_HOME=$stage/home/.local XDG_RUNTIME_DIR=$stage/runtime
    export QT_QPA_PLATFORM=xcb LC_ALL=C.UTF-8
    export QUILLMERE_UPDATE_SERVER=http://127.0.0.1:9  # nobody answers there
    unset WAYLAND_DISPLAY DBUS_SESSION_BUS_ADDRESS QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME QT_SCALE_FACTOR
    start_screen
    start_sound_server
}

close_stage() {
    local status=$? i
    trap - EXIT
    if [ "$status" -ne 0 ] && [ -s "$player_log" ]; then
        echo "--- the program's log" >&2
        tail -n 40 "$player_log" >&2
    fi
    for ((i = ${#stage_pids[@]} - 1; i >= 0; i--)); do
        end_process "${stage_pids[i]}"
    done
    if [ -n "${QUILLMERE_KEEP_STAGE-}" ]; then
        echo "The stage is kept in $stage" >&2
    else
        rm -rf "$stage"
    fi
    exit "$status"
}

# Asks a process to end, and insists when it does not.
end_process() {
    local tries
    kill "$1" 2>/dev/null || return 0
    for ((tries = 0; tries < 60; tries++)); do
        kill -0 "$1" 2>/dev/null || return 0
        sleep 0.05
    done
    kill -9 "$1" 2>/dev/null || true
}

# start_screen [SIZE]
start_screen() {
    Xvfb -displayfd 3 -screen 0 "${1-1280x1024}x24" -nolisten tcp -noreset 3>"$stage/display" 2>"$stage/screen.log" &
    screen_pid=$!
    stage_pids+=("$screen_pid")
    wait_until "the virtual screen is up" test -s "$stage/display"
    DISPLAY=:$(cat "$stage/display")
    export DISPLAY
}

# PulseAudio with one null sink. Without norewinds=1 an idle sink renders two seconds ahead and swallows the first sound.
# Its threads ask for real-time priority, as a desktop's server has it: without, they and not the program break off beside
# other work. Where they may not have it, the server goes on without.
start_sound_server() {
    export PULSE_SERVER=unix:$stage/sound/native PULSE_RUNTIME_PATH=$stage/sound PULSE_STATE_PATH=$stage/sound
    env -u DISPLAY pulseaudio -n --daemonize=no --use-pid-file=no --exit-idle-time=-1 --disallow-exit \
        --high-priority=yes --realtime=yes --disable-shm=yes --no-cpu-limit=yes --log-level=warn --log-target=stderr \
        -L "module-native-protocol-unix auth-anonymous=1 auth-cookie-enabled=0 socket=$stage/sound/native" \
        -L "module-null-sink sink_name=qm_out norewinds=1 rate=44100 format=float32le channels=2" \
        >"$stage/sound/log" 2>&1 </dev/null &
    sound_server_pid=$!
    stage_pids+=("$sound_server_pid")
    wait_until "the sound server answers" pactl info
    pactl set-default-sink qm_out
}

# A virtual microphone as the default input: it hears what is played to the sink qm_mic_feed.
add_microphone() {
    pactl load-module module-null-sink sink_name=qm_mic_feed norewinds=1 rate=44100 format=float32le channels=2 >/dev/null
    microphone=$(pactl load-module module-remap-source source_name=qm_mic master=qm_mic_feed.monitor)
    pactl set-default-source qm_mic
    pactl set-default-sink qm_out
}

take_microphone_away() {
    pactl unload-module "$microphone"
}

# speak FILE.wav: into the microphone, until it has been said.
speak() {
    paplay --device=qm_mic_feed --latency-msec=100 "$1"
}

stop_sound_server() {
    kill "$sound_server_pid"
    wait "$sound_server_pid" || true
    rm -f "$stage/sound/native"
}

# launch_player PROGRAM ARGUMENTS...: starts the program and waits for its main window.
launch_player() {
    player_log=$stage/player.log
    "$@" >"$stage/player.out" 2>>"$player_log" &
    player_pid=$!
    stage_pids+=("$player_pid")
    wait_until "the main window is on the screen" main_window_or_end
    player_window=$(find_main_window) || fail "the program ended before it showed its window"
}

# start_player PROGRAM ARGUMENTS...: the same, and gives it the keyboard at once.
start_player() {
    launch_player "$@"
    xdotool windowfocus --sync "$player_window"
}

main_window_or_end() {
    find_main_window || player_has_ended
}

find_main_window() {
    xdotool search --onlyvisible --all --pid "$player_pid" --name '^Quillmere$' | grep .
}

# Waits until the program has ended and sets player_status.
wait_for_player() {
    wait_until "the program has ended" player_has_ended
    player_status=0
    wait "$player_pid" || player_status=$?
}

player_has_ended() {
    ! kill -0 "$player_pid" 2>/dev/null || [ "$(awk '/^State:/ {print $2}' "/proc/$player_pid/status")" = Z ]
}

# press KEY...: real key events to whatever has the focus.
press() {
    xdotool key --clearmodifiers --delay 40 "$@"
}

# type_text TEXT
type_text() {
    xdotool type --clearmodifiers --delay 12 "$1"
}

# click X Y [COUNT]: at a place of the main window.
click() {
    xdotool mousemove --sync --window "$player_window" "$1" "$2"
    xdotool click --repeat "${3:-1}" --delay 60 1
}

# The line that the program logs when a file has been opened appears once more than before.
opened_count() {
    grep -c '^loadFile: 3' "$player_log" || true
}

opened_more_than() {
    [ "$(opened_count)" -gt "$1" ]
}

# add_track FILE: through the open panel, with its path typed.
add_track() {
    local before
    before=$(opened_count)
    press ctrl+o
    wait_until "the open panel is on the screen" another_window_has_focus
    type_text "$1"
    press Return
    wait_until "$1 is opened" opened_more_than "$before"
    give_keys_to_main_window
}

# There is no window manager that would do it when a panel closes.
give_keys_to_main_window() {
    wait_until "the panel is gone" only_the_main_window
    xdotool windowfocus --sync "$player_window"
}

only_the_main_window() {
    [ "$(comm -23 <(windows_named .) <(windows_named '^Level Meters$'))" = "$player_window" ]
}

windows_named() {
    xdotool search --onlyvisible --all --pid "$player_pid" --name "$1" | sort -u
}

window_is_shown() {
    windows_named "$1" | grep -q .
}

another_window_has_focus() {
    local focus
    focus=$(xdotool getwindowfocus) && [ "$focus" -gt 1 ] && [ "$focus" != "$player_window" ]
}

# start_recording FILE [LATENCY]: from here on what the program plays is written there, that many milliseconds at a time.
start_recording() {
    recording=$1
    : >"$recording"
    parec -d "$recorded_sink.monitor" --format=float32le --rate=44100 --channels=2 --raw --latency-msec="${2:-20}" >>"$recording" &
    recorder_pid=$!
    stage_pids+=("$recorder_pid")
    wait_recorded 0.2
}

stop_recording() {
    kill "$recorder_pid"
    wait "$recorder_pid" || true
}

# A plain player beside the program, before it is started: into a sink of its own on the same server, with as little in
# reserve as the program begins with. Where it breaks off, the machine or the stage does not keep up.
witness_milliseconds=50

add_witness() {
    pactl load-module module-null-sink sink_name=qm_witness norewinds=1 rate=44100 format=float32le channels=2 >/dev/null
    pactl set-default-sink qm_out
}

# start_witness FILE.wav: what is heard of it is recorded to $stage/witness.raw.
start_witness() {
    parec -d qm_witness.monitor --format=float32le --rate=44100 --channels=2 --raw --latency-msec=20 >"$stage/witness.raw" &
    witness_pids=($!)
    paplay --device=qm_witness --latency-msec="$witness_milliseconds" "$1" &
    witness_pids+=($!)
    stage_pids+=("${witness_pids[@]}")
}

stop_witness() {
    kill "${witness_pids[@]}"
    wait "${witness_pids[@]}" || true
}

recorded_frames() {
    echo $(($(stat -c %s "$recording") / 8))
}

has_recorded() {
    [ "$(recorded_frames)" -ge "$1" ]
}

# wait_recorded SECONDS: until so much more sound has been recorded.
wait_recorded() {
    local target
    target=$(awk -v now="$(recorded_frames)" -v more="$1" 'BEGIN { printf "%d", now + more * 44100 }')
    wait_until "$1 more seconds are recorded" has_recorded "$target"
}

# measure ARGUMENTS...
measure() {
    "$programs/quillmere-measure" "$@"
}

recording_ends() {
    [ "$(measure tail "$recording" 4410)" = "$1" ]
}

wait_for_sound() {
    wait_until "sound is heard" recording_ends sounding
}

wait_for_silence() {
    wait_until "the sound has stopped" recording_ends silent
}

# picture FILE.png: the main window as it is on the screen.
picture() {
    local X=0 Y=0 WIDTH=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$player_window" | grep -E '^(X|Y|WIDTH|HEIGHT)=[0-9]+$')"
    ffmpeg -hide_banner -loglevel error -y -f x11grab -draw_mouse 0 -video_size "${WIDTH}x$HEIGHT" \
        -i "$DISPLAY+$X,$Y" -frames:v 1 "$1" </dev/null
}
