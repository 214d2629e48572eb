#!/usr/bin/env bash
# Installs what is missing, builds Marlo and shows it working against the built-in virtual grip:
# the desktop program when a display is there, else a short tour of marlo-cli. Either way it uses
# preferences, a program folder and a library of its own, so nothing of the user's is touched.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/install-deps.sh"
BUILD_DIR=${BUILD_DIR:-$here/build} "$here/scripts/build.sh" -DMARLO_TESTS=OFF -DMARLO_BENCH=OFF
bin="${BUILD_DIR:-$here/build}/bin"
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
  "$here/scripts/demo.sh" "$bin"
else
  "$here/scripts/tour.sh" "$bin"
fi
