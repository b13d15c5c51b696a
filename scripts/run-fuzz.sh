#!/usr/bin/env bash
# Builds the libFuzzer targets with clang (AddressSanitizer + UndefinedBehaviorSanitizer), runs
# each for a bounded time from its corpus checked in under fuzz/corpus/<target>/, then runs the
# concurrency stress tests and the golden corpus (rendered on several threads) under
# ThreadSanitizer. Fails on any finding: a crash, a sanitizer
# report, an input that runs longer than the per-input limit, a leak, or a failing stress test.
#
# Usage: scripts/run-fuzz.sh [seconds per fuzz target, default 60]
# Environment:
#   MORVANE_FUZZ_BUILD_DIR  build folder of the fuzz targets (default build/fuzz)
#   MORVANE_TSAN_BUILD_DIR  build folder of the stress tests; unset: the tsan preset
# Findings are written to <fuzz build folder>/fuzz-findings/<target>/; replay one with
#   <fuzz build folder>/fuzz/<target> <file>   (MORVANE_FUZZ_VERBOSE=1 describes dispatch cases)
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
build="${MORVANE_FUZZ_BUILD_DIR:-build/fuzz}"
jobs="$(nproc 2>/dev/null || echo 2)"
targets=(fuzz_dispatch_stretch fuzz_command_interface)

# Per-input time limit (seconds) and largest input (bytes) per target: a render of a few
# hundred pixels square with every kernel of a frame takes well under a second even here.
declare -A input_timeout=([fuzz_dispatch_stretch]=20 [fuzz_command_interface]=20)
declare -A max_len=([fuzz_dispatch_stretch]=256 [fuzz_command_interface]=512)

echo "== Building the fuzz targets in $build"
cmake -S . -B "$build" -G Ninja \
  -DCMAKE_BUILD_TYPE=RelWithDebInfo -DMORVANE_WERROR=ON \
  -DCMAKE_CXX_COMPILER=clang++ \
  -DMORVANE_SANITIZE=address,undefined \
  -DCMAKE_CXX_FLAGS=-fsanitize=fuzzer-no-link \
  -DMORVANE_BUILD_FUZZ=ON -DMORVANE_BUILD_TESTS=OFF
cmake --build "$build" -j "$jobs" --target "${targets[@]}"

export ASAN_OPTIONS="${ASAN_OPTIONS:-detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"

failed=()
for target in "${targets[@]}"; do
  seeds="fuzz/corpus/$target"
  # New inputs go to a scratch corpus, so the checked-in one stays as it is.
  scratch="$build/fuzz-corpus/$target"
  findings="$build/fuzz-findings/$target"
  mkdir -p "$scratch" "$findings"
  echo "== Fuzzing $target for ${seconds}s from $seeds"
  if ! "$build/fuzz/$target" -max_total_time="$seconds" -timeout="${input_timeout[$target]}" \
      -max_len="${max_len[$target]}" -rss_limit_mb=4096 -print_final_stats=1 \
      -artifact_prefix="$findings/" "$scratch" "$seeds"; then
    failed+=("$target")
    echo "!! $target found a problem; inputs are in $findings" >&2
  fi
done

echo "== Stress tests under ThreadSanitizer"
stress_targets=(golden_tests stress_host_tests)
if [ -n "${MORVANE_TSAN_BUILD_DIR:-}" ]; then
  tsan="$MORVANE_TSAN_BUILD_DIR"
  cmake -S . -B "$tsan" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS=-O1 \
    -DMORVANE_SANITIZE=thread -DMORVANE_WERROR=ON
  cmake --build "$tsan" -j "$jobs" --target "${stress_targets[@]}"
  TSAN_OPTIONS=halt_on_error=1 ctest --test-dir "$tsan" -R 'Stress|Golden' --output-on-failure \
    || failed+=("stress (ThreadSanitizer)")
else
  cmake --preset tsan
  cmake --build --preset tsan -j "$jobs" --target "${stress_targets[@]}"
  ctest --preset tsan -R 'Stress|Golden' || failed+=("stress (ThreadSanitizer)")
fi

if [ ${#failed[@]} -gt 0 ]; then
  echo "FAILED: ${failed[*]}" >&2
  exit 1
fi
echo "Fuzzing and stress tests found nothing."
