#!/usr/bin/env bash
# Compares README.md with the truth: each command that it shows with "$ build/tools/rqxml/rqxml" must print what stands
# below it, and its C++ listing must be the example program.
#
# Times and memory differ from run to run, and are left out of the comparison.
#
# usage: check_readme.sh RQXML   (from the root of the repository)
set -euo pipefail
rqxml="$1"

without_measures() { sed -E 's/ in [0-9.]+ s, peak memory [0-9]+ MB$//'; }

commands=0
while IFS= read -r line; do
  commands=$((commands + 1))
  read -r -a words <<<"${line#\$ build/tools/rqxml/rqxml }"
  shown="$(awk -v command="$line" '$0 == command {on = 1; next} on && $0 == "```" {exit} on {print}' README.md)"
  diff -u <(printf '%s\n' "$shown" | without_measures) <("$rqxml" "${words[@]}" | without_measures) || { echo "README.md is not true: $line"; exit 1; }
done < <(grep -E '^\$ build/tools/rqxml/rqxml ' README.md)
[[ "$commands" -gt 0 ]] || { echo "README.md shows no command"; exit 1; }

diff -u <(awk '$0 == "```cpp" {on = 1; next} on && $0 == "```" {exit} on {print}' README.md) examples/list_variables.cpp ||
  { echo "README.md lists another program than examples/list_variables.cpp"; exit 1; }
