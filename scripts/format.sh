#!/usr/bin/env bash
# Formats the C++ sources that git tracks, or only tells which are not formatted. Releases of clang-format differ in
# details, so only the one of Debian 12 is asked; without it this says so and succeeds.
#
# usage: scripts/format.sh [--check]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

mode=(-i)
if [[ "${1:-}" == --check ]]; then
  mode=(--dry-run --Werror)
fi

readonly release=14
clang_format=$(command -v "clang-format-$release" || command -v clang-format || true)
if [[ -z "$clang_format" ]] || ! "$clang_format" --version | grep -q "version $release\."; then
  echo "format: no clang-format $release, nothing done"
  exit 0
fi
if ! git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  echo "format: not a git work tree, nothing done"
  exit 0
fi
git ls-files -z -- '*.h' '*.cpp' | xargs -0 -r "$clang_format" "${mode[@]}"
