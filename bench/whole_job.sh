#!/usr/bin/env bash
# Whole-job benchmark: generates a signals header and a database file with the
# seeded generator (a tenth of the size first, then the full size), runs the
# built KSManCMD on them, and prints wall time and peak memory of each run.
# usage: bench/whole_job.sh [BUILD_DIR] [HEADER_LINES] [DB_RECORDS]
set -euo pipefail
cd "$(dirname "$0")/.."
build=${1:-build-bench}
lines=${2:-1000000}
records=${3:-100000}

cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" --target KSManCMD -j2 >/dev/null
tool=$(realpath "$build/driver/KSManCMD")

work="$build/whole_job"
mkdir -p "$work"
for scale in 10 1; do
  n=$((lines / scale)) r=$((records / scale))
  python3 bench/gen_inputs.py "$n" "$r" "$work/signals_$n.h" "$work/database_$r.src"
  cp "$work/database_$r.src" "$work/database_$r.txt"
  (cd "$work" && /usr/bin/time -v "$tool" "-Ndatabase_$r.txt" "-Ssignals_$n.h" >"run_$n.out" 2>"run_$n.time")
  wall=$(grep 'Elapsed (wall clock)' "$work/run_$n.time" | awk '{print $NF}')
  peak=$(grep 'Maximum resident set size' "$work/run_$n.time" | awk '{print $NF}')
  echo "header $n lines, database $r records: wall $wall, peak ${peak} KB," \
       "database out $(wc -l <"$work/database_$r.txt") lines"
done
