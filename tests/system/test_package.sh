#!/bin/bash
# The Debian package, made of what has been built: Debian's own checks find nothing in it, everything it refers to is in
# it, each commit gives a newer version, and it is installed, replaced by a newer one, and removed without a trace, in a
# root folder of its own.
. "$(dirname "$0")/lib.sh"
build=$(dirname "$programs")
source=$(cd "$(dirname "$0")/../.." && pwd)

# make_package REVISION: sets $package.
make_package() {
    QUILLMERE_PACKAGE_REVISION=$1 cpack --config "$build/CPackConfig.cmake" -B "$stage/made" >"$stage/cpack.log" 2>&1 ||
        fail "no package: $(tail -n 5 "$stage/cpack.log")"
    package=$(echo "$stage"/made/*.deb)
    expect_file "$package"
}

# The version that a checkout would get.
version_of() {  # CHECKOUT
    cmake -D CPACK_QUILLMERE_SOURCE="$1" -D CPACK_PACKAGE_VERSION=1.2.3 -P "$source/packaging/debian-version.cmake" \
        2>&1 | sed -n 's/^Version //p'
}

is_newer() {
    dpkg --compare-versions "$1" gt "$2" || fail "$1 is not newer than $2"
}

commit() {  # SECONDS: in the scratch checkout, at this time
    GIT_COMMITTER_DATE="@$1 +0000" git -C "$stage/checkout" -c user.name=test -c user.email=test@localhost \
        commit -q --allow-empty -m "$1"
}

in_scratch_root() {
    dpkg --root="$root" --force-not-root --force-depends --force-script-chrootless --log="$stage/dpkg.log" "$@" \
        >"$stage/dpkg.out" 2>&1 || fail "dpkg $*: $(tail -n 5 "$stage/dpkg.out")"
}

installed_version() {
    dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${Version}' quillmere
}

# Every page, picture and address that the installed pages name is installed, too.
expect_whole_guide() {  # FOLDER
    local page target
    expect_file "$1/index.html"
    for page in "$1"/*.html; do
        grep -oE '(href|src)="[^"#]*' "$page" | sed 's/^[^"]*"//' | while read -r target; do
            case $target in '' | *://*) continue ;; esac
            [ -e "$1/$target" ] || fail "$page links to $target, which is not installed"
        done
    done
    expect "pages of the guide" "$(find "$1" -name '*.html' | wc -l)" -eq "$(find "$source/docs/guide" -name '*.md' | wc -l)"
}

open_test

# Versions: a commit, one that is a second younger, and changes that are not committed. Without a checkout: the time.
git init -q "$stage/checkout"
echo one >"$stage/checkout/file"
git -C "$stage/checkout" add file
commit 1700000000
first=$(version_of "$stage/checkout")
expect "the first version" "${first%.*}" = 1.2.3+20231114221320
commit 1700000001
second=$(version_of "$stage/checkout")
is_newer "$second" "$first"
echo two >"$stage/checkout/file"
changed=$(version_of "$stage/checkout")
is_newer "$changed" "$second"
is_newer "$(version_of "$stage")" "$changed"

# Without a program that tells the kinds of files, which the compiler's packages do not bring.
mkdir "$stage/poor"
printf '#!/bin/sh\nexit 1\n' >"$stage/poor/file"
chmod +x "$stage/poor/file"
PATH=$stage/poor:$PATH make_package 1
lintian --allow-root --fail-on error,warning "$package" >"$stage/lintian" 2>&1 || fail "$(cat "$stage/lintian")"

dpkg-deb -x "$package" "$stage/tree"
usr=$stage/tree/usr
share=$usr/share
desktop-file-validate "$share/applications/org.quillmere.Quillmere.desktop" || fail "the desktop file is not right"
appstreamcli validate --no-net "$share/metainfo/org.quillmere.Quillmere.metainfo.xml" >"$stage/appstream" ||
    fail "$(cat "$stage/appstream")"
expect_text "$share/metainfo/org.quillmere.Quillmere.metainfo.xml" "<screenshot"
expect_text "$share/dbus-1/services/org.quillmere.Quillmere.service" "Exec=/usr/bin/quillmere"
expect_file "$share/icons/hicolor/scalable/apps/quillmere.svg"
expect_whole_guide "$share/quillmere/guide"
! grep -rn '](' "$share/doc/quillmere" || fail "an installed document links to a file"
zcat "$share/man/man1/quillmere-render.1.gz" | sed 's/\\-/-/g' >"$stage/manual"
"$usr/bin/quillmere-render" --help 2>&1 | grep -oE -- '--[a-z]+' | sort -u >"$stage/options"
expect "options of quillmere-render" "$(wc -l <"$stage/options")" -ge 12
while read -r option; do expect_text "$stage/manual" "$option"; done <"$stage/options"
for page in quillmere quillmere-render; do
    said=$(LC_ALL=C.UTF-8 groff -man -t -ww -z -Tutf8 <(zcat "$share/man/man1/$page.1.gz") 2>&1) || true
    expect "what is wrong with the manual of $page" "$said" = ""
done

# Installed, replaced, and gone.
if [ "$(id -u)" -ne 0 ]; then
    cannot_run "from here on: only root can install a package"
fi
root=$stage/root
mkdir -p "$root/var/lib/dpkg/info" "$root/var/lib/dpkg/updates" "$root/var/lib/dpkg/triggers"
touch "$root/var/lib/dpkg/status"
in_scratch_root --install "$package"
older=$(installed_version)
measure make-coded "$stage/coded.wav" 2
"$root/usr/bin/quillmere-render" --null --rate 0.5 "$stage/coded.wav"
make_package 2
expect "packages that lie there" "$(find "$stage/made" -maxdepth 1 -name '*.deb' | wc -l)" -eq 1
in_scratch_root --install "$package"
is_newer "$(installed_version)" "$older"
start_player "$root/usr/bin/quillmere"
quit_by_key
in_scratch_root --purge quillmere
left=$(find "$root" -path "$root/var/lib/dpkg" -prune -o ! -type d -print)
expect "what is left" "$left" = ""
