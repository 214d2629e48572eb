#!/usr/bin/env bash
# Takes a screenshot of every window of the desktop program, driven from the keyboard on the
# virtual grip under a private X server, so that a change of structure can be compared before and
# after (compare the two folders picture by picture). Needs Xvfb, xdotool and ImageMagick.
# Usage: window-shots.sh BIN_DIR OUT_DIR
# MARLO_SHOTS_LANGUAGE=de takes them in German (the menus are then driven by the German mnemonics).
set -uo pipefail
bin=${1:?usage: window-shots.sh BIN_DIR OUT_DIR}
out=${2:?usage: window-shots.sh BIN_DIR OUT_DIR}
mkdir -p "$out"
work=$(mktemp -d)
display=:$((90 + RANDOM % 100))
Xvfb "$display" -screen 0 1280x1024x24 -nolisten tcp >/dev/null 2>&1 &
xvfb=$!
trap 'kill $marlo $xvfb 2>/dev/null; wait 2>/dev/null; rm -rf "$work"' EXIT
export DISPLAY=$display XDG_CONFIG_HOME="$work/config" MARLO_HOME="$work/home" LANG=C.UTF-8 LC_ALL=C.UTF-8 LANGUAGE=
# The mnemonics that open each window: Function > Properties, > Library templates, the Get button,
# Function > Options, Help > About, View > Gun build info, View > Communication log.
keys_properties="alt+u r" keys_library="alt+u t" keys_get="alt+g" keys_options="alt+u o" keys_about="alt+h a"
keys_buildinfo="alt+v b" keys_commlog="alt+v c"
if [ "${MARLO_SHOTS_LANGUAGE:-}" = de ]; then
  export LANG=de_DE.UTF-8 LC_ALL= LC_CTYPE=C.UTF-8 LANGUAGE=de
  keys_properties="alt+u e" keys_library="alt+u v" keys_get="alt+l" keys_options="alt+u o" keys_about="alt+h b"
  keys_buildinfo="alt+a b" keys_commlog="alt+a k"
fi
mkdir -p "$XDG_CONFIG_HOME/Marlo" "$MARLO_HOME"
cp "$bin/instdbxx.tmp" "$MARLO_HOME/"
first="{5D1E2A8C-3B4F-4C6D-9E7F-0A1B2C3D4E5F}"
# The grip's state file and the program folder sit at fixed places, so that the status bar shows
# the same path in every run.
state=/tmp/marlo-window-shots-grip.json
rm -f "$state"
cat > "$XDG_CONFIG_HOME/Marlo/Marlo.ini" <<INI
[Initialize]
CommDevice=sim:firmware=4.0.5,serial=SHOTS00001,state=$state
LastKey=$first
DBName=/tmp/marlo-window-shots.mdb
INI
rm -f /tmp/marlo-window-shots.mdb
cp "$bin/instdbxx.tmp" /tmp/marlo-window-shots.mdb
cat > "$work/library.json" <<JSON
{"templates": [
 {"ID": "$first", "sName": "Tournament", "dtDate": "2026-05-16", "lShotTime": 12, "lDwellTime": 10,
  "lCycleTimeOpen": 30, "lLoadTime": 38, "lCycleTimeClose": 28, "lFiringMode": 1, "lGameTime": 10, "bAlertOne": true,
  "UserVariables": [{"sName": "Barrel", "sValue": "12\""}]},
 {"sName": "Woodsball", "dtDate": "2026-07-04", "lShotTime": 10, "lDwellTime": 10, "lCycleTimeOpen": 34,
  "lLoadTime": 40, "lCycleTimeClose": 30, "lFiringMode": 0, "lGameTime": 25}
]}
JSON
"$bin/marlo-cli" library import "$work/library.json" >/dev/null
sleep 1
"$bin/marlo" >/dev/null 2>&1 &
marlo=$!
for _ in $(seq 50); do
  xdotool search --name "Marlo" >/dev/null 2>&1 && break
  sleep 0.2
done
sleep 2
shot() { sleep "${2:-1.5}"; import -window root "$out/$1.png"; }
# Without a window manager the active window takes the keyboard only when focused by hand.
keys() {
  xdotool windowfocus --sync "$(xdotool search --onlyvisible --name . | tail -1)" 2>/dev/null
  xdotool key --delay 150 "$@"
}
shot 01-start
keys $keys_properties; shot 02-properties
keys Escape; sleep 1
keys $keys_library; shot 03-library-browser
keys Escape; sleep 1
keys $keys_get; shot 04-get-confirmation 5
keys Return; shot 05-after-get
keys $keys_options; shot 06-options
keys Escape; sleep 1
keys $keys_about; shot 07-about
keys Escape; sleep 1
keys $keys_buildinfo; shot 08-build-info
keys Escape; sleep 1
# The traffic window stays open over the others: it comes last.
keys $keys_commlog; shot 09-communication-log
echo "screenshots in $out"
