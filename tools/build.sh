#!/usr/bin/env bash
# Configures (once) and builds Tamblo into build/. Rebuilds only what changed.
set -euo pipefail
cd "$(dirname "$0")/.."
generator=()
command -v ninja >/dev/null && generator=(-G Ninja)
if [ ! -f build/CMakeCache.txt ]; then
  prefix=()
  if [ "$(uname -s)" = "Darwin" ] && command -v brew >/dev/null; then
    prefix=(-DCMAKE_PREFIX_PATH="$(brew --prefix qt)")
  fi
  cmake -S . -B build "${generator[@]}" -DCMAKE_BUILD_TYPE=RelWithDebInfo "${prefix[@]}" "$@"
fi
cmake --build build --parallel
