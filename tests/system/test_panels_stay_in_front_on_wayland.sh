#!/bin/bash
# On Wayland a program cannot say where its panels are to stand, but whose they are: they stay in front of the main window
# when it is clicked.
export QUILLMERE_STAGE_SCREEN=wayland
. "$(dirname "$0")/lib.sh"

# The titles of the windows, the uppermost first.
titles() {
    windows_on_screen | cut -d' ' -f11-
}

main_window_is_last() {
    [ "$(titles | wc -l)" -eq "$1" ] && [ "$(titles | tail -n 1)" = Quillmere ]
}

# As far down at the left as no panel covers it.
click_main_window() {
    local X Y WIDTH HEIGHT
    read -r X Y WIDTH HEIGHT <<<"$(window_place "$player_window")"
    click 3 $((HEIGHT - 3))
}

open_test
start
wait_until "the level meters are shown" window_is_shown '^Level Meters$'
for panel in 'F1 Keyboard Shortcuts' 'ctrl+4 Recording' 'ctrl+5 Recorder' 'ctrl+comma Preferences'; do
    press "${panel%% *}"
    wait_until "${panel#* } is shown" window_is_shown "^${panel#* }\$"
    click_main_window
    sleep 0.3
done
wait_until "every panel is in front of the main window" main_window_is_last 6
focus_window "$(windows_named '^Preferences$')"
press Escape
wait_until "the preferences are closed" main_window_is_last 5
click_main_window
sleep 0.3
main_window_is_last 5 || fail "the main window has come before its panels: $(titles | tr '\n' ',')"
kill "$player_pid"
end_with_status_0
