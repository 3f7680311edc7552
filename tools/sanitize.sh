#!/usr/bin/env bash
# Builds the whole program and its tests into build-asan/ with the address and
# undefined-behaviour sanitizers, then runs the tests through ctest.
#   tools/sanitize.sh [CTEST ARGUMENTS...]     e.g. tools/sanitize.sh -R app_cancel
# Any sanitizer report fails its test: a use after free or an overflow ends the
# test at once, undefined behaviour too (halt_on_error). Leaks are not
# reported: the media backend and the platform plugins keep theirs until exit.
# The first build takes about 15 minutes on two cores; later ones only rebuild
# what changed. Not part of ./test, which must stay within CI's time.
set -euo pipefail
cd "$(dirname "$0")/.."

build=build-asan
flags="-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined"
if [ ! -f "$build/CMakeCache.txt" ]; then
  generator=()
  command -v ninja >/dev/null && generator=(-G Ninja)
  cmake -S . -B "$build" "${generator[@]}" -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="$flags" -DCMAKE_EXE_LINKER_FLAGS="$flags" >/dev/null
fi
cmake --build "$build" --parallel 2
cd "$build"
export QT_QPA_PLATFORM=offscreen
export ASAN_OPTIONS=detect_leaks=0:abort_on_error=0
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
ctest --output-on-failure --parallel 2 "$@"
