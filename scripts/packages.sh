# The Debian 12 packages that this project needs, and their installation. Sourced by run, test and scripts/demo.sh.

# To build: compiler, build tools, toolkit, media libraries, stretcher, sound device, network.
build_packages=(
    g++ cmake ninja-build pkg-config ccache mold
    qt6-base-dev libfontconfig-dev libxcb1-dev
    libavformat-dev libavcodec-dev libavutil-dev libswresample-dev libswscale-dev
    librubberband-dev
    libcubeb-dev
    libcurl4-openssl-dev
)

# To show a window: a font; to know the update server: whom to trust. Sound goes to the desktop's own server.
window_packages=(fonts-inter ca-certificates)

# To play on a machine without a desktop: a virtual screen, a virtual sound card, keys and clicks, a camera.
stage_packages=(xvfb xdotool pulseaudio pulseaudio-utils ffmpeg)

# To run the tests: the test framework, the style check, another language's number format, a secure server's key, a
# message bus and the accessibility bus, a window manager.
test_packages=(doctest-dev clang-format locales libx11-dev openssl dbus-daemon dbus-bin at-spi2-core openbox)

# To make the Debian package: what finds out which libraries it needs.
package_packages=(dpkg-dev file)

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
    local missing as_root=()
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
    fi
    echo "Installing: ${missing[*]}" >&2
    {
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -q
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
    } >&2
}
