#!/usr/bin/env bash
# Takes pictures of all windows on a virtual screen: light, dark, right to left and at double density.
#
#   tools/screenshots.sh [FOLDER]     into FOLDER (out/screenshots)
#   tools/screenshots.sh --docs       also puts those that the README and the manual show into docs/pictures
set -eu
cd "$(dirname "$0")/.."
. tools/setup.sh

docs=""
if [ "${1:-}" = --docs ]; then docs=yes; shift; fi
folder=${1:-out/screenshots}

# shellcheck disable=SC2086
ensure_packages $packages_to_build $packages_to_test xvfb xauth openbox
cmake --preset release -DQUILLFERN_TOOLS=ON >/dev/null
cmake --build --preset release --target quillfern-screenshots quillfern-render -- --quiet

take() { # LOOK SUFFIX SCALE
    # A window manager draws the frames of the windows; without a frame a sheet cannot be told from its
    # window.
    QT_SCALE_FACTOR=$3 QT_QPA_PLATFORM=xcb xvfb-run -a -s "-screen 0 2800x1800x24" bash -c \
        'openbox & manager=$!; sleep 1; build/release/bin/quillfern-screenshots samples "$@"; kill $manager' \
        take "$folder" "$1" "$2"
}
take light "" 1
take dark -dark 1
take rtl -rtl 1
take light -2x 2
echo "Pictures are in $folder"

if [ -n "$docs" ]; then
    for picture in window editor-text editor-picture progress; do
        cp "$folder/$picture.png" "docs/pictures/$picture.png"
    done
    echo "docs/pictures has new ones"
fi
