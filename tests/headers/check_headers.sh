#!/usr/bin/env bash
# Compiles each header of a list alone, included twice.
#
# usage: check_headers.sh COMPILER STANDARD SOURCE_DIR SYSTEM_INCLUDE_DIR LIST
#   STANDARD  17 or 20
#   LIST      a file with one header a line, relative to SOURCE_DIR/rqxml
set -euo pipefail

compiler=$1
standard=$2
source_dir=$3
system_include_dir=$4
list=$5

flags=(-std="c++$standard" -fsyntax-only -x c++ -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror -I "$source_dir")
# Naming the compiler's own folder again would put it before the standard library's.
if [[ "$system_include_dir" != /usr/include ]]; then
  flags+=(-isystem "$system_include_dir")
fi

count=0
failed=0
while read -r header; do
  count=$((count + 1))
  if ! printf '#include "rqxml/%s"\n#include "rqxml/%s"\n' "$header" "$header" | "$compiler" "${flags[@]}" -; then
    printf 'does not compile alone as C++%s: rqxml/%s\n' "$standard" "$header"
    failed=$((failed + 1))
  fi
done <"$list"

if [[ $count -eq 0 ]]; then
  echo "the list of headers is empty: $list"
  exit 1
fi
if [[ $failed -ne 0 ]]; then
  echo "$failed of $count headers fail"
  exit 1
fi
echo "$count headers compile alone as C++$standard"
