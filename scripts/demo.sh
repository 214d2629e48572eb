#!/usr/bin/env bash
# Opens the desktop program on the built-in virtual grip, with preferences, a program folder and
# a small demo library of its own, so that nothing of the user's is touched. Usage: demo.sh BIN_DIR
set -uo pipefail
bin=${1:?usage: demo.sh BIN_DIR}
demo=$(mktemp -d)
trap 'rm -rf "$demo"' EXIT
export XDG_CONFIG_HOME="$demo/config" MARLO_HOME="$demo/home"
mkdir -p "$XDG_CONFIG_HOME/Marlo" "$MARLO_HOME"
cp "$bin/instdbxx.tmp" "$MARLO_HOME/"
first="{5D1E2A8C-3B4F-4C6D-9E7F-0A1B2C3D4E5F}"
cat > "$XDG_CONFIG_HOME/Marlo/Marlo.ini" <<INI
[Initialize]
CommDevice=sim:firmware=4.0.5,serial=DEMO000001,state=$demo/grip.json
LastKey=$first
INI
cat > "$demo/library.json" <<JSON
{"templates": [
 {"ID": "$first", "sName": "Tournament, 12\" barrel", "dtDate": "2026-05-16", "lShotTime": 12, "lDwellTime": 10,
  "lCycleTimeOpen": 30, "lLoadTime": 38, "lCycleTimeClose": 28, "lFiringMode": 1, "lGameTime": 10, "bAlertOne": true,
  "UserVariables": [{"sName": "Barrel", "sValue": "12\""}, {"sName": "Paint", "sValue": "winter fill"},
                    {"sName": "Temperature", "sValue": "4 °C"}]},
 {"sName": "Woodsball", "dtDate": "2026-07-04", "lShotTime": 10, "lDwellTime": 10, "lCycleTimeOpen": 34,
  "lLoadTime": 40, "lCycleTimeClose": 30, "lFiringMode": 0, "lGameTime": 25,
  "UserVariables": [{"sName": "Field", "sValue": "North forest"}]},
 {"sName": "Practice (fast)", "dtDate": "2026-09-12", "lShotTime": 8, "lDwellTime": 8, "lCycleTimeOpen": 26,
  "lLoadTime": 30, "lCycleTimeClose": 24, "lFiringMode": 6, "lGameTime": 5}
]}
JSON
"$bin/marlo-cli" library import "$demo/library.json" >/dev/null
echo "Marlo runs on the virtual grip (preferences and library in $demo; removed when Marlo closes)."
"$bin/marlo"
