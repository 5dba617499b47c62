# Sourced by run.sh and test.sh: installs what a Debian 12 machine lacks, saying so, and nothing when it lacks nothing.

packages_to_build="cmake ninja-build g++ pkg-config ccache qt6-base-dev qt6-svg-dev libgl1-mesa-dev libqpdf-dev libtiff-dev
  zlib1g-dev libdeflate-dev nettle-dev libturbojpeg0-dev libjpeg62-turbo-dev libpng-dev
  liblcms2-dev libharfbuzz-dev libfontconfig-dev qt6-pdf-dev fonts-liberation weasyprint"
packages_to_test="clang-format libgtest-dev libgmock-dev poppler-utils qpdf libtiff-tools dbus-daemon fonts-droid-fallback fonts-dejavu-core
  fonts-cantarell fonts-open-sans python3 locales parallel"

# ensure_packages NAME... : installs those that are missing, as root or through sudo.
ensure_packages() {
    missing=""
    for package in "$@"; do
        state=$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)
        [ "$state" = installed ] || missing="$missing $package"
    done
    [ -n "$missing" ] || return 0
    if ! command -v apt-get >/dev/null 2>&1; then
        echo "These packages are needed, and this is no Debian system; install what matches them:$missing" >&2
        return 1
    fi
    as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null 2>&1; then
            echo "Run this as root, or install sudo; these packages are missing:$missing" >&2
            return 1
        fi
        as_root="sudo"
    fi
    echo "Installing with apt:$missing"
    $as_root apt-get update -qq
    # shellcheck disable=SC2086 # the list is meant to be split
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}

# build PRESET [TARGET...] : configures (which is quick when nothing changed, and takes up changed presets) and builds,
# quietly unless something is wrong.
build() {
    preset_to_build="$1"
    shift
    [ $# -gt 0 ] || set -- all
    configured=$(cmake --preset "$preset_to_build" 2>&1) || { echo "$configured" >&2; return 1; }
    # CMake 3.25 does not look at files that are new since it last generated code for Qt's classes.
    find "build/$preset_to_build" -path '*_autogen/timestamp' -delete
    cmake --build --preset "$preset_to_build" --target "$@" -- --quiet
}
