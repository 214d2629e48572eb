#!/usr/bin/env bash
# Installs what is missing, builds Marlo and shows it working against the built-in virtual grip:
# a short tour of marlo-cli (the virtual grip keeps its state in a file across the commands).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/install-deps.sh"
BUILD_DIR=${BUILD_DIR:-$here/build} "$here/scripts/build.sh" -DMARLO_TESTS=OFF -DMARLO_BENCH=OFF
"$here/scripts/tour.sh" "${BUILD_DIR:-$here/build}/bin"
