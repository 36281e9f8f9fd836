#!/bin/bash
# The package as people get it, on a Debian 12 of its own with nothing but the base system: scripts/package makes it, apt
# installs it with what it needs, a user starts it and hears a track, a newer one takes its place and keeps what is the
# user's, and when it is removed the system is as it was.
# It needs root, the network and some minutes: only where QUILLMERE_PACKAGE_TEST is set, to 1 or to a build folder whose
# programs are to be packed instead.
. "$(dirname "$0")/lib.sh"

if [ -z "${QUILLMERE_PACKAGE_TEST-}" ] || [ "$(id -u)" -ne 0 ] || ! command -v debootstrap >/dev/null; then
    cannot_run "it needs QUILLMERE_PACKAGE_TEST=1, root and debootstrap"
fi
source=$(cd "$(dirname "$0")/../.." && pwd)

pack() {  # FOLDER: the package goes there
    cpack --config "$build/CPackConfig.cmake" -B "$1" >"$stage/package.log" 2>&1 ||
        fail "no package: $(tail -n 5 "$stage/package.log")"
}

# From where this machine has its own packages.
make_system() {
    local site
    site=$(apt-get indextargets --format '$(SITE)' 'Created-By: Packages' 'Codename: bookworm' | head -n 1)
    debootstrap --variant=minbase bookworm "$root" "$site" >"$stage/debootstrap.log" 2>&1 ||
        fail "no base system: $(tail -n 3 "$stage/debootstrap.log")"
    cp /etc/resolv.conf "$root/etc/resolv.conf"
    inside useradd --create-home --home-dir /srv/musician musician
    inside install -d -m 700 -o musician -g musician /run/musician
    inside apt-get -q update
}

inside() {
    chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/srv LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive \
        "$@" >>"$stage/inside.log" 2>&1 || fail "$*: $(tail -n 5 "$stage/inside.log")"
}

as_user=(chroot --userspec=musician:musician)

start_inside() {
    start_player "${as_user[@]}" "$root" env -i -C /srv/musician PATH=/usr/bin:/bin HOME=/srv/musician \
        XDG_RUNTIME_DIR=/run/musician LC_ALL=C.UTF-8 DISPLAY="$DISPLAY" PULSE_SERVER=unix:/run/sound \
        QUILLMERE_UPDATE_SERVER="$QUILLMERE_UPDATE_SERVER" quillmere
}

# What apt keeps of its own work, and what is the user's, is left out.
files_inside() {
    find "$root" \( -path "$root/var/cache" -o -path "$root/var/lib/apt" -o -path "$root/var/lib/dpkg" \
        -o -path "$root/var/log" -o -path "$root/srv" -o -path "$root/tmp" -o -path "$root/run" \) -prune \
        -o ! -type d -printf '%P\n' | sort
}

packages_inside() {
    dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Package} ${db:Status-Status}\n'
}

version_inside() {
    dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Version}' quillmere
}

play_track() {
    start_recording "$stage/sound.raw"
    double_click_first_row
    wait_for_sound
    wait_for_silence
    stop_recording
    analyse
    expect "the frames heard" "$(values "$runs" length | total)" -gt $((4 * 44100))
    quit_by_key
}

open_test
if [ -d "$QUILLMERE_PACKAGE_TEST" ]; then
    build=$QUILLMERE_PACKAGE_TEST
    pack "$build"
else
    build=$source/build/release
    "$source/scripts/package" >"$stage/package.log" 2>&1 || fail "no package: $(tail -n 5 "$stage/package.log")"
fi
root=$stage/system
make_system
pactl load-module module-native-protocol-unix auth-anonymous=1 auth-cookie-enabled=0 socket="$root/run/sound" >/dev/null
files_inside >"$stage/files_before"
packages_inside >"$stage/packages_before"

cp "$build"/quillmere_*.deb "$root/srv"
inside sh -c 'apt-get install -y -q --no-install-recommends /srv/quillmere_*.deb'
echo "Installed: $(($(packages_inside | wc -l) - $(wc -l <"$stage/packages_before"))) packages"
older=$(version_inside)
measure make-coded "$root/srv/musician/song.wav" 5
start_inside
add_track /srv/musician/song.wav
play_track
expect_file "$root/usr/share/quillmere/guide/index.html"

# Wherever the program is built from, a later package takes the place of this one.
rm "$root"/srv/quillmere_*.deb
QUILLMERE_PACKAGE_REVISION=99991231000000 pack "$root/srv"
inside sh -c 'apt-get install -y -q --no-install-recommends /srv/quillmere_*.deb'
dpkg --compare-versions "$(version_inside)" gt "$older" || fail "$older was not replaced"
start_inside
play_track
expect_text "$root/srv/musician/Library/Application Support/Quillmere/Quillmere.xml" song.wav

rm -r "$root"/srv/quillmere_*.deb "$root"/srv/_CPack_Packages
# Also what the base system would like to have, and did not.
inside apt-get purge -y -q --auto-remove -o APT::AutoRemove::RecommendsImportant=false quillmere
packages_inside | diff "$stage/packages_before" - || fail "packages are left"
files_inside | diff "$stage/files_before" - | grep '^>' >"$stage/left" || true
! grep -i quillmere "$stage/left" || fail "files of the program are left"
echo "Left by what it needed: $(wc -l <"$stage/left") files"
