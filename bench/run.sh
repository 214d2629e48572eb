#!/usr/bin/env bash
# Builds the benchmarks in Release and runs each; every program prints its figures and floors.
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$here/build-bench}
cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=Release -DMARLO_TESTS=OFF -DMARLO_BENCH=ON >/dev/null
cmake --build "$build" -j"$(nproc)" >/dev/null
for bench in "$build"/bin/bench_*; do
  [ -x "$bench" ] || continue
  echo "== $(basename "$bench")"
  "$bench"
done
