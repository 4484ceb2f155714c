#!/usr/bin/env bash
# Builds KSManCMD and runs it on the bundled example: a copy of
# examples/database.txt is merged with examples/signals.h in build/example/,
# so the checkout stays clean. Prints the tool's output and the new database.
set -euo pipefail
cd "$(dirname "$0")/.."
bash scripts/deps.sh

jobs=$(nproc 2>/dev/null || echo 2)
cmake -S . -B build -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
cmake --build build -j"$jobs" --target KSManCMD

work=build/example
rm -rf "$work"
mkdir -p "$work"
cp examples/database.txt examples/signals.h "$work/"
(cd "$work" && ../driver/KSManCMD -Ndatabase.txt -Ssignals.h)
echo
echo "==== $work/database.txt ===="
cat "$work/database.txt"
