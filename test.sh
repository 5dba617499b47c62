#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests. This is what CI runs.
set -eu
cd "$(dirname "$0")"
. tools/setup.sh

# shellcheck disable=SC2086
ensure_packages $packages_to_build $packages_to_test
build "${1:-dev}"
ctest --preset "${1:-dev}" --parallel "$(nproc)"
