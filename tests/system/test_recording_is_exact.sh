#!/bin/bash
# What the microphone hears while a track plays is in the recording, every frame in order, and of the track nothing is
# missing either. The movie is one of sound only, and another program reads it. On a busy machine there may be silence
# between the frames, in what is played and in what is spoken, but never a gap.
. "$(dirname "$0")/lib.sh"

expect_no_frame_missing() {  # WHAT
    expect "frames missing or repeated in $1" "$(values "$joins" skipped | awk '$1 != 0' | wc -l)" -eq 0
}

open_test
add_microphone
start
measure make-coded "$stage/spoken.wav" 12
add_coded_track 60
open_recording_window
start_recording "$stage/heard.raw"
press space
wait_for_sound
start_take
speak "$stage/spoken.wav"
stop_take
xdotool windowfocus --sync "$player_window"
press p
wait_for_silence
stop_recording

analyse
expect_no_frame_missing "what was played meanwhile"
expect "frames played" "$(values "$runs" length | total)" -gt $((12 * 44100))
analyse_take "$take"
expect_no_frame_missing "the recording"
expect "first frame" "$(values "$runs" source | sed -n 1p)" -eq 0
expect "frames" "$(values "$runs" length | total)" -eq $((12 * 44100))
streams=$(ffprobe -v error -show_entries stream=codec_type,codec_name,channels,sample_rate -of csv=p=0 "$take")
expect "streams" "$streams" = "pcm_s16le,audio,44100,2"
expect_no_text "$player_log" "frames lost"
quit_by_key
