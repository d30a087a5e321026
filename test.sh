#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test offscreen.
#   ./test.sh          the normal build in build/
#   ./test.sh --asan   the AddressSanitizer + UBSan build in build-asan/
set -euo pipefail
cd "$(dirname "$0")"
source scripts/bootstrap.sh
gr_install_missing

dir=build
args=()
if [ "${1:-}" = "--asan" ]; then
    dir=build-asan
    args=(-DGR_SANITIZE=ON -DGR_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug)
fi
gr_build "$dir" "${args[@]}"
export QT_QPA_PLATFORM=offscreen
ctest --test-dir "$dir" --output-on-failure -j "$(nproc)"
