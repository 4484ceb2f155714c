#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for a given time,
# seeded from tests/data/ (and examples/) with the dictionary fuzz/ksman.dict.
# Prints the executions, coverage and findings of every target; exits 1 when
# any target found a crash, a hang, a leak or a sanitizer report.
#   scripts/fuzz.sh [seconds per target] [target...]
# Environment: KSMAN_FUZZ_BUILD (build folder, default build-fuzz),
# KSMAN_FUZZ_PARALLEL (targets run at a time, default 1).
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-60}
shift || true
targets=("$@")
[ ${#targets[@]} -gt 0 ] || targets=(fuzz_signals_header fuzz_database_loader fuzz_record_reader fuzz_exports)
build=${KSMAN_FUZZ_BUILD:-build-fuzz}
parallel=${KSMAN_FUZZ_PARALLEL:-1}

CXX=${CXX_FUZZ:-clang++} cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo \
  -DKSMAN_BUILD_FUZZERS=ON -DKSMAN_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" -j"$(nproc 2>/dev/null || echo 2)" --target "${targets[@]}" >/dev/null

# Seed folders of a target: the kept inputs of its kind, regressions included.
seeds_of() {
  local kind
  case "$1" in
    fuzz_signals_header) kind=h ;;
    fuzz_exports) kind=def ;;
    *) kind=txt ;;
  esac
  local dir="$build/seeds/$1"
  rm -rf "$dir" && mkdir -p "$dir"
  find tests/data examples -type f -name "*.$kind" -exec cp --backup=numbered -t "$dir" {} +
  echo "$dir"
}

run_target() {
  local target=$1 corpus="$build/corpus/$1" findings="$build/findings/$1"
  mkdir -p "$corpus" "$findings"
  local log="$build/logs/$target.log"
  mkdir -p "$build/logs"
  # -close_fd_mask=3 silences the tool's own output; reports still arrive.
  "$build/fuzz/$target" -max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len=16384 \
    -dict=fuzz/ksman.dict -close_fd_mask=3 -print_final_stats=1 -artifact_prefix="$findings/" \
    "$corpus" $(seeds_of "$target") >"$log" 2>&1 || true
}

summarise() {
  local target=$1 log="$build/logs/$1.log"
  local execs cov found
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -1)
  cov=$(grep -o 'cov: [0-9]*' "$log" | tail -1 | cut -d' ' -f2)
  found=$(grep -cE '^==[0-9]+==ERROR|runtime error:|ALARM: working on the last Unit|ERROR: libFuzzer' "$log" || true)
  printf '%-22s executions %-10s coverage %-6s findings %s\n' "$target" "${execs:-?}" "${cov:-?}" "$found"
  [ "$found" = 0 ] && [ -n "$execs" ]
}

running=0
for target in "${targets[@]}"; do
  run_target "$target" &
  running=$((running + 1))
  if [ "$running" -ge "$parallel" ]; then wait -n || true; running=$((running - 1)); fi
done
wait

status=0
for target in "${targets[@]}"; do summarise "$target" || status=1; done
[ "$status" = 0 ] || echo "Findings and logs: $build/findings/, $build/logs/" >&2
exit "$status"
