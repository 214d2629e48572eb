#!/usr/bin/env bash
# Installs what is missing, builds Marlo and shows it working against the built-in virtual grip:
# a short tour of marlo-cli (the virtual grip keeps its state in a file across the commands).
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
"$here/scripts/install-deps.sh"
BUILD_DIR=${BUILD_DIR:-$here/build} "$here/scripts/build.sh" -DMARLO_TESTS=OFF -DMARLO_BENCH=OFF
bin=${BUILD_DIR:-$here/build}/bin
tour=$(mktemp -d)
trap 'rm -rf "$tour"' EXIT
# The tour uses its own preferences and library, so nothing of the user's is touched.
export XDG_CONFIG_HOME="$tour/config" MARLO_HOME="$tour/home"
mkdir -p "$MARLO_HOME"
cp "$bin/instdbxx.tmp" "$MARLO_HOME/" 2>/dev/null || true
grip="sim:firmware=4.0.5,serial=TOUR000001,state=$tour/grip.json"
step() { printf '\n$ marlo-cli %s\n' "$*"; "$bin/marlo-cli" --device "$grip" "$@" || printf '(exit status %d)\n' "$?"; }
step info
step bootmode
step get all
step put timing --ShotTime 12 --LoadTime 40
step get timing
step --json get counters
step reset-counter 1
step stop-program
step bootmode
step get timing
step start-program
step firmware read "$tour/grip.tvf"
step library import "$here/data/example-library.json"
step library list
printf '\nThe virtual grip kept its state in %s; marlo-cli --help lists every command.\n' "$tour/grip.json"
