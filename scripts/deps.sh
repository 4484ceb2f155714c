#!/usr/bin/env bash
# Installs the build dependencies with apt-get when one is missing and the
# script runs as root; otherwise says what is missing.
set -euo pipefail

missing=()
command -v cmake >/dev/null 2>&1 || missing+=(cmake)
command -v g++ >/dev/null 2>&1 || missing+=(g++)
command -v make >/dev/null 2>&1 || missing+=(make)
[ -f /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev)
[ -f /usr/include/gmock/gmock.h ] || missing+=(libgmock-dev)
if [ "${KSMAN_WITH_BENCHMARKS:-0}" = 1 ] && [ ! -f /usr/include/benchmark/benchmark.h ]; then
  missing+=(libbenchmark-dev)
fi

if [ ${#missing[@]} -gt 0 ]; then
  if [ "$(id -u)" = 0 ]; then
    echo "Installing: ${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq "${missing[@]}" >/dev/null
  else
    echo "Missing build dependencies: ${missing[*]} (run as root, or install them with apt-get)" >&2
    exit 1
  fi
fi
