#!/usr/bin/env bash
# Builds everything with warnings as errors and runs all tests. CI runs this and .ci/run a check more. With the name of a
# preset it builds and runs the tests of that one: "./test.sh asan".
set -eu
cd "$(dirname "$0")"
. tools/setup.sh

preset="${1:-release}"
# shellcheck disable=SC2086
ensure_packages $packages_to_build $packages_to_test
tools/check_format.sh
build "$preset" all quillfern_tests
ctest --preset "$preset" --parallel "$(nproc)"
