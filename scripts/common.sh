# SPDX-License-Identifier: MIT
# Shared by run.sh, test.sh and .ci/run; to be sourced by bash. Every step that fails ends with one sentence that tells what to do.

TESSERA_DIR="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
PACKAGE_LIST="${PACKAGE_LIST:-$TESSERA_DIR/packaging/packages.txt}"

say() { printf '%s\n' "$*" >&2; }

say_and_fail() {
    say "$*"
    exit 1
}

# File names and texts are Chinese: without a UTF-8 locale they would be written as question marks.
use_utf8_locale() {
    [ "$(locale charmap 2>/dev/null)" = UTF-8 ] || export LC_ALL=C.UTF-8
}

# ccache keeps to the checkout where there is no home to write to.
use_writable_ccache() {
    if [ -z "${CCACHE_DIR:-}" ] && { [ -z "${HOME:-}" ] || [ ! -w "$HOME" ]; }; then
        export CCACHE_DIR="$TESSERA_DIR/.cache/ccache"
    fi
}

listed_packages() { sed -e 's/#.*//' -e '/^[[:space:]]*$/d' "$PACKAGE_LIST"; }

# Prints those of the given packages that are not installed.
missing_packages() {
    local installed
    installed=" $(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p' | tr '\n' ' ')"
    local package
    for package in "$@"; do
        case "$installed" in
            *" $package "*) ;;
            *) printf '%s\n' "$package" ;;
        esac
    done
}

# Installs what is missing of packaging/packages.txt and of the packages given. Asks the package lists only then.
ensure_packages() {
    local wanted missing as_root=()
    mapfile -t wanted < <(listed_packages; printf '%s\n' "$@" | sed '/^$/d')
    command -v dpkg-query >/dev/null ||
        say_and_fail "This is no Debian system: install what corresponds to ${wanted[*]} and build with: cmake --preset dev && cmake --build --preset dev"
    mapfile -t missing < <(missing_packages "${wanted[@]}")
    [ "${#missing[@]}" -gt 0 ] || return 0
    if [ "$(id -u)" != 0 ]; then
        command -v sudo >/dev/null ||
            say_and_fail "Packages are missing and there is no sudo here: run as root: apt-get install ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing ${missing[*]}"
    "${as_root[@]}" apt-get update -q ||
        say_and_fail "The package lists could not be fetched: check the network and /etc/apt/sources.list, then start again."
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}" ||
        say_and_fail "The packages could not be installed: look at apt-get's message above, mend it and start again; needed are ${missing[*]}"
}

# configure_if_needed PRESET: the build system configures itself again after its own files changed; the presets are not among them.
# The toolkit's headers are compiled once: what is built here is nearly everything.
configure_if_needed() {
    local made="$TESSERA_DIR/build/$1/build.ninja"
    if [ -f "$made" ] && [ ! "$TESSERA_DIR/CMakePresets.json" -nt "$made" ]; then
        return 0
    fi
    (cd "$TESSERA_DIR" && cmake --preset "$1" -DTESSERA_PRECOMPILED=ON) ||
        say_and_fail "The build could not be configured: mend what CMake says above; when build/$1 itself is damaged, remove that folder and start again."
}

# build_targets PRESET TARGET...
build_targets() {
    local preset="$1"
    shift
    (cd "$TESSERA_DIR" && cmake --build --preset "$preset" --target "$@") ||
        say_and_fail "The build failed: mend the first error above; when the sources are untouched, remove build/$preset and start again."
}
