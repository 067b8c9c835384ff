# SPDX-FileCopyrightText: 2026 The Tonewright Authors
# SPDX-License-Identifier: GPL-3.0-or-later
# Functions shared by the scripts of this project; sourced by bash, after `set -euo pipefail`.

source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# Makes a source compile to the same object in every build folder, so that the builds share the compiler cache.
export CCACHE_BASEDIR=$source_dir CCACHE_NOHASHDIR=1

say() { printf '%s\n' "$*" >&2; }
die() { printf '%s: %s\n' "${0##*/}" "$*" >&2; exit 1; }

# package_names LIST...: prints the names in tools/packages/LIST.txt, without comments.
package_names() {
    local list
    for list in "$@"; do sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$source_dir/tools/packages/$list.txt"; done
}

# install_packages WHY LIST...: installs the missing packages of the lists; asks for root only if any are missing.
install_packages() {
    local why=$1; shift
    command -v dpkg-query >/dev/null ||
        die "this script installs packages on Debian only; elsewhere install the packages in tools/packages, then build by hand (README.md)."
    local missing
    missing=$(comm -23 <(package_names "$@" | sort -u) \
        <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p' | sort -u) | tr '\n' ' ')
    [ -n "$missing" ] || return 0
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null ||
            die "$why needs packages that only root can install, and there is no sudo; as root: apt-get install --no-install-recommends $missing"
        say "$why needs packages that are not on this machine yet; root (sudo) is needed only to install them: $missing"
        as_root=(sudo)
    else
        say "Installing what $why needs: $missing"
    fi
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600)
    local log; log=$(mktemp)
    # shellcheck disable=SC2086 # one word per package
    if ! { "${apt[@]}" update && "${apt[@]}" install -y --no-install-recommends $missing; } </dev/null >"$log" 2>&1; then
        tail -n 15 "$log" >&2; rm -f "$log"
        die "apt-get could not install the packages above; check the network connection and the package sources of Debian 12."
    fi
    rm -f "$log"
}

# configure PRESET [ARGUMENT...]: configures build/PRESET; deletes it first if it was made for another source folder.
configure() {
    local preset=$1 cache=$source_dir/build/$1/CMakeCache.txt; shift
    if [ -e "$cache" ] && ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$source_dir" "$cache"; then rm -rf "${cache%/*}"; fi
    local log; log=$(mktemp)
    if ! (cd "$source_dir" && cmake --preset "$preset" "$@") >"$log" 2>&1; then
        tail -n 30 "$log" >&2; rm -f "$log"
        die "the build could not be configured (preset $preset)."
    fi
    rm -f "$log"
}

# build PRESET TARGET...: builds targets in build/PRESET, or exits with a message.
build() {
    local preset=$1; shift
    # shellcheck disable=SC2086 # options
    ninja -C "$source_dir/build/$preset" -j "${TONEWRIGHT_JOBS:-$(nproc)}" ${NINJA_FLAGS:-} "$@" >&2 ||
        die "the build failed (preset $preset); the compiler's messages are above."
}

# private_environment: gives child processes private home, configuration and run-time directories without the user's
# session. Does nothing within another private environment. Sets `private_dir` if it created one; the caller has to
# remove it.
private_environment() {
    [ -z "${TONEWRIGHT_PRIVATE_DIR:-}" ] || return 0
    private_dir=$(mktemp -d "${TMPDIR:-/tmp}/tonewright.XXXXXX")
    export TONEWRIGHT_PRIVATE_DIR=$private_dir HOME=$private_dir/home XDG_RUNTIME_DIR=$private_dir/run
    export XDG_CONFIG_HOME=$HOME/.config XDG_DATA_HOME=$HOME/.local/share
    export XDG_CACHE_HOME=$HOME/.cache XDG_STATE_HOME=$HOME/.local/state
    mkdir -p "$XDG_CONFIG_HOME" "$XDG_DATA_HOME" "$XDG_CACHE_HOME" "$XDG_STATE_HOME" "$HOME/Documents"
    mkdir -m 700 "$XDG_RUNTIME_DIR"
    unset WAYLAND_DISPLAY PIPEWIRE_REMOTE PULSE_SERVER JACK_DEFAULT_SERVER LV2_PATH
    # No bus listens at this address. WebKit's sandbox exposes the folder of the address, so it must be a private one.
    export DBUS_SESSION_BUS_ADDRESS=unix:path=$XDG_RUNTIME_DIR/no-bus GTK_A11Y=none NO_AT_BRIDGE=1 LC_ALL=C.UTF-8
    # A window looks the same on every machine: only the fonts of fonts-dejavu-core, and no user configuration. WebKit's
    # sandbox gives its processes access to this file, too.
    export FONTCONFIG_FILE=$XDG_CONFIG_HOME/fontconfig/fonts.conf
    mkdir -p "${FONTCONFIG_FILE%/*}"
    local fonts=/usr/share/fonts/truetype/dejavu accepted='' name
    for name in Sans Sans-Bold SansMono SansMono-Bold Serif Serif-Bold; do
        accepted+="<glob>$fonts/DejaVu$name.ttf</glob>"
    done
    cat >"$FONTCONFIG_FILE" <<FONTS
<?xml version="1.0"?>
<fontconfig>
  <dir>$fonts</dir>
  <cachedir>$XDG_CACHE_HOME/fontconfig</cachedir>
  <selectfont><acceptfont>$accepted</acceptfont><rejectfont><glob>*</glob></rejectfont></selectfont>
  <alias><family>sans-serif</family><prefer><family>DejaVu Sans</family></prefer></alias>
  <alias><family>monospace</family><prefer><family>DejaVu Sans Mono</family></prefer></alias>
  <alias><family>serif</family><prefer><family>DejaVu Serif</family></prefer></alias>
</fontconfig>
FONTS
}
