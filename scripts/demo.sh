#!/bin/bash
# demo.sh PROGRAMS OUT: does on a virtual stage what a musician does with the program, by real keys and clicks: adds a
# tune, plays it, slows it down, marks A and B, loops the passage ten times. Leaves OUT/tune.wav, OUT/window.png and
# OUT/sound.wav, and prints what it measured in the recorded sound. Fails when the sound breaks off and a plain player
# beside the program does not: then it is not the machine that was too slow.
set -eu
programs=$1
mkdir -p "$2"
out=$(cd "$2" && pwd)
. "$(dirname "$0")/stage.sh"

first_row_x=200 first_row_y=416  # the play list's first row in the main window
slower_steps=10                  # from normal speed to half of it
passes=10

open_stage
measure make-tune "$out/tune.wav" 60
add_witness
start_player "$programs/quillmere"

echo "Adding a tune ..."
add_track "$out/tune.wav"
start_recording "$stage/sound.raw"
click $first_row_x $first_row_y 2
wait_for_sound
wait_recorded 1

echo "Slowing it down ..."
for ((step = 0; step < slower_steps; step++)); do
    press minus
done
wait_recorded 2

echo "Marking A and B, and looping ..."
press bracketleft
wait_recorded 3
press bracketright
press l
loop_on=$(recorded_frames)
start_witness "$out/tune.wav"
wait_recorded $((3 * passes + 2))
picture "$out/window.png"
recorded=$(recorded_frames)
stop_witness
press ctrl+q
wait_for_player
[ "$player_status" -eq 0 ] || fail "the program ended with status $player_status"
stop_recording

# What is played after the loop was switched on, up to the time the picture was taken.
head -c $((recorded * 8)) "$recording" >"$stage/heard.raw"
measure passes "$stage/heard.raw" $((loop_on + 4410)) 44100 220500 >"$stage/measured" ||
    fail "the recorded passage does not repeat"
measure to-wav "$stage/heard.raw" "$out/sound.wav"

measure silences "$stage/witness.raw" 0 >"$stage/witnessed" || fail "the plain player is not heard"

value() { awk -v name="$1" '$1 == name { print $2 }' "${2-$stage/measured}"; }
gaps=$(value silences)
machine_gaps=$(value silences "$stage/witnessed")
told="$gaps"
if [ "$gaps" -gt 0 ]; then
    told="$gaps, the longest of $(value longest_silence_frames) frames; a plain player beside it had $machine_gaps"
fi
cat <<TEXT
Measured in the recorded sound:
  loop period   $(value period_seconds) s ($(value period_frames) frames), the same within $(value worst_pass_frames) frames over $(value passes) passes
  pitch         $(value pitch_cents) cents from the tune's A, at half speed
  gaps          $told
Left in $out:
  window.png    the window while the passage repeats
  sound.wav     what the sound card played
  tune.wav      the tune
TEXT
if [ "$gaps" -gt 0 ] && [ "$machine_gaps" -eq 0 ]; then
    fail "the sound broke off, and that of a plain player did not: the program made the gaps"
elif [ "$gaps" -gt 0 ]; then
    echo "This machine was too busy to play without gaps: try again when it is not."
fi
