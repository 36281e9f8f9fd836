#!/bin/bash
# The first minute from a fresh home: add a file, play it, slow it, loop it, record, find the guide. With the keyboard
# alone, the mouse alone, or through the accessibility bus alone, as QUILLMERE_HAND says: keys, mouse, assistive. Every
# act is answered before the next one; how many there were is printed.
. "$(dirname "$0")/lib.sh"
hand=${QUILLMERE_HAND-keys}
acts=0

tree() {
    "$programs/accessible_tree" "$@"
}

# --- one act ---------------------------------------------------------------------------------------------------------

hit() { # KEY
    acts=$((acts + 1))
    press "$1"
}

is_there() { # NAME
    tree is "$1" showing
}

# push NAME [COUNT]: presses the control of that name with the hand of this test.
push() {
    wait_until "$1 is in sight" is_there "$1"
    acts=$((acts + 1))
    if [ "$hand" = mouse ]; then
        local place
        place=$(tree where "$1")
        # shellcheck disable=SC2086
        xdotool mousemove $place
        xdotool click --repeat "${2-1}" --delay 60 1
    else
        tree press "$1"
    fi
}

# --- what is done, by each hand --------------------------------------------------------------------------------------

add_file() {
    case $hand in
        keys)
            hit ctrl+o
            wait_until "the open panel is on the screen" another_window_has_focus
            acts=$((acts + 1))
            type_text "$1"
            hit Return
            ;;
        mouse)
            push "Add files"
            push "$(basename "$1")" 2
            ;;
        assistive)
            push "Add files"
            wait_until "the name can be typed" is_there "File name:"
            acts=$((acts + 1))
            tree type "File name:" "$1"
            push Open
            ;;
    esac
}

do_it() { # KEY NAME
    if [ "$hand" = keys ]; then hit "$1"; else push "$2"; fi
}

open_guide() {
    if [ "$hand" = keys ]; then
        hit alt+h
        hit Down
        hit Return
    else
        push Help
        push Guide
    fi
}

begin_act() {
    began=$acts
}

end_act() { # WHAT
    printf '%-28s %d acts\n' "$1" $((acts - began))
}

take_grows() {
    [ -s "$HOME/Desktop/Quillmere.mov" ]
}

no_recording_window() {
    ! find_recording_window
}

guide_is_opened() {
    grep -q . "$stage/opened"
}

# --- the minute ------------------------------------------------------------------------------------------------------

open_test
start_bus
listen_to_line
add_microphone
mkdir "$stage/desktop"
printf '#!/bin/sh\necho "$@" >>"%s"\n' "$stage/opened" >"$stage/desktop/xdg-open"
chmod +x "$stage/desktop/xdg-open"
export PATH=$stage/desktop:$PATH
measure make-coded "$HOME/song.wav" 60
cmake --install "$(dirname "$programs")" --prefix "$stage/installed" >"$stage/install.log"
start_window_manager
launch_player "$stage/installed/bin/quillmere"
[ "$hand" != keys ] || focus_window "$player_window"
wait_until "the program is on the accessibility bus" is_there "Add files"
wait_until "the program is on the bus" on_the_bus

begin_act
add_file "$HOME/song.wav"
wait_until "the file is opened" opened_more_than 0
wait_until "the panel is gone" only_the_main_window
[ "$hand" != keys ] || focus_window "$player_window"
end_act "add a file"

begin_act
do_it space "Play forward"
wait_until "it plays" property_is PlaybackStatus Playing
wait_for_play
end_act "play it"

begin_act
do_it 2 "Speed 0.75"
wait_until "it is slower" property_is Rate 0.75
end_act "slow it"

begin_act
do_it bracketleft "Set A"
wait_until "the mark is told" tree is "Set A" checked
wait_for_play
do_it bracketright "Set B"
wait_until "the mark is told" tree is "Set B" checked
do_it l "Loop A to B"
wait_until "the loop is on" property_is LoopStatus Track
end_act "loop a passage"

begin_act
do_it ctrl+r Record
wait_until "the recording has begun" take_grows
do_it ctrl+r Record
wait_until "it is asked whether to keep it" find_save_panel
do_it Return Keep
wait_until "the answer is taken" no_save_panel
if [ "$hand" != keys ]; then # whose next key goes to the window that had the keyboard before
    push Close
    wait_until "the recording window is closed" no_recording_window
fi
end_act "record"

begin_act
open_guide
wait_until "the guide is opened" guide_is_opened
end_act "find the guide"
echo "$hand: $acts acts"
