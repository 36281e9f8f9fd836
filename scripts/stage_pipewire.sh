# PipeWire in place of PulseAudio on the stage, as a desktop has it: the server, its session manager and the door for
# PulseAudio's clients, each an ordinary process. They have a bus, a runtime folder and settings of their own, and look
# for no sound card, no camera and no Bluetooth device. Sourced by scripts/stage.sh, whose functions of the same names
# these replace.

sound_pids=()  # the server's processes, the oldest first
in_sound=()    # what the server's own processes and tools see of the machine

start_sound_process() {  # COMMAND...
    "${in_sound[@]}" "$@" >>"$stage/sound/log" 2>&1 </dev/null &
    sound_pids+=($!)
    stage_pids+=($!)
}

start_sound_server() {
    sound_pids=()
    in_sound=(env -u DISPLAY -u WAYLAND_DISPLAY XDG_RUNTIME_DIR="$stage/sound" XDG_CONFIG_HOME="$stage/sound/config"
        XDG_STATE_HOME="$stage/sound/state" DBUS_SESSION_BUS_ADDRESS="unix:path=$stage/sound/bus")
    export PULSE_SERVER=unix:$stage/sound/pulse/native
    settle_sound_server
    start_sound_process dbus-daemon --session --nofork --nopidfile --address="unix:path=$stage/sound/bus"
    wait_until "the sound server's bus is up" test -S "$stage/sound/bus"
    start_sound_process pipewire
    wait_until "the sound server is up" test -S "$stage/sound/pipewire-0"
    start_sound_process wireplumber
    start_sound_process pipewire-pulse
    sound_server_pid=$!
    wait_until "the sound server answers" pactl info
    wait_until "the rate is set" set_sound_rate
    add_sink qm_out
    set_default_sink qm_out
}

# At 44100 frames a second: else no frame would come out as it went in.
settle_sound_server() {
    local settings=$stage/sound/config/wireplumber
    mkdir -p "$stage/sound/config/pipewire/pipewire.conf.d"
    echo 'context.properties = { default.clock.rate = 44100 }' >"$stage/sound/config/pipewire/pipewire.conf.d/rate.conf"
    mkdir -p "$settings/main.lua.d" "$settings/bluetooth.lua.d"
    printf '%s_monitor.enabled = false\n' alsa v4l2 libcamera >"$settings/main.lua.d/60-no-devices.lua"
    echo 'bluez_monitor.enabled = false' >"$settings/bluetooth.lua.d/60-no-devices.lua"
}

# Whatever a client or a device would rather have.
set_sound_rate() {
    "${in_sound[@]}" pw-metadata -n settings 0 clock.force-rate 44100 &&
        "${in_sound[@]}" pw-metadata -n settings | grep -q "force-rate' value:'44100'"
}

# What is loaded appears a moment later, and is the default when the session manager has made it so.
set_default_sink() {
    wait_until "the sink $1 is there" sink_is_there "$1"
    wait_until "the sink $1 is the default" make_default_sink "$1"
}

sink_is_there() {
    pactl list short sinks | grep -qw "$1" && pactl list short sources | grep -qw "$1.monitor"
}

make_default_sink() {
    pactl set-default-sink "$1" && [ "$(pactl get-default-sink)" = "$1" ]
}

set_default_source() {
    wait_until "the source $1 is the default" make_default_source "$1"
}

make_default_source() {
    pactl set-default-source "$1" && [ "$(pactl get-default-source)" = "$1" ]
}

stop_sound_server() {
    end_sound_processes TERM
}

kill_sound_server() {
    end_sound_processes KILL
}

end_sound_processes() {  # SIGNAL
    local i
    for ((i = ${#sound_pids[@]} - 1; i >= 0; i--)); do
        kill "-$1" "${sound_pids[i]}" 2>/dev/null || true
        wait "${sound_pids[i]}" 2>/dev/null || true
    done
    rm -rf "$stage"/sound/bus "$stage"/sound/pipewire-0* "$stage"/sound/pulse
}

# hold_sound_server, release_sound_server: it stands still and goes on.
hold_sound_server() {
    kill -STOP "${sound_pids[@]}"
}

release_sound_server() {
    kill -CONT "${sound_pids[@]}"
}

# Its processes take turns at fixed times: what one hands over too late for its turn is dropped, whoever plays it.
server_loses_what_is_late() {
    true
}
