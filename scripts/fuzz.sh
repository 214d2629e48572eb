#!/usr/bin/env bash
# Builds the libFuzzer targets with clang under the address and undefined-behaviour sanitizers
# and runs each for SECONDS (default 60), starting from the seed corpus in fuzz/corpus/. New
# inputs go to $BUILD_DIR/corpus/, never into the repository; a finding is written to
# $BUILD_DIR/findings/ and ends the script with status 1.
#   scripts/fuzz.sh [SECONDS] [TARGET...]
set -euo pipefail
here=$(cd "$(dirname "$0")/.." && pwd)
build=${BUILD_DIR:-$here/build-fuzz}
seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzz_firmware fuzz_library_records fuzz_library_import)

CC=clang CXX=clang++ cmake -S "$here" -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMARLO_FUZZ=ON -DMARLO_SANITIZE=ON \
  -DMARLO_TESTS=OFF -DMARLO_BENCH=OFF >/dev/null
cmake --build "$build" -j"$(nproc)" --target "${targets[@]}"

export ASAN_OPTIONS=${ASAN_OPTIONS:-detect_leaks=1:abort_on_error=1}
export UBSAN_OPTIONS=${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}
export QT_QPA_PLATFORM=offscreen
status=0
for target in "${targets[@]}"; do
  corpus="$build/corpus/$target"
  findings="$build/findings/$target"
  mkdir -p "$corpus" "$findings"
  log="$build/$target.log"
  echo "== $target: $seconds s"
  if "$build/bin/$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -max_len=65536 \
       -artifact_prefix="$findings/" -print_final_stats=1 "$corpus" "$here/fuzz/corpus/$target" >"$log" 2>&1; then
    :
  else
    status=1
    echo "   FINDING: see $log and $findings/"
    grep -E "FUZZ FINDING|ERROR: |runtime error" "$log" | head -5 || true
  fi
  runs=$(grep -E "^stat::number_of_executed_units" "$log" | awk '{print $2}' | tail -1 || true)
  cov=$( (grep -E "^#[0-9]+" "$log" || true) | tail -1 | grep -oE "cov: [0-9]+" || true)
  echo "   ${runs:-0} executions, ${cov:-cov: ?}, corpus $(ls "$corpus" | wc -l) inputs"
done
exit $status
