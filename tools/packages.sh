# Sourced by run and check: installs what is missing on a Debian or Ubuntu machine.
#
# ensure_packages PACKAGE... : does nothing when all are there; else installs them, with sudo when not root.

ensure_packages() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    if ! command -v apt-get >/dev/null; then
        echo "Missing packages, and no apt-get to install them with: ${missing[*]}" >&2
        return 1
    fi
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        as_root=(sudo)
        command -v sudo >/dev/null || { echo "Install these packages first: ${missing[*]}" >&2; return 1; }
    fi
    echo "Installing: ${missing[*]}"
    export DEBIAN_FRONTEND=noninteractive
    "${as_root[@]}" apt-get update -qq || return 1
    "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null || {
        echo "Could not install: ${missing[*]}" >&2
        return 1
    }
}

BUILD_PACKAGES=(g++ cmake ninja-build ccache git ca-certificates
    qt6-base-dev libqt6svg6 libgl-dev libgeos-dev libgeos++-dev libboost-dev libcli11-dev libfmt-dev
    fonts-dejavu-core)
CHECK_PACKAGES=(libgtest-dev libgmock-dev clang libclang-rt-dev binutils python3 python3-ezdxf gdal-bin)

# The sanitizer runtime's package carries clang's version in its name on Debian 12.
resolve_check_packages() {
    if ! apt-cache show libclang-rt-dev >/dev/null 2>&1; then
        local version
        version=$(apt-cache depends clang 2>/dev/null | sed -n 's/.*Depends: clang-\([0-9]*\)$/\1/p' | head -n 1)
        CHECK_PACKAGES=("${CHECK_PACKAGES[@]/libclang-rt-dev/libclang-rt-${version:-14}-dev}")
    fi
}
