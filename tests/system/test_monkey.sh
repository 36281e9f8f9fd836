#!/bin/bash
# Thousands of things at random, done to the real program with real files: any key, clicks, drags, the wheel, dropped
# files, every window. It neither ends nor hangs nor warns nor grows, and after a quit the list is back.
#   QUILLMERE_MONKEY_SECONDS=3600   for so long; a minute without it
#   QUILLMERE_MONKEY_SEED=7         from this seed, as a finding has printed it
#   QUILLMERE_MONKEY_PICTURES=DIR   where the picture of a finding goes; /tmp without it
. "$(dirname "$0")/lib.sh"
seconds=${QUILLMERE_MONKEY_SECONDS:-60}
seed=${QUILLMERE_MONKEY_SEED:-$(($(od -An -N4 -tu4 /dev/urandom)))}
open_test
export TMPDIR=$stage
start_bus
add_microphone

# A window manager that has frames but no keys and menus of its own, so that nothing but the program is driven.
mkdir -p "$stage/bin"
cat >"$stage/openbox.xml" <<XML
<?xml version="1.0" encoding="UTF-8"?>
<openbox_config xmlns="http://openbox.org/3.4/rc">
  <desktops><number>1</number></desktops>
  <keyboard/>
  <mouse>
    <context name="Client">
      <mousebind button="Left" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
      <mousebind button="Right" action="Press"><action name="Focus"/><action name="Raise"/></mousebind>
    </context>
  </mouse>
</openbox_config>
XML
start_window_manager --config-file "$stage/openbox.xml"

# A link that is clicked opens nothing outside.
printf '#!/bin/sh\n' >"$stage/bin/xdg-open"
chmod +x "$stage/bin/xdg-open"
export PATH=$stage/bin:$PATH BROWSER=

# Sounds and films of many kinds, and what is none of them.
media=$HOME/Music
mkdir -p "$media"
make() {  # FILE ARGUMENTS...: with the tone or the picture of ffmpeg
    ffmpeg -hide_banner -loglevel error -y "${@:2}" "$media/$1" </dev/null
}
tone=(-f lavfi -i "sine=frequency=330:sample_rate=44100:duration")
picture=(-f lavfi -i "testsrc=size=320x180:rate=25:duration")
measure make-tune "$media/tune.wav" 20
make stereo.mp3 "${tone[@]}=12" -ac 2 -metadata title="A tune" -metadata artist="Somebody" -metadata album="Pieces"
make mono.m4a "${tone[@]}=7" -ac 1 -metadata artist="Somebody"
make film.mov "${tone[@]}=6" "${picture[@]}=6" -c:v mpeg4 -c:a aac
make silent-film.mp4 "${picture[@]}=3" -c:v mpeg4
make high.aiff "${tone[@]}=4" -ar 96000
make short.wav "${tone[@]}=0.02"
make old.avi "${tone[@]}=5" "${picture[@]}=5" -c:v mjpeg -c:a mp3
head -c 20000 "$media/stereo.mp3" >"$media/cut.mp3"
head -c 30000 "$media/film.mov" >"$media/cut.mov"
head -c 20 "$media/tune.wav" >"$media/head.wav"
head -c 50000 /dev/urandom >"$media/noise.mp3"
: >"$media/nothing.m4a"
echo text >"$media/text.wav"
echo text >"$media/text.txt"
rm -f "$stage/player.log"
player_log=$stage/player.log

"$programs/monkey" "$programs/quillmere" "$stage" "$seed" "$seconds" "$media"/* "$media/not there.wav"
