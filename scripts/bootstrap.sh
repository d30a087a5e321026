#!/usr/bin/env bash
# Shared by run.sh and test.sh: install the Debian packages that are missing, then configure
# and build into the given folder. Quick when nothing changed.
set -euo pipefail

GR_PACKAGES=(cmake ninja-build g++ qt6-base-dev libgl-dev fonts-dejavu-core fonts-wqy-zenhei)

gr_install_missing() {
    local missing=()
    local pkg
    for pkg in "${GR_PACKAGES[@]}" "$@"; do
        if ! dpkg-query -W -f='${Status}' "$pkg" 2>/dev/null | grep -q 'install ok installed'; then
            missing+=("$pkg")
        fi
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -ne 0 ] && sudo=(sudo)
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# gr_build <build dir> [extra cmake arguments...]
gr_build() {
    local dir=$1
    shift
    if [ ! -f "$dir/build.ninja" ]; then
        cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@"
    fi
    cmake --build "$dir" -j "$(nproc)"
}
