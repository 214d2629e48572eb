#!/usr/bin/env bash
# Configures and builds Marlo into $BUILD_DIR (default: build). Extra arguments go to cmake.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$here/build}
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE="${BUILD_TYPE:-Release}" "$@" >/dev/null
cmake --build "$build" -j"$(nproc)"
