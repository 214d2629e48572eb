#!/usr/bin/env bash
# Writes what marlo-cli prints for every case of ./cases into OUTDIR (default: this folder), for
# when an output changes on purpose; tst_cliRecordCommands compares the program with these files.
#   capture.sh BUILD_DIR/bin [OUTDIR]
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
bin=$1
cli=$bin/marlo-cli
outdir=${2:-$here}
mkdir -p "$outdir"
grep -v '^#' "$here/cases" | while IFS= read -r line; do
  name=${line%%:*}
  read -r -a args <<<"${line#*:}"
  home=$(mktemp -d)
  cp "$bin/instdbxx.tmp" "$home/"
  mkdir "$home/config"
  status=0
  (cd "$home" && XDG_CONFIG_HOME=$home/config MARLO_HOME=$home "$cli" ${args[@]+"${args[@]}"} >"$home/.out" 2>"$home/.err") || status=$?
  # The program's path (in the usage) as its bare name.
  { echo "status: $status"; echo "--- stdout"; sed "s|$cli|marlo-cli|g" "$home/.out"
    echo "--- stderr"; sed "s|$cli|marlo-cli|g" "$home/.err"; } >"$outdir/$name"
  rm -rf "$home"
done
