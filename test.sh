#!/bin/bash
# SPDX-License-Identifier: MIT
# Installs what is missing, builds everything and runs the tests.
#
#   ./test.sh [--sanitize address|thread] [ctest's options...]
#
# Without ctest's options every test runs but those labelled "slow"; ./test.sh -L slow runs these. With --sanitize the tests run
# under AddressSanitizer and UndefinedBehaviorSanitizer, or under ThreadSanitizer, which takes the tests labelled "tsan" (it
# follows the standard library's threads, not Qt's locks). With -L and labels joined by | only the tests of these are built.
set -u -o pipefail
. "$(dirname "${BASH_SOURCE[0]}")/scripts/common.sh"

preset=dev
if [ "${1:-}" = --sanitize ]; then
    case "${2:-}" in
        address) preset=asan ;;
        thread) preset=tsan ;;
        *) say_and_fail "After --sanitize comes address or thread." ;;
    esac
    shift 2
fi

label=
selected=
options=("$@")
for ((i = 0; i < ${#options[@]}; i++)); do
    case "${options[i]}" in
        -L | --label-regex) selected=yes label="${options[i + 1]:-}" ;;
        -LE | --label-exclude) selected=yes ;;
    esac
done
if [ -z "$selected" ]; then
    if [ "$preset" = tsan ]; then
        label=tsan
        options+=(-L '^tsan$')
    else
        options+=(-LE '^slow$')
    fi
fi

use_utf8_locale
use_writable_ccache
ensure_packages
configure_if_needed "$preset"
IFS='|' read -r -a targets <<<"$label"
targets=("${targets[@]/#/tests_label_}")
if [ -n "$label" ] && (cd "$TESSERA_DIR" && ninja -C "build/$preset" -t query "${targets[@]}" >/dev/null 2>&1); then
    build_targets "$preset" "${targets[@]}"
else
    build_targets "$preset" all
fi

# The addresses that newer kernels draw at random can lie where ThreadSanitizer keeps its shadow.
fixed_addresses=()
if [ "$preset" = tsan ] && setarch "$(uname -m)" -R true 2>/dev/null; then
    fixed_addresses=(setarch "$(uname -m)" -R)
fi

${fixed_addresses[@]+"${fixed_addresses[@]}"} ctest --test-dir "$TESSERA_DIR/build/$preset" --output-on-failure --no-tests=error \
    --parallel "${TEST_JOBS:-2}" ${options[@]+"${options[@]}"}
