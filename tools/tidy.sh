#!/usr/bin/env bash
# Runs clang-tidy with .clang-tidy's rules over the source files below the folders or of the names given:
#     tools/tidy.sh src/batch src/config/Preview.cpp
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh
[ $# -gt 0 ] || { echo "Name the folders or files to look at, for example src/batch" >&2; exit 2; }
# shellcheck disable=SC2086
ensure_packages $packages_to_build $packages_to_test clang-tidy
# Qt's tools make the headers of forms and the code of signals.
build tidy quillfern_desktop_autogen quillfern_dialogs_autogen quillfern_app_autogen
git ls-files -z -- "$@" | grep -zE '\.cpp$' | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy --quiet -p build/tidy
