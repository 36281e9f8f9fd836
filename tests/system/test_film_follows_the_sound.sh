#!/bin/bash
# The pictures of a film in step with what is heard, as they stand in the window: forward, slow, backward, at the seam
# of a loop. The film's pictures say their numbers, and its sound has a short tone at each whole second. Ten seconds lie
# between its key pictures. Paused, the picture stands, and nobody waits for the next one.
. "$(dirname "$0")/lib.sh"
per_second=25
tolerance=4  # pictures: the recording of the sound comes in pieces, and the machine has other things to do

make_film() {
    ffmpeg -v error -y -f lavfi -i "color=c=black:s=240x136:r=$per_second,geq=lum='16+219*mod(floor(N/pow(2\,floor(12*X/W)))\,2)':cb=128:cr=128" \
        -f lavfi -i "aevalsrc='0.8*sin(2*PI*1000*t)*lt(abs(t-floor(t+0.5))\,0.02)':s=44100" -t 24 \
        -c:v libx264 -preset ultrafast -g 250 -keyint_min 250 -sc_threshold 0 -pix_fmt yuv420p -c:a pcm_s16le "$1" </dev/null
}

# A search fails now and then while other windows come and go.
find_film_window() {
    film_window=$(windows_named '^Video$' | grep .)
}

# Everything that is seen and heard from here on is in $stage/seen.
watch_film() {
    [ -z "${watcher_pid-}" ] || end_process "$watcher_pid"
    : >"$stage/seen"
    "$programs/film_watcher" "$film_window" "$per_second" \
        < <(exec parec -d qm_out.monitor --format=float32le --rate=44100 --channels=2 --raw --latency-msec=10 2>/dev/null) >"$stage/seen" &
    watcher_pid=$!
    stage_pids+=("$watcher_pid")
}

tones_heard() {
    grep -c '^tone' "$stage/seen" || true
}

heard_tones() { [ "$(tones_heard)" -ge "$1" ]; }

# expect_in_step WHAT TONES SPEED: so many tones are heard, each at the picture of its second; at that speed half of the
# pictures that were due from the first tone to the last one came to be seen, and none but them.
expect_in_step() {
    watch_film
    wait_until "$2 tones are heard" heard_tones "$2"
    cp "$stage/seen" "$stage/seen.$1"
    local numbers=$stage/seen.$1 off pictures
    off=$(awk '$1 == "tone" { print $4 < 0 ? -$4 : $4 }' "$numbers" | sort -n | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }')
    pictures=$(awk '$1 == "tone" { tones++ } $1 == "picture" && tones { seen++; kept = seen } $1 == "tone" { last = kept } END { print last + 0 }' "$numbers")
    echo "$1: tones at $(awk '$1 == "tone" { printf "%s%s", separator, $2; separator = " " }' "$numbers"), $pictures pictures between them"
    expect "pictures from the tone, $1" "$off" -le "$tolerance"
    expect "pictures seen, $1" "$pictures" -ge $((($2 - 1) * per_second / 2))
}

wakes() {  # of all threads but the window's, which looks at its track ten times a second
    cat "/proc/$player_pid"/task/*/status |
        awk -v window="$player_pid" '/^Pid:/ { thread = $2 } /^voluntary_ctxt_switches/ && thread != window { sum += $2 } END { print sum }'
}

# expect_rest WHAT: over three seconds. What keeps a sound device ready wakes a few times a second.
expect_rest() {
    local before after
    before=$(wakes)
    sleep 3
    after=$(wakes)
    echo "$1: $((after - before)) wakes in three seconds"
    expect "wakes, $1" $((after - before)) -le 30
}

pictures_seen() {
    grep -c '^picture' "$stage/seen" || true
}

# Below the main window, which comes to the front when it is clicked and would be read in place of the film.
uncover_film() {
    local Y=0 HEIGHT=0
    eval "$(xdotool getwindowgeometry --shell "$player_window" | grep -E '^(Y|HEIGHT)=[0-9]+$')"
    xdotool windowmove "$film_window" 0 $((Y + HEIGHT + 20))
}

# As add_track, of which only a song leaves no other window behind.
add_film() {
    local before
    before=$(opened_count)
    press ctrl+o
    wait_until "the open panel is on the screen" another_window_has_focus
    type_text "$1"
    press Return
    wait_until "$1 is opened" opened_more_than "$before"
    wait_until "the film's window is on the screen" find_film_window
    uncover_film
    xdotool windowfocus --sync "$player_window"
}

open_test
make_film "$stage/film.mov"
start
add_film "$stage/film.mov"
double_click_first_row
expect_in_step forward 4
press 1
expect_in_step slow 3
press 3 shift+Right shift+space
expect_in_step backward 6
press p Home
set_marks 2 5
press l Home space
expect_in_step looped 7

press p
sleep 7  # a sound device is kept ready for five seconds
stood=$(pictures_seen)
expect_rest paused
expect "pictures seen while paused" "$(pictures_seen)" -eq "$stood"
"$programs/close_window" "$film_window"
sleep 1
expect_rest closed
quit_by_key
