#!/usr/bin/env bash
# A short tour of marlo-cli against the built-in virtual grip. Usage: tour.sh BIN_DIR
# The tour uses its own preferences, program folder and grip state, so nothing of the user's is
# touched; the virtual grip keeps its state in a file across the commands.
set -uo pipefail
bin=${1:?usage: tour.sh BIN_DIR}
tour=$(mktemp -d)
trap 'rm -rf "$tour"' EXIT
export XDG_CONFIG_HOME="$tour/config" MARLO_HOME="$tour/home"
mkdir -p "$MARLO_HOME"
cp "$bin/instdbxx.tmp" "$MARLO_HOME/"
grip="sim:firmware=4.0.5,serial=TOUR000001,state=$tour/grip.json"
step() {
  printf '\n\033[1m$ marlo-cli %s\033[0m\n' "$*"
  "$bin/marlo-cli" --device "$grip" "$@"
  local status=$?
  [ $status -eq 0 ] || printf '(exit status %d)\n' "$status"
}
cat > "$tour/settings.json" <<'JSON'
{"templates": [{"sName": "Tournament 12\" barrel", "lShotTime": 12, "lDwellTime": 10,
  "lCycleTimeOpen": 30, "lLoadTime": 40, "lCycleTimeClose": 28, "lFiringMode": 1,
  "UserVariables": [{"sName": "Barrel", "sValue": "12\""}, {"sName": "Paint", "sValue": "winter"}]}]}
JSON
step info
step bootmode
step get all
step put timing --ShotTime 12 --LoadTime 40
step --json get counters
step reset-counter 1
step stop-program
step bootmode
step get timing
step put timing --ShotTime 300
printf "\n(reading the whole program memory takes about 30 s: the grip needs a 100 ms pause after every command code)"
step firmware read "$tour/grip.tvf"
step library import "$tour/settings.json"
step library list
printf '\nEvery command: %s --help\n' "$bin/marlo-cli"
