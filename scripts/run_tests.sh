#!/usr/bin/env bash
# Builds everything and runs every test: the normal build, then the tests
# again under AddressSanitizer and UndefinedBehaviorSanitizer, then (when
# clang is available) a short run of each fuzz target.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs"
ctest --test-dir build --output-on-failure -j"$jobs"

if [ "${KSMAN_SKIP_SANITIZERS:-0}" != 1 ]; then
  cmake -S . -B build-sanitize -DCMAKE_BUILD_TYPE=Debug -DKSMAN_SANITIZE=ON >/dev/null
  cmake --build build-sanitize -j"$jobs"
  ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1 \
    ctest --test-dir build-sanitize --output-on-failure -j"$jobs"
fi

# Last step: each fuzz target runs briefly when clang can build them
# (scripts/fuzz.sh; KSMAN_FUZZ_SECONDS sets the time per target).
if [ "${KSMAN_SKIP_FUZZERS:-0}" != 1 ] && command -v clang++ >/dev/null 2>&1; then
  KSMAN_FUZZ_PARALLEL="$jobs" bash scripts/fuzz.sh "${KSMAN_FUZZ_SECONDS:-30}"
fi
