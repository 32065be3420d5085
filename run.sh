#!/bin/bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds the program and runs it.
#
#   ./run.sh [--headless] [tessera's options...]
#
# With a display the program opens with a sample drawing and the panel of the simulated machine. Without one, or with --headless, it
# marks the sample twice off screen and leaves a screenshot and the trace of the marking in out/. What stands after is handed to
# the program; see ./run.sh --help.
set -u -o pipefail
. "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

headless=
options=()
for argument in "$@"; do
    if [ "$argument" = --headless ]; then headless=yes; else options+=("$argument"); fi
done

# given OPTION...: one of them is among the program's options
given() {
    local wanted option
    for wanted in "$@"; do
        for option in ${options[@]+"${options[@]}"}; do
            case "$option" in "$wanted" | "$wanted="*) return 0 ;; esac
        done
    done
    return 1
}

if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then headless=yes; fi

use_utf8_locale
use_writable_ccache
if [ -z "$headless" ] && [ -z "${DISPLAY:-}" ]; then
    ensure_packages qtwayland5
else
    ensure_packages
fi
configure_if_needed dev
build_targets dev tessera_launcher
program="$TESSERA_DIR/build/dev/bin/tessera"
sample="$TESSERA_DIR/samples/gear-plate.svg"
out="$TESSERA_DIR/out"

if given --help --version; then
    exec "$program" -platform offscreen "${options[@]}"
fi
if [ -n "$headless" ]; then
    given --root || { rm -rf "$out/root" && mkdir -p "$out/root" && options+=(--root "$out/root"); } ||
        say_and_fail "The folder out/root cannot be made anew: check who owns $out and start again."
    given --open --import || options+=(--import "$sample")
    given --mark || options+=(--mark 2 --report --screenshot "$out/screenshot.png" --trace "$out/trace.svg" --trace "$out/trace.png")
    # The screen of the machine; the off-screen platform's own is square and smaller.
    given --size || options+=(--size 1280x800)
    given --quit || options+=(--quit)
    "$program" -platform offscreen "${options[@]}" ||
        say_and_fail "The job did not end well: the program's last line above tells why; its log is in \"日志文件\" below the application root."
else
    # What the operator sets and saves at the desk stays from one start to the next.
    given --root || { mkdir -p "$out/desk" && options+=(--root "$out/desk"); } ||
        say_and_fail "The folder out/desk cannot be made: check who owns $TESSERA_DIR and start again."
    given --open --import || options+=(--import "$sample")
    given --panel || options+=(--panel)
    "$program" "${options[@]}" ||
        say_and_fail "The program ended with an error: without a usable display try ./run.sh --headless; its log is in \"日志文件\" below the application root."
fi
