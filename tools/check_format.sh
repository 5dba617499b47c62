#!/usr/bin/env bash
# Checks that every source file is formatted as .clang-format says; with --fix it formats those that are not.
set -eu
cd "$(dirname "$0")/.."
format=clang-format-14
command -v "$format" >/dev/null 2>&1 || format=clang-format
case "$("$format" --version)" in
*" 14."*) ;;
*)
    echo "Formatting is not checked: that takes clang-format 14, another version breaks lines elsewhere."
    exit 0
    ;;
esac
mode="--dry-run --Werror"
[ "${1:-}" != --fix ] || mode=-i
# shellcheck disable=SC2086 # the mode is two words
git ls-files -z -- '*.cpp' '*.h' | xargs -0 "$format" $mode
