# The Debian 12 packages that this project needs, and their installation. Sourced by run, test and scripts/demo.sh.

# To build: compiler, build tools, toolkit, media libraries, stretcher, sound device, network, the guide's web pages.
build_packages=(
    g++ cmake ninja-build pkg-config ccache mold
    qt6-base-dev libxcb1-dev
    libavformat-dev libavcodec-dev libavutil-dev libswresample-dev libswscale-dev
    librubberband-dev libfftw3-dev
    libcubeb-dev
    libcurl4-openssl-dev
    cmark-gfm
)

# To show a window: a font; to know the update server: whom to trust. Sound goes to the desktop's own server.
window_packages=(fonts-inter ca-certificates)

# To play on a machine without a desktop: a virtual screen, a virtual sound card, keys and clicks, a camera.
stage_packages=(xvfb xdotool pulseaudio pulseaudio-utils ffmpeg)

# To run the tests: the test framework, the style check and what counts branches, another language's number format, events
# as from a real keyboard and mouse, a secure server's key, a message bus and the accessibility bus, a window manager, what opens files as a file
# manager does, what judges a package; another sound server; two Wayland desktops, of which the second lets programs
# bring themselves to the front, and the toolkit's part for them; fonts of other scripts;
# where windows are.
test_packages=(
    doctest-dev clang-format pmccabe
    locales libx11-dev libxtst-dev openssl dbus-daemon dbus-bin at-spi2-core openbox x11-utils
    libglib2.0-bin shared-mime-info desktop-file-utils dpkg-dev lintian appstream groff-base
    pipewire pipewire-pulse wireplumber weston sway qt6-wayland
    fonts-dejavu-core fonts-tlwg-waree-ttf fonts-vlgothic fonts-naver-d2coding fonts-noto-color-emoji
)

# To make the Debian package: what finds out which libraries it needs.
package_packages=(dpkg-dev)

# To make the icons anew from their drawings, which only scripts/draw-icons does.
drawing_packages=(librsvg2-bin)

missing_packages() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || echo "$package"
    done
}

# Installs those of the named packages that are missing, and asks nothing. Everything it says goes to standard error.
install_packages() {
    local missing
    # shellcheck disable=SC2207 # names of packages have no spaces
    missing=($(missing_packages "$@"))
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        echo "These packages are missing, and only root can install them (there is no sudo here):" \
            "apt-get install --no-install-recommends ${missing[*]}" >&2
        return 1
    fi
    echo "Installing: ${missing[*]}" >&2
    apt_get update && apt_get install -y --no-install-recommends "${missing[@]}"
}

# How often and how long, in seconds, the end of another package manager is waited for: a quarter of an hour, which is
# enough for a machine that installs its first updates.
apt_tries=180 apt_pause=5

# apt_get ARGUMENTS...: as root. Waits while another program uses the package manager: apt itself waits for one of its
# locks only, and only if asked to.
apt_get() {
    local as_root=() said status try
    [ "$(id -u)" -eq 0 ] || as_root=(sudo)
    said=$(mktemp)
    for ((try = 1; try <= apt_tries; try++)); do
        status=0
        (
            set -o pipefail
            "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -q "$@" 2>&1 | tee "$said" >&2
        ) || status=$?
        [ "$status" -ne 0 ] && grep -q 'Could not get lock' "$said" || break
        [ "$try" -gt 1 ] || echo "Another program is installing packages; waiting for it to finish ..." >&2
        sleep "$apt_pause"
    done
    [ "$try" -le "$apt_tries" ] || echo "It has not finished. Start again when it has." >&2
    rm -f "$said"
    return "$status"
}
