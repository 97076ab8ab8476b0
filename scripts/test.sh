#!/usr/bin/env bash
# Sets up the machine, then configures, builds and runs the whole test suite twice:
# optimised (preset "release") and under AddressSanitizer + UBSan (preset "asan").
# Usage: scripts/test.sh [preset ...]   (default: release asan)
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

presets=("$@")
((${#presets[@]})) || presets=(release asan)
jobs=$(nproc 2>/dev/null || echo 2)

for preset in "${presets[@]}"; do
  echo "=== ${preset}: configure"
  cmake --preset "${preset}" >/dev/null
  echo "=== ${preset}: build"
  cmake --build --preset "${preset}" -j "${jobs}"
  echo "=== ${preset}: test"
  ctest --preset "${preset}"
done
