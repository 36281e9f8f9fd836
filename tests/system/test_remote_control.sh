#!/bin/bash
# Media keys and desktops reach the player over the session bus: they play, pause, seek, change the speed and the track,
# read what is playing, and are told what changes. Input that is none does nothing.
. "$(dirname "$0")/lib.sh"
open_test
start_bus

write_loop() {
    bus_call "$remote" /org/mpris/MediaPlayer2 org.freedesktop.DBus.Properties.Set \
        string:org.mpris.MediaPlayer2.Player string:LoopStatus "variant:string:$1"
}

start
wait_until "the player is on the bus" on_the_bus
dbus-monitor --session "type='signal',path='/org/mpris/MediaPlayer2'" >"$stage/signals" 2>&1 &
stage_pids+=($!)

# Nothing there yet: nothing happens.
expect "status" "$(read_property PlaybackStatus)" = Stopped
expect "who it is" "$(read_property Identity "")" = Quillmere
expect "what can be opened" "$(read_property CanPlay)" = false
remote_call Player.Play
remote_call Player.Next
remote_call Player.Seek int64:1000000
expect "status" "$(read_property PlaybackStatus)" = Stopped

measure make-coded "$stage/one.wav" 20
measure make-coded "$stage/two.wav" 20
add_track "$stage/one.wav"
add_track "$stage/two.wav"
wait_until "the added track is loaded" loaded_file_is two.wav
remote_call Player.Next
wait_until "the next row is loaded" loaded_file_is one.wav
remote_call Player.Previous
wait_until "the row before is loaded" loaded_file_is two.wav
metadata >"$stage/metadata"
expect_text "$stage/metadata" "int64 20000000"
expect_text "$stage/metadata" "two"

# What a media key sends.
start_recording "$stage/keys.raw"
remote_call Player.PlayPause
wait_for_sound
expect "status" "$(read_property PlaybackStatus)" = Playing
remote_call Player.PlayPause
wait_for_silence
expect "status" "$(read_property PlaybackStatus)" = Paused
stop_recording

# Positions: exactly there for this track, nowhere for another one or outside of it.
id=$(track_id)
remote_call Player.SetPosition "objpath:$id" int64:5000000
expect "position" "$(read_property Position)" -eq 5000000
remote_call Player.SetPosition objpath:/org/quillmere/track/99999 int64:1000000
remote_call Player.SetPosition "objpath:$id" int64:-1
remote_call Player.SetPosition "objpath:$id" int64:20000001
expect "position" "$(read_property Position)" -eq 5000000
remote_call Player.Seek int64:2000000
expect "position" "$(read_property Position)" -eq 7000000
start_recording "$stage/from_seven.raw"
remote_call Player.Play
wait_for_sound
wait_recorded 1
remote_call Player.Pause
wait_for_silence
stop_recording
analyse
expect "first frame heard" "$(values "$runs" source | sed -n 1p)" -le $((7 * 44100))
expect "first frame heard" "$(values "$runs" source | sed -n 1p)" -ge $((7 * 44100 - 441))

# The speed, as the slider sets it: what there is not becomes the nearest, what is no number nothing, and 0 pauses.
write_property Rate 0.5
expect "rate" "$(read_property Rate)" = 0.5
write_property Rate 77
expect "rate" "$(read_property Rate)" = 2.5
write_property Rate nan
expect "rate" "$(read_property Rate)" = 2.5
write_property Rate 1
remote_call Player.Play
wait_until "it plays" property_is PlaybackStatus Playing
write_property Rate 0
wait_until "it pauses" property_is PlaybackStatus Paused
expect "rate" "$(read_property Rate)" = 1
write_property Volume 0.25
expect "volume" "$(read_property Volume)" = 0.25
write_property Volume 0.5
! remote_call Player.OpenUri string:https://example.org/song.mp3 2>"$stage/refused" || fail "an address was opened"
expect_text "$stage/refused" "takes no such file"

# The loop, as its switch sets it.
expect "loop" "$(read_property LoopStatus)" = None
write_loop Track
wait_until "the loop is on" property_is LoopStatus Track
write_loop Playlist
expect "loop" "$(read_property LoopStatus)" = Track
write_loop None
wait_until "the loop is off" property_is LoopStatus None

# What is opened is played, also where nobody waits until it is open.
remote_call Player.Pause
cp "$stage/two.wav" "$stage/three.wav"
start_recording "$stage/opened.raw"
dbus-send --type=method_call --dest="$remote" /org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Player.OpenUri "string:file://$stage/three.wav"
dbus-send --type=method_call --dest="$remote" /org/mpris/MediaPlayer2 org.mpris.MediaPlayer2.Player.Play
wait_for_sound
wait_until "what was opened is loaded" loaded_file_is three.wav
expect "status" "$(read_property PlaybackStatus)" = Playing
wait_recorded 1
remote_call Player.Pause
wait_for_silence
stop_recording
analyse
expect "first frame heard" "$(values "$runs" source | sed -n 1p)" -eq 0

remote_call Player.Stop
expect "status" "$(read_property PlaybackStatus)" = Stopped
expect "position" "$(read_property Position)" -eq 0

# What was told meanwhile.
wait_until "the changes are told" grep -q '"Stopped"' "$stage/signals"
for told in PropertiesChanged Seeked '"LoopStatus"' '"Playing"' '"Paused"' '"Rate"' '"Metadata"' '"CanGoNext"'; do
    expect_text "$stage/signals" "$told"
done

# The bus may go at any time: the player stays, and plays.
kill "$bus_pid"
wait "$bus_pid" || true
start_recording "$stage/without_bus.raw"
press space
wait_for_sound
press p
wait_for_silence
stop_recording
quit_by_key
