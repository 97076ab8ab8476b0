#!/usr/bin/env bash
# Builds the fuzz targets (preset "fuzz", clang) and runs them with libFuzzer.
# Usage: scripts/fuzz.sh [target|all] [seconds]    (default: all targets, 60 seconds each)
# Targets: the names in fuzz/targets/NAME_fuzz.cpp. Each run starts from the seed corpus in
# fuzz/corpus/NAME and keeps what it finds in build/fuzz/corpus/NAME; a crash leaves its input in
# build/fuzz/crashes/NAME (add it to fuzz/corpus/NAME once fixed) and fails the script.
set -euo pipefail
cd "$(dirname "$0")/.."

target=${1:-all}
seconds=${2:-60}
if [ "${target}" = all ]; then
  targets=()
  for f in fuzz/targets/*_fuzz.cpp; do
    name=$(basename "${f}" _fuzz.cpp)
    targets+=("${name}")
  done
else
  [ -f "fuzz/targets/${target}_fuzz.cpp" ] || { echo "fuzz.sh: no target '${target}'" >&2; exit 2; }
  targets=("${target}")
fi

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}"

# The dictionary of a target: its own, or the one of the family of text it reads.
dictionary() {
  case "$1" in
    utf | search | case) echo fuzz/dict/utf.dict ;;
    *) [ -f "fuzz/dict/$1.dict" ] && echo "fuzz/dict/$1.dict" ;;
  esac
}

status=0
for name in "${targets[@]}"; do
  work=build/fuzz/corpus/${name}
  crashes=build/fuzz/crashes/${name}
  mkdir -p "${work}" "${crashes}"
  args=(-max_total_time="${seconds}" -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
        -artifact_prefix="${crashes}/")
  dict=$(dictionary "${name}" || true)
  [ -n "${dict}" ] && args+=(-dict="${dict}")
  echo "=== fuzz ${name}: ${seconds} s"
  if ! ASAN_OPTIONS=detect_leaks=1 UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
      "build/fuzz/fuzz/fuzz_${name}" "${args[@]}" "${work}" "fuzz/corpus/${name}" \
      2> "build/fuzz/${name}.log"; then
    echo "fuzz ${name}: FAILED, input kept in ${crashes}; log: build/fuzz/${name}.log"
    tail -n 40 "build/fuzz/${name}.log"
    status=1
  fi
  grep -E "^#[0-9]+ +DONE|stat::number_of_executed_units|stat::average_exec_per_sec" \
    "build/fuzz/${name}.log" || true
done
exit "${status}"
