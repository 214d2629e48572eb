#!/usr/bin/env bash
# Runs every benchmark of two builds in the same run, one after the other for each benchmark, so
# that a change can be judged against what came before it on the same machine at the same time.
# Usage: bench/compare.sh BEFORE_BIN_DIR AFTER_BIN_DIR [ROUNDS]
# Each benchmark that both builds have runs ROUNDS times (default 1) from each, alternating.
set -uo pipefail
before=${1:?usage: compare.sh BEFORE_BIN_DIR AFTER_BIN_DIR [ROUNDS]}
after=${2:?usage: compare.sh BEFORE_BIN_DIR AFTER_BIN_DIR [ROUNDS]}
rounds=${3:-1}
status=0
for bench in "$after"/bench_*; do
  name=$(basename "$bench")
  [ -x "$bench" ] && [ -x "$before/$name" ] || continue
  echo "== $name"
  for ((round = 1; round <= rounds; round++)); do
    for side in before after; do
      dir=$before
      [ "$side" = after ] && dir=$after
      if ! "$dir/$name" 2>&1 | sed "s/^/  $side: /"; then
        echo "  $side: failed"
        status=1
      fi
    done
  done
done
exit $status
