#!/usr/bin/env bash
# Builds the fuzz targets of fuzz/ into build-fuzz/ (Clang, libFuzzer, address
# and undefined-behaviour sanitizers) and runs each for SECONDS (default 60).
#   tools/fuzz.sh [SECONDS] [TARGET...]     e.g. tools/fuzz.sh 600 fuzz_xorriso_toc
# FUZZ_JOBS targets run at a time (default 2). Prints executions and crashes
# per target; exits non-zero if any target crashed or a property failed.
# What a target finds goes into build-fuzz/fuzz/work/TARGET/ (kept between
# runs, so campaigns add up); a failing input into build-fuzz/fuzz/crashes/TARGET/.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${1:-60}"
[ $# -gt 0 ] && shift
case "$seconds" in
'' | *[!0-9]*) echo "usage: tools/fuzz.sh [SECONDS] [TARGET...]" >&2; exit 2 ;;
esac
jobs="${FUZZ_JOBS:-2}"
build=build-fuzz

for tool in clang clang++; do
  command -v "$tool" >/dev/null || { echo "fuzz: $tool is missing (tools/install-deps.sh installs it)" >&2; exit 1; }
done
started=$(date +%s)
if [ ! -f "$build/CMakeCache.txt" ]; then
  generator=()
  command -v ninja >/dev/null && generator=(-G Ninja)
  CC=clang CXX=clang++ cmake -S . -B "$build" "${generator[@]}" -DTAMBLO_FUZZ=ON -DCMAKE_BUILD_TYPE=RelWithDebInfo >/dev/null
fi
cmake --build "$build" --parallel 2
echo "fuzz: build took $(($(date +%s) - started)) s"

manifest="$build/fuzz/targets.txt"
names=()
declare -A program dictionary corpus
while IFS=$'\t' read -r name bin dict start; do
  [ -n "$name" ] || continue
  if [ $# -gt 0 ]; then
    wanted=0
    for w in "$@"; do [ "$w" = "$name" ] && wanted=1; done
    [ $wanted -eq 1 ] || continue
  fi
  names+=("$name")
  program[$name]=$bin
  dictionary[$name]=$dict
  corpus[$name]=$start
done <"$manifest"
if [ ${#names[@]} -eq 0 ]; then
  echo "fuzz: no target to run" >&2
  exit 2
fi

export ASAN_OPTIONS="${ASAN_OPTIONS:-abort_on_error=1:detect_leaks=1}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1:halt_on_error=1}"
command -v llvm-symbolizer >/dev/null && export ASAN_SYMBOLIZER_PATH="$(command -v llvm-symbolizer)"

logs="$build/fuzz/logs"
mkdir -p "$logs"
run_one() {
  local name=$1
  local work="$build/fuzz/work/$name" crashes="$build/fuzz/crashes/$name"
  mkdir -p "$work" "$crashes"
  rm -f "$logs/$name.status"
  "${program[$name]}" -max_total_time="$seconds" -max_len=8192 -timeout=25 -rss_limit_mb=2048 \
    -print_final_stats=1 -dict="${dictionary[$name]}" -artifact_prefix="$crashes/" \
    "$work" "${corpus[$name]}" >"$logs/$name.log" 2>&1
}

echo "fuzz: ${#names[@]} targets, ${seconds} s each, $jobs at a time"
for name in "${names[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$jobs" ]; do
    wait -n || true
  done
  (
    set +e
    run_one "$name"
    echo $? >"$logs/$name.status"
  ) &
done
wait

failed=0
printf '%-40s %14s %8s\n' target executions crashes
for name in "${names[@]}"; do
  rc=$(cat "$logs/$name.status" 2>/dev/null || echo 1)
  execs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$logs/$name.log" | tail -1)
  [ -n "$execs" ] || execs=$(sed -n 's/^#\([0-9]*\)[[:space:]].*/\1/p' "$logs/$name.log" | tail -1)
  crashes=0
  if [ "$rc" != 0 ]; then
    crashes=1
    failed=1
  fi
  printf '%-40s %14s %8s\n' "$name" "${execs:-?}" "$crashes"
  if [ "$rc" != 0 ]; then
    grep -E 'PROPERTY FAILED|ERROR: |runtime error|SUMMARY|Test unit written to' "$logs/$name.log" | head -8 | sed 's/^/    /'
    echo "    full log: $logs/$name.log"
  fi
done
echo "fuzz: done in $(($(date +%s) - started)) s"
exit $failed
