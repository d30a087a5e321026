#!/usr/bin/env bash
# Installs what is missing, builds, and starts Groceries. Arguments go to the application.
set -euo pipefail
cd "$(dirname "$0")"
source scripts/bootstrap.sh
gr_install_missing
gr_build build -DGR_BUILD_TESTS=OFF -DGR_BUILD_BENCH=OFF >&2
exec build/src/groceries "$@"
