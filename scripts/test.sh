#!/usr/bin/env bash
# Sets the machine up, builds everything and runs every test twice: optimised, then with the address,
# undefined-behaviour and leak sanitizers; last the tests of threads with the thread sanitizer. Fails at the first thing
# that fails.
#
# usage: scripts/test.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

scripts/setup.sh

jobs=2
launcher=()
if command -v ccache >/dev/null; then
  launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
fi

# Configures, builds and tests one preset.
run_preset() {
  printf '\n== %s ==\n' "$1"
  cmake --preset "$1" "${launcher[@]}"
  cmake --build --preset "$1" -j "$jobs"
  ctest --preset "$1" -j "$jobs"
}

scripts/format.sh --check
run_preset release
run_preset asan
run_preset tsan
