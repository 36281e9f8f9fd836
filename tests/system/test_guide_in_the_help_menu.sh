#!/bin/bash
# The Help menu opens the guide as it is installed, with what the desktop shows web pages with; where nothing does, a line
# of the window says so, and a screen reader hears it.
. "$(dirname "$0")/lib.sh"
open_test
start_bus
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
cmake --install "$(dirname "$programs")" --prefix "$stage/installed" >"$stage/install.log"
page=$stage/installed/share/quillmere/guide/index.html
expect_file "$page"

# The desktop's command for opening a file: keeps what it is asked for, and answers as it is told to.
mkdir "$stage/desktop"
echo 0 >"$stage/answer"
cat >"$stage/desktop/xdg-open" <<SCRIPT
#!/bin/bash
echo "\$*" >>"$stage/asked"
exit \$(cat "$stage/answer")
SCRIPT
chmod +x "$stage/desktop/xdg-open"
export PATH=$stage/desktop:$PATH

heard() {
    grep -qF -- "showing notification \"$1" "$stage/heard"
}

start_player "$stage/installed/bin/quillmere"
"$programs/accessible_tree" watch >"$stage/heard" &
stage_pids+=($!)
wait_until "the program is listened to" grep -q watching "$stage/heard"

press alt+h Down Return
wait_until "the desktop is asked" test -s "$stage/asked"
expect "what it is asked for" "$(cat "$stage/asked")" = "file://$page"
wait_until "it is said" heard "The guide opens in another window"

echo 3 >"$stage/answer"
press alt+h Down Return
wait_until "it is said that nothing shows it" heard "Nothing here shows web pages; the guide is $page"

rm -r "$stage/installed/share/quillmere"
press alt+h Down Return
wait_until "it is said that there is none" heard "The guide is not installed"
expect "how often the desktop was asked" "$(wc -l <"$stage/asked")" -eq 2
quit_by_key
