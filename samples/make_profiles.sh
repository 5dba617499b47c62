#!/usr/bin/env bash
# Makes the profiles in samples/profiles/ with the runner, and the pictures of them that the README shows.
#     samples/make_profiles.sh [RUNNER]
set -eu
cd "$(dirname "$0")/.."
runner=${1:-build/release/bin/quillfern-run}
out=samples/profiles
pictures=docs/pictures
mkdir -p "$out" "$pictures"

# profile NAME SAMPLE OPTION... : saves a profile and draws it on a sample's first page
profile() {
    name=$1 sample=$2
    shift 2
    "$runner" --quiet "$@" --save-profile "$out/$name.qfprofile"
    "$runner" --quiet --profile "$out/$name.qfprofile" --preview-size 420x595 --preview "$pictures/$name.png" \
        "samples/$sample"
}

profile page-x-of-y contract.pdf --margins 36,36,36,30pt \
    --text 'Page {0} of {1}' --font-size 10 --color '#1F3A5F'
profile bates-numbers contract.pdf --continuous --start-number 1041 --margins 12,10,12,10mm \
    --text 'ACME-{0}' --padding 6 --anchor BottomRight --font 'Liberation Mono' --font-size 10 --bold
profile roman-front-matter report.pdf --end-page 4 --margins 36,36,36,24pt \
    --text '{0}' --number-type roman-small --anchor BottomMiddle --font 'Liberation Serif' --italic --font-size 13
profile facing-pages contract.pdf --margins 0.75,0.5,0.75,0.5in \
    --text '{0}' --anchor TopLeft --symmetric --font-size 12 --bold \
    --text 'Agreement for Storage' --number-type plain --anchor TopRight --symmetric --font 'Liberation Serif' --italic --font-size 10
profile draft report.pdf \
    --text DRAFT --number-type plain --anchor MiddleMiddle --font-size 120 --bold --rotation 45 --opacity 18 --color '#B03030' \
    --text '{0} / {1}' --anchor BottomMiddle --font-size 9
profile logo-and-text contract.pdf --margins 30,24,30,24pt \
    --image samples/logo.png --width 64 --anchor TopLeft \
    --text 'Registry copy' --number-type plain --anchor TopRight --font-size 11 --bold --color '#1D5C4A' \
    --text '{0} of {1}' --anchor BottomRight --font-size 10 --color '#1D5C4A'
