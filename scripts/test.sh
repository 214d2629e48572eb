#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test (the slow ones included).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/install-deps.sh"
BUILD_DIR=${BUILD_DIR:-$here/build} "$here/scripts/build.sh" -DMARLO_TESTS=ON "$@"
# Most tests wait on the virtual grip rather than compute: one more than the cores keeps both busy.
ctest --test-dir "${BUILD_DIR:-$here/build}" --output-on-failure -j"$(( $(nproc) + 1 ))"
