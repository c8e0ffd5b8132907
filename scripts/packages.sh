# SPDX-FileCopyrightText: 2026 Postal Scale contributors
# SPDX-License-Identifier: MIT

# Debian packages by what they are needed for, and how they get onto the machine. To be sourced.
#
# It is part of scripts of that shell, and they use the lists.
# shellcheck shell=bash disable=SC2034

build_packages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev qt6-svg-dev libhidapi-dev libudev-dev libsystemd-dev libxcb1-dev libxcb-icccm4-dev
    libwayland-dev
)
# An icon-less Qt still needs fonts and its platform plugins: that for Wayland too, since a desktop may
# have no Xwayland.
run_packages=(qt6-qpa-plugins qt6-wayland fonts-dejavu-core)
demo_packages=(
    umockdev libumockdev-dev xvfb xauth openbox dbus at-spi2-core xdotool wmctrl x11-utils
    python3 python3-gi gir1.2-atspi-2.0 python3-pyatspi imagemagick
)
package_packages=(build-essential debhelper)
package_check_packages=("${package_packages[@]}" lintian devscripts)
release_packages=("${package_check_packages[@]}" rpm makepkg libarchive-tools pacman-package-manager xz-utils)
check_packages=(
    "${demo_packages[@]}"
    clang-19 libclang-rt-19-dev llvm-19 lld clang-format-19 clang-tidy-19
    xdotool xclip wmctrl x11-utils locales socat faketime python3-jsonschema
    mosquitto mosquitto-clients jq fish zsh
    sway wtype xfwm4 xfce4-settings gir1.2-gtk-3.0
    chromium firefox-esr openssl
    desktop-file-utils appstream man-db
    qemu-system-x86 busybox-static libkmod2 zstd systemd polkitd
    valgrind
    shellcheck pyflakes3 nodejs reuse
)
# Node of another origin than Debian brings its own npm, and will not have Debian's beside it.
if ! command -v npm > /dev/null; then check_packages+=(npm); fi
bench_packages=(libxcb-damage0-dev)

say() { printf '== %s\n' "$*"; }

missing_packages() {
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            printf '%s\n' "$package"
    done
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

install_packages() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ ${#missing[@]} -eq 0 ] && return
    say "Installing ${#missing[@]} packages: ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -q --no-install-recommends \
        "${missing[@]}"
}

# configure PRESET OPTION...
configure() {
    local folder=build/$1
    say "Configuring $folder"
    mkdir -p "$folder"
    cmake --preset "$@" > "$folder/configure.log" 2>&1 || { cat "$folder/configure.log"; return 1; }
}

# build PRESET TARGET...: quiet when there is nothing to do
build() {
    local preset=$1
    shift
    [ -f "build/$preset/build.ninja" ] || configure "$preset"
    say "Building $preset: ${*:-everything}"
    cmake --build --preset "$preset" ${1:+--target "$@"}
}
