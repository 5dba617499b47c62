#!/usr/bin/env bash
# Builds Quillfern and starts it. Without a display, or as "./run.sh --sample", it stamps the files of samples/
# into out/ instead and tells where to look.
set -eu
cd "$(dirname "$0")"
. tools/setup.sh

# shellcheck disable=SC2086
ensure_packages $packages_to_build
build release

if [ "${1:-}" != --sample ] && [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x build/release/bin/quillfern ]; then
    exec build/release/bin/quillfern "$@"
fi

mkdir -p out
echo "Stamping samples/ into out/:"
build/release/bin/quillfern-run --output out --continuous --margins 30,24,30,24pt \
    --text 'Page {0} of {1}' --anchor BottomMiddle --font-size 10 --color '#1F3A5F' \
    --text 'QF-{0}' --padding 6 --anchor TopRight --font-size 9 --bold --symmetric \
    --text 'SAMPLE' --anchor MiddleMiddle --font-size 90 --rotation 45 --opacity 12 --color '#B03030' --number-type plain --under \
    --image samples/logo.png --width 64 --anchor TopLeft --opacity 85 \
    samples/*.pdf samples/*.tif samples/*.gif samples/*.bmp samples/*.jpg samples/diagram.png
echo "Look at the stamped copies in $(pwd)/out"
