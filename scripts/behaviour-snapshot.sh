#!/usr/bin/env bash
# Records what the program does in one scripted marlo-cli session against the virtual grip, so
# that a change of structure can be compared before and after: the traffic log (komm.log, its
# time stamps masked), every command's output and exit status, and the library's rows as
# exported. Usage: behaviour-snapshot.sh BIN_DIR OUT_DIR; compare two OUT_DIRs with diff -r.
set -uo pipefail
bin=${1:?usage: behaviour-snapshot.sh BIN_DIR OUT_DIR}
out=${2:?usage: behaviour-snapshot.sh BIN_DIR OUT_DIR}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$out"
# In English whatever the machine speaks, so that two snapshots compare.
export XDG_CONFIG_HOME="$work/config" MARLO_HOME="$work/home" LC_ALL=C.UTF-8 LANGUAGE=
mkdir -p "$MARLO_HOME" "$XDG_CONFIG_HOME/Marlo"
cp "$bin/instdbxx.tmp" "$MARLO_HOME/"
printf '[Initialize]\nCommLogToFile=True\n' > "$XDG_CONFIG_HOME/Marlo/Marlo.ini"
grip="sim:firmware=4.0.5,serial=SNAP000001,state=$work/grip.json"
cat > "$work/library.json" <<'JSON'
{"templates": [
 {"ID": "{11111111-2222-3333-4444-555555555555}", "sName": "Quote ' and \" and ; DROP TABLE ta_UserVar; --",
  "dtDate": "2026-05-16", "lShotTime": 12, "lDwellTime": 10, "lCycleTimeOpen": 30, "lLoadTime": 38,
  "lCycleTimeClose": 28, "lFiringMode": 1, "lGameTime": 10, "bAlertOne": true,
  "UserVariables": [{"sName": "Barrel", "sValue": "12\""}, {"sName": "Odd", "sValue": "\ufffe \uffff \ud800 é 🎯"}]},
 {"sName": "Second", "dtDate": "2026-07-04", "lShotTime": 255, "lDwellTime": 0, "lCycleTimeOpen": 75,
  "lLoadTime": 1, "lCycleTimeClose": 30, "lFiringMode": 6, "lGameTime": 255}
]}
JSON
n=0
run() {
  n=$((n + 1))
  "$bin/marlo-cli" "$@" > "$out/$(printf '%02d' $n).out" 2> "$out/$(printf '%02d' $n).err"
  echo "exit $?" >> "$out/$(printf '%02d' $n).out"
}
run --device "$grip" info
run --device "$grip" --json get all
run --device "$grip" put timing --ShotTime 12 --LoadTime 40
run --device "$grip" put options --LedOn 1 --DefaultLoadTime 60
run --device "$grip" put ramping --Shots 5 --HyperTime 90
run --device "$grip" put gametimer --CountDownTimer 20 --PreAlert1On 1
run --device "$grip" reset-counter 1
run --device "$grip,fault=nak@24" put timing --ShotTime 9
run --device "$grip,fault=garbage@14" get timing
run --device "$grip,fault=badsum@17" get battery
run --device "$grip" get all
run library import "$work/library.json"
run library list
run --json library list
run library export "$work/exported.json"
run library delete "{11111111-2222-3333-4444-555555555555}"
run --json library list
cp "$work/exported.json" "$out/library.json"
# The traffic log with each entry's time stamp masked.
sed -E 's/^.*: (Sending data|Receiving data|Error opening port.*)\r?$/TIME: \1/' "$MARLO_HOME/komm.log" > "$out/komm.log"
# New records get new GUIDs in every run: masked, but the one the script gives is kept.
perl -pi -e 's/\{(?!11111111-2222)[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}\}/{GUID}/g' "$out"/*
