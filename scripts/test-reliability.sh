#!/usr/bin/env bash
# The reliability checks, run by CI after scripts/test.sh (whose release build step 3 uses):
#   1. fuzz smoke: every fuzz target for 20 seconds (preset "fuzz", clang + libFuzzer), as many
#      at a time as there are processors;
#   2. ThreadSanitizer over the resource tests (preset "tsan"), with the one suppression of
#      tests/resources/tsan.supp;
#   3. valgrind memcheck over 100 load/unload cycles of the language module.
# Only the targets each step needs are built. Usage: scripts/test-reliability.sh
# IC_FUZZ_SMOKE_SECONDS changes the time per fuzz target.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/setup.sh

start=$(date +%s)
step() { echo "=== reliability: $1 (at $(($(date +%s) - start)) s)"; }

step "fuzz smoke"
IC_FUZZ_JOBS=$(nproc 2>/dev/null || echo 2) scripts/fuzz.sh all "${IC_FUZZ_SMOKE_SECONDS:-20}"

step "ThreadSanitizer over the resource tests"
tsan_tests=(resources_runtime_test resources_threads_test resources_module_test
            resources_module_threads_test)
cmake --preset tsan >/dev/null
cmake --build --preset tsan --target "${tsan_tests[@]}"
for t in "${tsan_tests[@]}"; do
  echo "--- ${t}"
  TSAN_OPTIONS="halt_on_error=1:second_deadlock_stack=1:suppressions=${PWD}/tests/resources/tsan.supp" \
    IC_MODULE_CYCLES=100 IC_STRESS_SECONDS=5 "build/tsan/tests/resources/${t}" --gtest_brief=1
done

step "valgrind: 100 load/unload cycles of the module"
cmake --preset release >/dev/null
cmake --build --preset release --target resources_module_test
IC_MODULE_CYCLES=100 valgrind --error-exitcode=1 --leak-check=full --quiet \
  build/release/tests/resources/resources_module_test \
  --gtest_filter=LanguageModuleLifetimeTest.LoadAndUnloadAThousandTimes

step "done"
