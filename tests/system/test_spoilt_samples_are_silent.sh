#!/bin/bash
# Samples that are no numbers, or far too large, are silence and no more: slowed down and with the bass turned up, the
# sound that follows them is the same as in the unspoilt file, and the log stays short.
. "$(dirname "$0")/lib.sh"
open_test
measure make-tune "$stage/tune.wav" 8
"$programs/quillmere-render" "$stage/tune.wav" "$stage/spoilt.wav" # 32-bit floats
# At 1.0 s, in a header of 56 bytes and frames of 8: not a number, infinities, and numbers that no sound has.
for ((i = 0; i < 50; i++)); do printf '\0\0\300\177\0\0\200\177\0\0\200\377\371\2\25\120'; done |
    dd of="$stage/spoilt.wav" bs=1 seek=$((56 + 44100 * 8)) conv=notrunc status=none
mkdir -p "$support_folder"
cat >"$support_folder/Quillmere.xml" <<XML
<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><array>
<dict><key>album</key><string> </string><key>artist</key><string> </string><key>bass</key><integer>200</integer>
<key>displayName</key><string>spoilt</string><key>duration</key><integer>352800</integer><key>timescale</key>
<integer>44100</integer><key>track</key><string>$stage/spoilt.wav</string><key>treble</key><integer>128</integer></dict>
</array></plist>
XML

start
click 200 416
press 1 # half speed
start_recording "$stage/heard.raw"
press Return
wait_for_sound
wait_recorded 8
press p
wait_for_silence
stop_recording
quit_by_key

# From where the sound begins: what was heard after the spoilt place, and what the unspoilt file gives there.
"$programs/quillmere-render" --rate 0.5 --bass 200 --gain "$gain" --from 1.5 --to 3.5 "$stage/tune.wav" "$stage/wanted.wav"
levels() { # ARGUMENTS of ffmpeg for its input...: the peak and the mean level in dB
    ffmpeg -hide_banner -nostdin "$@" -af astats=measure_perchannel=none -f null - 2>&1 |
        awk -F': ' '/Peak level dB/ { peak = $2 } /RMS level dB/ { mean = $2 } END { print peak, mean }'
}
begin=$(od -An -v -t f4 -w8 "$recording" | awk '$1 > 0.001 || $1 < -0.001 { print (NR - 1) / 44100; exit }')
read -r peak mean <<<"$(levels -f f32le -ar 44100 -ac 2 -ss "$(awk -v b="$begin" 'BEGIN { print b + 3 }')" -t 4 -i "$recording")"
read -r wanted_peak wanted_mean <<<"$(levels -i "$stage/wanted.wav")"
echo "heard: peak $peak dB, mean $mean dB; wanted: peak $wanted_peak dB, mean $wanted_mean dB"
awk -v a="$mean" -v b="$wanted_mean" 'BEGIN { exit !(a > b - 1.5 && a < b + 1.5) }' ||
    fail "the mean level is $mean dB instead of $wanted_mean dB"
awk -v a="$peak" -v b="$wanted_peak" 'BEGIN { exit !(a < b + 4) }' || fail "the peak is $peak dB instead of $wanted_peak dB"
expect "lines of the log" "$(wc -l <"$player_log")" -lt 100
